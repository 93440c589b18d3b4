#pragma once

#include <cstddef>
#include <string>

namespace quorbin::io {

/// A file in memory, for what reads or writes by a path only. It ends with the object.
class MemoryFile {
 public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    void operator=(const MemoryFile&) = delete;

    std::string path() const;
    int descriptor() const { return descriptor_; }
    void write(const void* bytes, std::size_t count) const;

    /// Hands all of it to send(bytes, count), block by block.
    template <class Send>
    void forEachBlock(Send send) const {
        char block[1 << 16];
        std::size_t at = 0;
        while (const std::size_t count = read(block, sizeof block, at)) {
            send(static_cast<const char*>(block), count);
            at += count;
        }
    }

 private:
    std::size_t read(char* out, std::size_t most, std::size_t from) const;

    int descriptor_;
};

}  // namespace quorbin::io
