// An advisory lock on a file that is replaced by renaming, held against other processes.
#include "shell/FileLock.h"

#include "common/AtomicFile.h"
#include "common/Trace.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv {

namespace {

bool SameFile(int fd, const std::filesystem::path& file) {
    struct stat held {
    }, named{};
    return ::fstat(fd, &held) == 0 && ::stat(file.c_str(), &named) == 0 &&
           held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

int LockRetryingOnSignal(int fd, int operation) {
    int result;
    do
        result = ::flock(fd, operation);
    while (result != 0 && errno == EINTR);
    return result;
}

} // namespace

TFileLock::TFileLock(const std::filesystem::path& file, TMode mode, bool create) {
    const int operation = mode == TMode::Shared ? LOCK_SH : LOCK_EX;
    // Each round loses only to a writer that renamed in between; bounded all the same.
    for (int round = 0; round < 1000; ++round) {
        const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | (create ? O_CREAT : 0), 0666);
        if (fd < 0) {
            if (errno != ENOENT)
                Trace("TFileLock() - cannot open " + file.string() + ": " + std::strerror(errno));
            return;
        }
        if (LockRetryingOnSignal(fd, operation) != 0) {
            Trace("TFileLock() - cannot lock " + file.string() + ": " + std::strerror(errno));
            ::close(fd);
            return;
        }
        if (SameFile(fd, file)) {
            FFd = fd;
            return;
        }
        ::close(fd);
    }
    Trace("TFileLock() - " + file.string() + " keeps being replaced; giving up");
}

TFileLock::~TFileLock() {
    if (FFd >= 0)
        ::close(FFd);
}

std::optional<std::string> TFileLock::ReadAll() const {
    if (FFd < 0)
        return std::nullopt;
    return ReadWholeDescriptor(FFd);
}

} // namespace zv
