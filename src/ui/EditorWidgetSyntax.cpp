// The editor widget's syntax by file name: the extension map of the data root chooses the
// definition file, the window's colour scheme colours it.
#include "ui/EditorWidget.h"

#include "shell/Settings.h"
#include "syntax/SyntaxSelect.h"

#include <system_error>

namespace zv {

std::u16string TEditorWidget::SetSyntaxForFile(const std::filesystem::path& fileName,
                                               const std::filesystem::path& root,
                                               const IStyleColorSource& colors,
                                               std::u16string_view forcedType) {
    TZvSyntax loader;
    loader.SetColorSource(&colors);
    TSyntaxEnvironment env;
    env.Settings = &SettingsIni();
    env.Language = &LanguageIni();
    env.Root = root;
    TSyntaxSelector selector(env, loader);
    std::error_code ec;
    const auto size = std::filesystem::file_size(fileName, ec);
    auto host = std::make_shared<TMemoStyleHost>();
    std::u16string type = selector.SetSyntaxStyle(fileName, *host, ec ? 0 : size, forcedType);
    SetSyntax(host->FStyles ? std::move(host) : nullptr);
    return type;
}

} // namespace zv
