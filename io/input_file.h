#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "memory_file.h"

namespace quorbin::io {

using Bytes = std::vector<unsigned char>;

bool startsWith(const Bytes& bytes, const char* magic);

/// A file that is read, opened once; - is standard input. What has been read of it is kept, so that a pipe,
/// too, can be looked at before its reader is known. Whatever is wrong is a Failure that names the file.
class InputFile {
 public:
    explicit InputFile(std::string path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    void operator=(const InputFile&) = delete;

    const std::string& path() const { return path_; }

    /// Whether it can be read only once: standard input, a pipe.
    bool isStream() const { return isStream_; }

    /// Whether it is a folder, of which nothing is read here.
    bool isFolder() const { return isFolder_; }

    /// Whether the name ends in .ending, in letters of either size.
    bool hasEnding(const std::string& ending) const;

    /// The first block, up to 64 KB, or all if that is less.
    const Bytes& start();
    /// All of it, or at least as many bytes if there are so many.
    const Bytes& all();
    const Bytes& upTo(std::size_t count);

    /// Bytes of a place, and how many there are of them in all. Only for files that can be read again.
    void readAt(std::size_t place, void* out, std::size_t count) const;
    std::size_t size() const;

    /// A path by which others can read it: its own, or that of a copy in memory.
    std::string pathForOthers();

    /// Frees what has been read. Only for files that can be read again.
    void forget();

 private:
    struct Close {
        void operator()(std::FILE* file) const {
            if (file != stdin) std::fclose(file);
        }
    };

    std::string path_;
    bool isStream_, isFolder_;
    std::unique_ptr<std::FILE, Close> file_;
    Bytes bytes_;
    bool isAtEnd_ = false;
    std::unique_ptr<MemoryFile> copy_;
};

}  // namespace quorbin::io
