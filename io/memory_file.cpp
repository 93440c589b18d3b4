#include "memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.h"

namespace quorbin::io {

namespace {

[[noreturn]] void fail() {
    throw Failure(kFailed, fmt::format("a file in memory could not be used ({})", std::strerror(errno)));
}

}  // namespace

MemoryFile::MemoryFile() : descriptor_(memfd_create("quorbin", MFD_CLOEXEC)) {
    if (descriptor_ < 0) fail();
}

MemoryFile::~MemoryFile() { close(descriptor_); }

std::string MemoryFile::path() const { return fmt::format("/proc/self/fd/{}", descriptor_); }

void MemoryFile::write(const void* bytes, std::size_t count) const {
    const char* from = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = ::write(descriptor_, from, count);
        if (written < 0) fail();
        from += written;
        count -= static_cast<std::size_t>(written);
    }
}

std::size_t MemoryFile::read(char* out, std::size_t most, std::size_t from) const {
    const ssize_t count = pread(descriptor_, out, most, static_cast<off_t>(from));
    if (count < 0) fail();
    return static_cast<std::size_t>(count);
}

}  // namespace quorbin::io
