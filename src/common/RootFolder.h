// Where the program's data lives: the root folder all data paths are relative to. One rule for
// every program of the tree (the editor and zvtool), so they find the same data.
#pragma once

#include <filesystem>
#include <string>

namespace zv {

// The folder of the running program file (resolved through /proc/self/exe).
std::filesystem::path ProgramFolder();

// True when "InstallData" stands beside the program or in <prefix>/share/zevrit/.
bool IsInstalledMode(const std::filesystem::path& programFolder);

// The root for a given program folder and environment, without caching:
// $ZEVRIT_ROOT when set and non-empty; installed: ${XDG_CONFIG_HOME:-$HOME/.config}/zevrit;
// portable: the parent of the program folder.
std::filesystem::path ComputeRootFolder(const std::filesystem::path& programFolder);

// The root of this process, computed once and cached. Always ends without a separator.
const std::filesystem::path& GetRootFolder();

} // namespace zv
