// Whole-file reads and crash-safe whole-file writes: the one way the program replaces a
// user's file, a settings file or a document.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zv {

// The file's bytes, or nullopt if it cannot be opened or read, or is not a plain file (a pipe,
// a device, a folder: refused at once, never waited on).
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);
// The whole content of an open file, read from offset 0 whatever its position; nullopt on a
// read error, or (errno EFBIG) past `limit` bytes.
std::optional<std::string> ReadWholeDescriptor(int fd, std::size_t limit = SIZE_MAX);

// Writes the new content to the open descriptor of the temporary file. Fails by returning
// false with errno set, or by throwing (std::system_error or another std::exception).
using TFileContentWriter = std::function<bool(int fd)>;

// Replaces the file's content in one step: the content goes to a new file in the same
// folder, which is synced and renamed over the target, so a reader or a crash sees the old
// content or the new, never a mix. A symbolic link is followed to the real file, which is
// replaced; an existing file keeps its mode (setuid and setgid bits too), extended attributes
// (ACLs) and, where permitted, its owner and group; a new file gets 0666 less the umask.
// Temporaries of killed saves in that folder are removed at the first save there. On failure the
// target is untouched, no temporary file is left, a trace line says why, `error` (if given)
// receives the same text naming the file, and the result is false.
bool WriteFileAtomically(const std::filesystem::path& target, const TFileContentWriter& write,
                         std::string* error = nullptr);
bool WriteFileAtomically(const std::filesystem::path& target, std::string_view bytes,
                         std::string* error = nullptr);

// How a user's file is replaced (documents; settings take the defaults).
struct TAtomicWriteOptions {
    // False: a symbolic link standing at the target is replaced by the file, not followed.
    // A document opened through no link must not write through one put there since.
    bool FollowLinks = true;
    // A file with several hard links is rewritten in place, so that the links keep sharing
    // it: its old content is first copied beside it (".zvold-..."), the copy is removed
    // once the new content is synced, and on a failure the old content is written back.
    bool KeepHardLinks = true;
    // Set by the call: the file was rewritten in place (it has other links).
    bool WroteInPlace = false;
};
bool WriteFileAtomically(const std::filesystem::path& target, const TFileContentWriter& write,
                         TAtomicWriteOptions& options, std::string* error = nullptr);

// The file a path finally names: symbolic links followed (at most 40), also when the last
// one points to a file not yet there.
std::filesystem::path ResolveSymlinks(const std::filesystem::path& path);

// The step at which a test makes the next WriteFileAtomically calls fail, as a folder that
// refuses a new file (EACCES), a full disk (ENOSPC) or a failing sync or rename (EIO) would.
// Process-wide; TAtomicStep::None switches the injection off.
enum class TAtomicStep { None, Create, Write, Sync, Rename };
void InjectAtomicWriteFailure(TAtomicStep step);

} // namespace zv
