#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

namespace lset::detail {

/// A C file that is closed with its owner.
class File {
 public:
    File(const char* path, const char* mode) : file_(std::fopen(path, mode)) {}

    explicit operator bool() const { return file_ != nullptr; }

    /// The number of whole items that were read.
    template <class T>
    std::size_t readSome(T* items, std::size_t count) {
        return std::fread(items, sizeof(T), count, file_.get());
    }
    template <class T>
    bool read(T* items, std::size_t count) {
        return readSome(items, count) == count;
    }
    template <class T>
    bool write(const T* items, std::size_t count) {
        return count == 0 || std::fwrite(items, sizeof(T), count, file_.get()) == count;
    }

    /// False when what was buffered could not be written.
    bool close() { return std::fclose(file_.release()) == 0; }

 private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> file_;
};

}  // namespace lset::detail
