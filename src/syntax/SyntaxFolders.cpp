// Case-insensitive lookup of definition files in the syntax folders.
#include "syntax/SyntaxFolders.h"

#include "common/Utf.h"
#include "shell/IniName.h"

#include <system_error>

namespace zv {

std::optional<std::filesystem::path> FindFileNoCase(const std::filesystem::path& folder,
                                                    std::u16string_view name) {
    if (name.empty() || name.find(u'/') != name.npos)
        return std::nullopt;
    std::error_code ec;
    const std::filesystem::path exact = folder / Utf16ToUtf8(name);
    if (std::filesystem::is_regular_file(exact, ec))
        return exact;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec)) {
        if (!entry.is_regular_file(ec))
            continue;
        if (FoldedEqual(Utf8ToUtf16(entry.path().filename().string()), name))
            return entry.path();
    }
    return std::nullopt;
}

std::optional<std::filesystem::path> FindSyntaxFile(const std::filesystem::path& syntaxFolder,
                                                    std::u16string_view name) {
    if (auto user = FindFileNoCase(syntaxFolder / Utf16ToUtf8(kUserDefinedFolder), name))
        return user;
    return FindFileNoCase(syntaxFolder, name);
}

} // namespace zv
