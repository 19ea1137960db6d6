// The authoring check of a folder of definition files: every ".syx" loads without a warning,
// has keyword groups that are not empty, something that folds, a companion with a
// description and a sample, and claims extensions no other file claims. Used at build time
// on the shipped set.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zv {

struct TSyntaxSetReport {
    std::vector<std::string> Problems;             // one line each; empty when the set is clean
    std::map<std::string, std::string> Extensions; // ".ext" -> file name claiming it
    int Files = 0;
};

TSyntaxSetReport CheckSyntaxFolder(const std::filesystem::path& folder);

} // namespace zv
