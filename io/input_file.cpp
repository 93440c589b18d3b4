#include "input_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "failure.h"

namespace quorbin::io {

namespace {

constexpr std::size_t kBlock = 1 << 16;

bool isStreamAt(const std::string& path) {
    struct stat status = {};
    return path == "-" ||
           (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode));
}

bool isFolderAt(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// What would help where a file cannot be opened.
const char* wayOut(int error) {
    return error == EACCES ? "give one that you may read" : "give a file that is there";
}

}  // namespace

bool startsWith(const Bytes& bytes, const char* magic) {
    const std::size_t length = std::strlen(magic);
    return bytes.size() >= length && std::memcmp(bytes.data(), magic, length) == 0;
}

InputFile::InputFile(std::string path)
    : path_(std::move(path)),
      isStream_(isStreamAt(path_)),
      isFolder_(isFolderAt(path_)),
      file_(path_ == "-" ? stdin : std::fopen(path_.c_str(), "rb")) {
    if (file_) return;
    const int error = errno;
    refuseFor(error, "{}: cannot be opened ({}); {}", path_, std::strerror(error), wayOut(error));
}

InputFile::~InputFile() = default;

bool InputFile::hasEnding(const std::string& ending) const {
    const std::string whole = "." + ending;
    return path_.size() >= whole.size() &&
           std::equal(whole.begin(), whole.end(), path_.end() - static_cast<std::ptrdiff_t>(whole.size()),
                      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

const Bytes& InputFile::start() { return upTo(1); }
const Bytes& InputFile::all() { return upTo(SIZE_MAX); }

const Bytes& InputFile::upTo(std::size_t count) {
    unsigned char block[kBlock];
    while (!isAtEnd_ && bytes_.size() < count) {
        const std::size_t some = std::fread(block, 1, sizeof block, file_.get());
        bytes_.insert(bytes_.end(), block, block + some);
        isAtEnd_ = some < sizeof block;
    }
    if (std::ferror(file_.get()))
        refuseFor(errno, "{}: cannot be read ({}); give a file", path_, std::strerror(errno));
    if (bytes_.empty()) refuse("{}: is empty; give the whole file", path_);
    return bytes_;
}

void InputFile::readAt(std::size_t place, void* out, std::size_t count) const {
    auto* to = static_cast<unsigned char*>(out);
    while (count > 0) {
        const ssize_t some = pread(fileno(file_.get()), to, count, static_cast<off_t>(place));
        if (some <= 0) refuse("{}: ends within its samples; give the whole file", path_);
        to += some;
        place += static_cast<std::size_t>(some);
        count -= static_cast<std::size_t>(some);
    }
}

std::size_t InputFile::size() const {
    struct stat status = {};
    return fstat(fileno(file_.get()), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

std::string InputFile::pathForOthers() {
    if (!isStream_) return path_;
    if (!copy_) {
        copy_ = std::make_unique<MemoryFile>();
        copy_->write(all().data(), all().size());
    }
    return copy_->path();
}

void InputFile::forget() {
    if (isStream_) return;
    Bytes().swap(bytes_);
    std::rewind(file_.get());
    isAtEnd_ = false;
}

}  // namespace quorbin::io
