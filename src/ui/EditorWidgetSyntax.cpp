// The editor widget's syntax by file name: the extension map of the data root chooses the
// definition file, the colour scheme of the settings' theme colours it.
#include "ui/EditorWidget.h"

#include "shell/Settings.h"
#include "syntax/SyntaxSelect.h"
#include "syntax/TypeColors.h"

#include <system_error>

namespace zv {

void TEditorWidget::SetSyntaxForFile(const std::filesystem::path& fileName,
                                     const std::filesystem::path& root) {
    const TTypeColors colors(root / "Syntax" / "Colors.ini", SettingsIni());
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
    selector.SetSyntaxStyle(fileName, *host, ec ? 0 : size);
    SetSyntax(host->FStyles ? std::move(host) : nullptr);
}

} // namespace zv
