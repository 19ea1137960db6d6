// What a replaced file keeps besides its bytes: owner, group, mode (setuid and setgid bits
// included) and extended attributes, which carry ACLs and security labels.
#pragma once

#include <sys/stat.h>

#include <filesystem>

namespace zv {

// Gives the open file `fd` the owner, group and mode of `old` (the stat of `original`) and
// copies the extended attributes of `original` onto it. The owner is given first, because a
// change of owner clears the setuid and setgid bits; only a privileged user may give a file
// away, else the group is kept where we belong to it. Attributes that cannot be set (a
// namespace needing privileges) are skipped. Returns false only when the mode cannot be set.
bool KeepMetadata(int fd, const struct stat& old, const std::filesystem::path& original);

} // namespace zv
