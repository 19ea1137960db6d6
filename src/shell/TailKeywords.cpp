// Reading the tail keywords and finding the one a line holds.
#include "shell/TailKeywords.h"

#include "ZvMemoControl/CaseFold.h"
#include "shell/ZvIniFiles.h"

namespace zv {

TTailKeywords::TTailKeywords(const TCustomIniFile& ini) {
    for (const std::u16string& name : ini.ReadSections()) {
        if (name.empty())
            continue;
        TTailKeyword keyword;
        keyword.IgnoreCase = ini.ReadBool(name, "IgnoreCase", false);
        keyword.Style.FTextColor =
            static_cast<TColor>(ini.ReadInteger(name, "ColorText", static_cast<int32_t>(kNoColor)));
        keyword.Style.FBkColor = ini.ReadBool(name, "Transparent", false)
                                     ? kNoColor
                                     : static_cast<TColor>(ini.ReadInteger(
                                           name, "ColorBk", static_cast<int32_t>(kNoColor)));
        keyword.Style.FBoldness = ini.ReadBool(name, "Bold", false) ? 1 : 0;
        keyword.Style.FStyle =
            static_cast<TFontStyles>((ini.ReadBool(name, "Bold", false) ? fsBold : 0) |
                                     (ini.ReadBool(name, "Italic", false) ? fsItalic : 0) |
                                     (ini.ReadBool(name, "Underline", false) ? fsUnderline : 0));
        if (ini.ReadBool(name, "RegEx", false)) {
            auto regex = std::make_shared<const TStyleRegex>(name, keyword.IgnoreCase);
            if (!regex->Valid())
                continue;
            keyword.Regex = std::move(regex);
            keyword.Text = name;
        } else {
            keyword.Text = keyword.IgnoreCase ? FoldCase(name) : name;
        }
        FKeywords.push_back(std::move(keyword));
    }
}

bool TTailKeywords::Holds(const TTailKeyword& keyword, std::u16string_view line,
                          std::u16string_view folded) const {
    if (keyword.Regex) {
        int length = 0;
        return keyword.Regex->Find(line, 0, FScratch, length) >= 0;
    }
    return (keyword.IgnoreCase ? folded : line).find(keyword.Text) != std::u16string_view::npos;
}

const TCharStyle* TTailKeywords::Match(std::u16string_view line) const {
    std::u16string folded; // made once, and only when a keyword ignores case
    for (const TTailKeyword& keyword : FKeywords) {
        if (keyword.IgnoreCase && !keyword.Regex && folded.empty() && !line.empty())
            folded = FoldCase(line);
        if (Holds(keyword, line, folded))
            return &keyword.Style;
    }
    return nullptr;
}

std::shared_ptr<const TTailKeywords> MemoGetFollowTailOptions(const std::filesystem::path& root) {
    return std::make_shared<const TTailKeywords>(TMemIniFileW(root / "Data" / "TailKeywords.ini"));
}

} // namespace zv
