// Finding definition files: names match without regard to case, and a file in
// "Syntax/User defined/" wins over the one of the same name in "Syntax/".
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace zv {

// The entry of `folder` whose name equals `name` (exactly, else case-insensitively), if any.
std::optional<std::filesystem::path> FindFileNoCase(const std::filesystem::path& folder,
                                                    std::u16string_view name);

// "User defined" below the syntax folder, then the syntax folder itself.
std::optional<std::filesystem::path> FindSyntaxFile(const std::filesystem::path& syntaxFolder,
                                                    std::u16string_view name);

inline constexpr std::u16string_view kUserDefinedFolder = u"User defined";

} // namespace zv
