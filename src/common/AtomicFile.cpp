// Whole-file reads and crash-safe whole-file writes.
#include "common/AtomicFile.h"

#include "common/RegularFile.h"
#include "common/Trace.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace zv {

namespace fs = std::filesystem;

namespace {

std::atomic<TAtomicStep> gInjectedFailure{TAtomicStep::None};
std::atomic<unsigned> gTempCounter{0};

// Closes a descriptor on every path out of a function.
class TFd {
public:
    explicit TFd(int fd) : FFd(fd) {}
    ~TFd() {
        if (FFd >= 0)
            ::close(FFd);
    }
    TFd(const TFd&) = delete;
    TFd& operator=(const TFd&) = delete;
    int Get() const { return FFd; }
    // Gives the descriptor up without closing it.
    int Release() {
        const int fd = FFd;
        FFd = -1;
        return fd;
    }
    // Closes now, reporting the result (a delayed write error shows here).
    bool Close() {
        const int fd = FFd;
        FFd = -1;
        return ::close(fd) == 0;
    }

private:
    int FFd;
};

bool Injected(TAtomicStep step) {
    if (gInjectedFailure.load() != step)
        return false;
    errno = step == TAtomicStep::Write ? ENOSPC : EIO;
    return true;
}

bool WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

// A new, exclusive file beside target: ".name.<pid>.<n>.tmp". Hidden, so a folder listing
// does not show it while the write is under way.
int CreateTemp(const fs::path& target, fs::path& temp) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        temp = target.parent_path() /
               ("." + target.filename().string() + "." + std::to_string(::getpid()) + "." +
                std::to_string(gTempCounter.fetch_add(1) ^ static_cast<unsigned>(stamp)) + ".tmp");
        const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

// Gives the temporary file the mode and owner of the file it replaces. Only a privileged
// user may give a file away; then the group is kept where we belong to it.
bool KeepModeAndOwner(int fd, const fs::path& real) {
    struct stat old {};
    if (::stat(real.c_str(), &old) != 0)
        return true; // a new file
    if (::fchmod(fd, old.st_mode & 07777) != 0)
        return false;
    struct stat now {};
    if (::fstat(fd, &now) == 0 && (now.st_uid != old.st_uid || now.st_gid != old.st_gid))
        if (::fchown(fd, old.st_uid, old.st_gid) != 0)
            (void)::fchown(fd, static_cast<uid_t>(-1), old.st_gid);
    return true;
}

void SyncFolder(const fs::path& folder) {
    const TFd dir(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.Get() >= 0)
        ::fsync(dir.Get());
}

// The file about to be replaced, opened when it is large: held open across the rename, its
// blocks are freed by the last close, not by the rename. -1 for a small or missing file.
int OpenLargeReplaced(const fs::path& real) {
    constexpr off_t kLarge = 16 << 20;
    struct stat st {};
    if (::stat(real.c_str(), &st) != 0 || !S_ISREG(st.st_mode) || st.st_size < kLarge)
        return -1;
    return ::open(real.c_str(), O_RDONLY | O_CLOEXEC);
}

// Freeing a replaced file of a hundred megabytes takes tens of milliseconds; a background
// thread spends them, not the caller waiting for the save.
void CloseInBackground(int fd) {
    if (fd < 0)
        return;
    try {
        std::thread([fd] { ::close(fd); }).detach();
    } catch (const std::system_error&) {
        ::close(fd); // no thread to be had: close here
    }
}

bool Fail(const fs::path& target, const std::string& step, const std::string& why,
          std::string* error) {
    const std::string text = "Cannot save \"" + target.string() + "\": " + step + " failed: " + why;
    Trace("WriteFileAtomically() - " + text);
    if (error)
        *error = text;
    return false;
}

// Runs the caller's writer; an exception is a failure whose text is kept in `why`.
bool RunWriter(const TFileContentWriter& write, int fd, std::string& why) {
    try {
        if (write(fd))
            return true;
        why = std::strerror(errno);
    } catch (const std::exception& e) {
        why = e.what();
    }
    return false;
}

} // namespace

fs::path ResolveSymlinks(const fs::path& target) {
    fs::path path = target;
    for (int depth = 0; depth < 40; ++depth) {
        std::error_code ec;
        if (!fs::is_symlink(fs::symlink_status(path, ec)))
            return path;
        const fs::path link = fs::read_symlink(path, ec);
        if (ec)
            return path;
        path = link.is_absolute() ? link : path.parent_path() / link;
    }
    return path;
}

std::optional<std::string> ReadWholeDescriptor(int fd) {
    std::string bytes;
    char buffer[65536];
    for (off_t offset = 0;;) {
        const ssize_t n = ::pread(fd, buffer, sizeof buffer, offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return std::nullopt;
        if (n == 0)
            return bytes;
        bytes.append(buffer, static_cast<size_t>(n));
        offset += n;
    }
}

std::optional<std::string> ReadWholeFile(const fs::path& file) {
    std::string why;
    const TFd fd(OpenRegularFile(file.string(), why)); // a pipe would hang the reader
    if (fd.Get() < 0)
        return std::nullopt;
    return ReadWholeDescriptor(fd.Get());
}

bool WriteFileAtomically(const fs::path& target, const TFileContentWriter& write,
                         std::string* error) {
    const fs::path real = ResolveSymlinks(target);
    // A pipe or a device node is not a file to replace: renaming over it would destroy it.
    if (const std::string kind = NotRegularFileKind(real.string()); !kind.empty())
        return Fail(real, "checking the target", NotRegularFileMessage(kind), error);
    fs::path temp;
    TFd fd(CreateTemp(real, temp));
    if (fd.Get() < 0)
        return Fail(real, "creating the temporary file", std::strerror(errno), error);
    const char* failedStep = nullptr;
    std::string why;
    if (!KeepModeAndOwner(fd.Get(), real))
        failedStep = "keeping the file's mode";
    else if (Injected(TAtomicStep::Write) || !RunWriter(write, fd.Get(), why))
        failedStep = "writing";
    else if (Injected(TAtomicStep::Sync) || ::fsync(fd.Get()) != 0)
        failedStep = "syncing";
    else if (!fd.Close())
        failedStep = "closing";
    TFd replaced(failedStep ? -1 : OpenLargeReplaced(real));
    if (!failedStep && (Injected(TAtomicStep::Rename) || ::rename(temp.c_str(), real.c_str()) != 0))
        failedStep = "renaming";
    if (failedStep) {
        if (why.empty())
            why = std::strerror(errno);
        ::unlink(temp.c_str());
        return Fail(real, failedStep, why, error);
    }
    CloseInBackground(replaced.Release());
    SyncFolder(real.parent_path());
    return true;
}

bool WriteFileAtomically(const fs::path& target, std::string_view bytes, std::string* error) {
    return WriteFileAtomically(
        target, [bytes](int fd) { return WriteAll(fd, bytes); }, error);
}

void InjectAtomicWriteFailure(TAtomicStep step) {
    gInjectedFailure.store(step);
}

} // namespace zv
