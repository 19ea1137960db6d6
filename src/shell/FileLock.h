// An advisory lock on a file that is replaced by renaming, held against other processes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace zv {

// flock on the file a path names. Because writers replace the file by renaming a new one
// over it, the lock is only granted once the locked file is still the one the path names;
// a writer keeps its lock until its rename is done, so the next holder reads the new file.
class TFileLock {
public:
    enum class TMode { Shared, Exclusive };
    // With create, a missing file is created empty (0666 less the umask) so it can be
    // locked. Locked() is false when the file is missing (and not created) or cannot be
    // opened; the reason is in the trace.
    TFileLock(const std::filesystem::path& file, TMode mode, bool create);
    ~TFileLock();
    TFileLock(const TFileLock&) = delete;
    TFileLock& operator=(const TFileLock&) = delete;

    bool Locked() const { return FFd >= 0; }
    // The locked file's whole content; nullopt when not locked or on a read error.
    std::optional<std::string> ReadAll() const;

private:
    int FFd = -1;
};

} // namespace zv
