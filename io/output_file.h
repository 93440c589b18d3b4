#pragma once

#include <cstdio>
#include <string>

namespace quorbin::io {

/// A result on its way to a file. It is written beside the file and takes its name at commit, once it is
/// known to be whole; until then, and whenever the tool is interrupted, nothing is left behind. "-" is
/// standard output, which from then on is for the result alone: whatever else is printed goes to standard
/// error. Where cleanUpWhenInterrupted has been called, a few at a time; else any number, in any threads.
class OutputFile {
 public:
    static constexpr int kMostAtOnce = 4;

    /// Refuses a path that cannot be written, or that exists, unless force says to replace it.
    OutputFile(std::string path, bool force);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    void operator=(const OutputFile&) = delete;

    void write(const void* bytes, std::size_t count);
    void write(const std::string& text) { write(text.data(), text.size()); }
    void commit();

    const std::string& path() const { return path_; }

 private:
    [[noreturn]] void fail(int error) const;
    void openBeside();
    void forget();

    std::string path_;
    std::string temporaryPath_;  // empty where the result goes straight to its place
    bool force_;
    int slot_ = 0;  // where interruptions find the temporary path
    std::FILE* file_ = nullptr;
    unsigned long long written_ = 0;
};

/// Makes interruptions end the tool with status 128 + signal, after removing what is half written.
void cleanUpWhenInterrupted();

}  // namespace quorbin::io
