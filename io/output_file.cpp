#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstring>

#include "failure.h"

namespace quorbin::io {

namespace {

constexpr int kInterruptions[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// What a signal handler may look at.
struct HalfWritten {
    char path[PATH_MAX + 32];
    volatile std::sig_atomic_t isThere;
};
HalfWritten halfWritten[OutputFile::kMostAtOnce];
bool isCleanedUp = false;  // by the handler, which a program that has others does not set

extern "C" void removeAndExit(int signal) {
    for (const HalfWritten& file : halfWritten)
        if (file.isThere != 0) unlink(file.path);
    _exit(128 + signal);
}

/// Makes a file under a name that nobody has, with the permissions that new files get; the Xs at the end of
/// the path become that name's. Unlike mkstemp and umask together, it may be called in several threads.
int openNew(std::string& path) {
    static std::atomic<unsigned> last{0};
    constexpr int kMostTries = 1000;
    const std::size_t stem = path.find_last_not_of('X') + 1, digits = path.size() - stem;
    for (int tries = 0; tries < kMostTries; ++tries) {
        const auto now = static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count());
        const unsigned number = (now * 2654435761U) ^ (static_cast<unsigned>(getpid()) << 12) ^ ++last;
        path.replace(stem, digits, fmt::format("{:0{}x}", number & 0xffffffU, digits));
        const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST) return descriptor;
    }
    return -1;
}

}  // namespace

void cleanUpWhenInterrupted() {
    isCleanedUp = true;
    for (const int signal : kInterruptions) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (signal == SIGHUP && action.sa_handler == SIG_IGN) continue;  // under nohup
        action.sa_handler = removeAndExit;
        sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);  // a limit on file sizes is then an error like a full disk
}

OutputFile::OutputFile(std::string path, bool force) : path_(std::move(path)), force_(force) {
    if (path_ == "-") {
        std::fflush(stdout);
        const int result = dup(STDOUT_FILENO);
        if (result < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) fail(errno);
        file_ = fdopen(result, "wb");
        if (file_ == nullptr) fail(errno);
        path_ = "standard output";
        return;
    }
    struct stat status = {};
    if (path_.empty()) refuse("-o: has an empty name; name a file, or - for standard output");
    const bool exists = stat(path_.c_str(), &status) == 0;
    const bool isLinkToNothing = !exists && lstat(path_.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) refuseFor(EISDIR, "{}: is a folder; name a file", path_);
    if ((isLinkToNothing || (exists && S_ISREG(status.st_mode))) && !force)
        refuseFor(EEXIST, "{}: exists; choose another name or add --force", path_);
    // The superuser may write to every file, but one that nobody may write to is meant to stay.
    constexpr mode_t kAnyoneMayWrite = 0222;
    if (exists && (access(path_.c_str(), W_OK) != 0 || (status.st_mode & kAnyoneMayWrite) == 0))
        refuseFor(EACCES, "{}: is read-only; choose another name or make it writable", path_);
    if (!exists || S_ISREG(status.st_mode)) {
        openBeside();
        if (exists) fchmod(fileno(file_), status.st_mode & 07777);
        return;
    }
    file_ = std::fopen(path_.c_str(), "wb");  // a device or a pipe
    if (file_ == nullptr) fail(errno);
}

void OutputFile::openBeside() {
    // Where the path is a link, what it points to is replaced and the link stays.
    char resolved[PATH_MAX];
    if (realpath(path_.c_str(), resolved) != nullptr) path_ = resolved;
    temporaryPath_ = path_.substr(0, path_.find_last_of('/') + 1) + ".quorbin-XXXXXX";
    if (temporaryPath_.size() >= sizeof HalfWritten::path) refuse("{}: is too long a name", path_);
    // An interruption waits until the file that is made is known to it.
    sigset_t interruptions, before;
    sigemptyset(&interruptions);
    for (const int signal : kInterruptions) sigaddset(&interruptions, signal);
    pthread_sigmask(SIG_BLOCK, &interruptions, &before);
    const int descriptor = openNew(temporaryPath_);
    const int error = errno;
    if (descriptor >= 0 && isCleanedUp) {
        while (slot_ + 1 < kMostAtOnce && halfWritten[slot_].isThere != 0) ++slot_;
        std::strcpy(halfWritten[slot_].path, temporaryPath_.c_str());
        halfWritten[slot_].isThere = 1;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (descriptor < 0) {
        temporaryPath_.clear();
        refuseFor(error, "{}: cannot be written ({}); choose a folder that exists and that you may write to",
                  path_, std::strerror(error));
    }
    file_ = fdopen(descriptor, "wb");
    if (file_ == nullptr) fail(errno);
}

OutputFile::~OutputFile() {
    if (file_ != nullptr) std::fclose(file_);
    if (temporaryPath_.empty()) return;
    unlink(temporaryPath_.c_str());
    forget();
}

void OutputFile::forget() {
    if (isCleanedUp) halfWritten[slot_].isThere = 0;
    temporaryPath_.clear();
}

void OutputFile::fail(int error) const {
    throw Failure(kFailed, fmt::format("{}: could not be written ({})", path_, std::strerror(error)), error);
}

void OutputFile::write(const void* bytes, std::size_t count) {
    if (count > 0 && std::fwrite(bytes, 1, count, file_) != count) fail(errno);
    written_ += count;
}

void OutputFile::commit() {
    if (std::fflush(file_) != 0) fail(errno);
    if (!temporaryPath_.empty()) {
        struct stat status = {};
        if (fsync(fileno(file_)) != 0 || fstat(fileno(file_), &status) != 0) fail(errno);
        if (static_cast<unsigned long long>(status.st_size) != written_) fail(EIO);
    }
    std::FILE* file = file_;
    file_ = nullptr;
    if (std::fclose(file) != 0) fail(errno);
    if (temporaryPath_.empty()) return;
    // A file that has come up meanwhile is not overwritten either, where the file system can tell.
    int failed = force_
                     ? rename(temporaryPath_.c_str(), path_.c_str())
                     : renameat2(AT_FDCWD, temporaryPath_.c_str(), AT_FDCWD, path_.c_str(), RENAME_NOREPLACE);
    if (failed != 0 && !force_ && (errno == EINVAL || errno == ENOSYS))
        failed = rename(temporaryPath_.c_str(), path_.c_str());
    if (failed != 0) fail(errno);
    forget();
}

}  // namespace quorbin::io
