// Whole-file reads and crash-safe whole-file writes.
#include "common/AtomicFile.h"

#include "common/FileMetadata.h"
#include "common/RegularFile.h"
#include "common/TempFiles.h"
#include "common/Trace.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
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
    errno = step == TAtomicStep::Write ? ENOSPC : step == TAtomicStep::Create ? EACCES : EIO;
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

// The mode of a new file: 0666 less the umask, as open() would give it. The umask is read,
// not set and set back, which would race with other threads creating files.
mode_t NewFileMode() {
    static const mode_t mask = [] {
        unsigned value = 022;
        if (FILE* status = std::fopen("/proc/self/status", "r")) {
            char line[256];
            while (std::fgets(line, sizeof line, status))
                if (std::sscanf(line, "Umask: %o", &value) == 1)
                    break;
            std::fclose(status);
        }
        return static_cast<mode_t>(value);
    }();
    return 0666 & ~mask;
}

// Copies all of `from` into `to` from offset 0 and cuts `to` there; false with errno set.
bool CopyContent(int from, int to) {
    char buffer[1 << 16];
    off_t at = 0;
    for (;;) {
        const ssize_t n = ::pread(from, buffer, sizeof buffer, at);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            break;
        if (::pwrite(to, buffer, static_cast<size_t>(n), at) != n)
            return false;
        at += n;
    }
    return ::ftruncate(to, at) == 0 && ::fsync(to) == 0;
}

// Runs the writer on `fd` from its start and cuts the file where the writer stopped.
bool RewriteFrom(int fd, const TFileContentWriter& write, std::string& why) {
    if (::lseek(fd, 0, SEEK_SET) != 0 || Injected(TAtomicStep::Write) || !RunWriter(write, fd, why))
        return false;
    const off_t end = ::lseek(fd, 0, SEEK_CUR);
    return end >= 0 && ::ftruncate(fd, end) == 0 && !Injected(TAtomicStep::Sync) &&
           ::fsync(fd) == 0;
}

// A file with other hard links: its inode is kept. The old content is first saved beside it;
// after a failure it is written back, and kept only if even that fails.
bool WriteInPlace(const fs::path& real, const TFileContentWriter& write, std::string* error) {
    const TFd file(::open(real.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    if (file.Get() < 0)
        return Fail(real, "opening the file", std::strerror(errno), error);
    fs::path keep;
    const TFd copy(Injected(TAtomicStep::Create)
                       ? -1
                       : CreateTempIn(real.parent_path(), TTempKind::OldContent, keep));
    if (copy.Get() < 0 || !CopyContent(file.Get(), copy.Get())) {
        const std::string why = std::strerror(errno);
        if (copy.Get() >= 0)
            ::unlink(keep.c_str());
        return Fail(real, "keeping the old content", why, error);
    }
    std::string why;
    if (RewriteFrom(file.Get(), write, why)) {
        ::unlink(keep.c_str());
        return true;
    }
    if (why.empty())
        why = std::strerror(errno);
    if (CopyContent(copy.Get(), file.Get())) {
        ::unlink(keep.c_str());
        return Fail(real, "writing in place", why + " (the old content is back)", error);
    }
    return Fail(real, "writing in place",
                why + "; the old content is kept in \"" + keep.string() + "\"", error);
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

std::optional<std::string> ReadWholeDescriptor(int fd, std::size_t limit) {
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
        if (bytes.size() > limit) {
            errno = EFBIG;
            return std::nullopt;
        }
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
    TAtomicWriteOptions options;
    return WriteFileAtomically(target, write, options, error);
}

bool WriteFileAtomically(const fs::path& target, const TFileContentWriter& write,
                         TAtomicWriteOptions& options, std::string* error) {
    options.WroteInPlace = false;
    const fs::path real = options.FollowLinks ? ResolveSymlinks(target) : target;
    struct stat old {};
    const bool exists = ::lstat(real.c_str(), &old) == 0;
    // A pipe or a device node is not a file to replace: renaming over it would destroy it.
    if (exists && !S_ISREG(old.st_mode) && !S_ISLNK(old.st_mode))
        return Fail(real, "checking the target",
                    NotRegularFileMessage(NotRegularFileKind(real.string())), error);
    RemoveStaleTemps(real.parent_path());
    if (exists && S_ISREG(old.st_mode) && old.st_nlink > 1 && options.KeepHardLinks) {
        options.WroteInPlace = true;
        return WriteInPlace(real, write, error);
    }
    fs::path temp;
    TFd fd(Injected(TAtomicStep::Create)
               ? -1
               : CreateTempIn(real.parent_path(), TTempKind::NewContent, temp));
    if (fd.Get() < 0)
        return Fail(real, "creating the temporary file", std::strerror(errno), error);
    const char* failedStep = nullptr;
    std::string why;
    if (exists && S_ISREG(old.st_mode) ? !KeepMetadata(fd.Get(), old, real)
                                       : ::fchmod(fd.Get(), NewFileMode()) != 0)
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
