// Reading "HtmlMulti.ini" and "ASPXMulti.ini".
#include "syntax/MultiSyntax.h"

#include "shell/ZvIniFiles.h"

#include <array>

namespace zv {

std::vector<TEmbeddedSyntax> ReadHtmlMulti(const std::filesystem::path& iniFile,
                                           std::u16string_view aspHighlighter) {
    static constexpr std::array<TScriptType, 8> kSlots{scASP, scPHP, scJS,  scVB,
                                                       scCSS, scCF,  scSVG, scHyperscript};
    const TMemIniFileW ini(iniFile);
    std::vector<TEmbeddedSyntax> entries;
    for (std::size_t n = 1; n <= kSlots.size(); ++n) {
        const char key[2] = {static_cast<char>('0' + n), '\0'};
        std::u16string file = ini.ReadString("Highlighters", key, u"");
        if (n == 1 && !aspHighlighter.empty())
            file = aspHighlighter;
        if (!file.empty())
            entries.push_back({kSlots[n - 1], std::move(file)});
    }
    return entries;
}

std::vector<TEmbeddedSyntax> ReadAspxMulti(const std::filesystem::path& iniFile) {
    const TMemIniFileW ini(iniFile);
    std::vector<TEmbeddedSyntax> entries;
    auto add = [&](TScriptType type, const char* key) {
        std::u16string file = ini.ReadString("Highlighters", key, u"");
        if (!file.empty())
            entries.push_back({type, std::move(file)});
    };
    add(scASP, "CodeLang1");
    add(scJS, "CodeLang1");
    add(scVB, "CodeLang2");
    add(scCSS, "1");
    return entries;
}

} // namespace zv
