// The per-row facts a full scan gathers: brace reduction, indent and the to-do word test.
#include "syntax/RowFacts.h"

#include <algorithm>

namespace zv {

int TRowFacts::BraceKind(char16_t c) {
    switch (c) {
    case u'(':
    case u')':
        return 0;
    case u'{':
    case u'}':
        return 1;
    case u'[':
    case u']':
        return 2;
    default:
        return -1;
    }
}

void TRowFacts::AddBrace(char16_t c) {
    const int k = BraceKind(c);
    if (k < 0 || Saturated(k))
        return;
    if (Opens(c))
        ++Open[k];
    else if (Open[k] > 0)
        --Open[k]; // closes an opener of this row
    else
        ++Close[k];
}

std::int16_t RowIndent(std::u16string_view text, int tabSize) {
    tabSize = std::max(tabSize, 1);
    int column = 0;
    for (const char16_t c : text) {
        if (c == u'\t')
            column += tabSize - column % tabSize;
        else if (c == u' ' || c == 0x00A0)
            ++column;
        else
            return std::int16_t(std::min(column, 32767));
    }
    return -1;
}

bool TodoWordAt(std::u16string_view text, int from, const std::vector<std::u16string>& words) {
    const int n = int(text.size());
    while (from < n && (text[from] == u' ' || text[from] == u'\t'))
        ++from;
    for (const std::u16string& w : words) {
        if (w.empty() || text.substr(from).substr(0, w.size()) != w)
            continue;
        const std::size_t after = from + w.size();
        if (after >= text.size())
            return true;
        const char16_t c = text[after];
        const bool wordChar = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
                              (c >= u'0' && c <= u'9') || c == u'_' || c >= 192;
        if (!wordChar)
            return true;
    }
    return false;
}

} // namespace zv
