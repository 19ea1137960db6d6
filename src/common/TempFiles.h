// Temporary files beside a user's file: short names that fit any file name's folder, made
// exclusively, and the leftovers of killed processes removed at the next save there.
#pragma once

#include <filesystem>

namespace zv {

// Kinds of temporary file: the new content on its way to a rename ("zvtmp"), and the old
// content kept while a file is rewritten in place ("zvold"), which is never removed by the
// clean-up because after a crash it may be the only whole copy.
enum class TTempKind { NewContent, OldContent };

// Creates ".<kind>-<pid>-<n>" in `folder`, exclusively, mode 0600 until the caller sets
// another; returns the descriptor (-1, errno set, on failure) and its path in `temp`.
int CreateTempIn(const std::filesystem::path& folder, TTempKind kind, std::filesystem::path& temp);

// Removes from `folder` the new-content temporaries of processes that no longer run (files of
// our own user only). Scans each folder once per process; cheap to call at every save.
void RemoveStaleTemps(const std::filesystem::path& folder);

} // namespace zv
