// Smaller text commands: aligning lines in the margins, markup tags, inserting the date and
// time, and counting words.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"
#include "common/Utf.h"

#include <unicode/utf16.h>

#include <ctime>

namespace zv {

namespace {

std::u16string_view Trimmed(std::u16string_view s) {
    while (!s.empty() && (s.front() == u' ' || s.front() == u'\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == u' ' || s.back() == u'\t'))
        s.remove_suffix(1);
    return s;
}

// 0 left, 1 centre, 2 right: the line's text without outer blanks, padded with spaces.
bool AlignLines(TZvMemo& memo, int how) {
    const int margin = std::max(memo.FRightMargin, 1);
    return RunLineCommand(
        memo, true, std::make_unique<TReplaceUndo>(),
        [&](const TLineList& lines, TLineList& result) {
            MapLines(lines, result, [&](std::u16string_view line, std::u16string& out) {
                const auto text = Trimmed(line);
                const int room = margin - static_cast<int>(text.size());
                if (!text.empty() && room > 0 && how > 0)
                    out.assign(static_cast<std::size_t>(how == 1 ? room / 2 : room), u' ');
                out.append(text);
                return out != line;
            });
        });
}

} // namespace

bool TZvMemo::acnBlockAlignLeft() {
    return AlignLines(*this, 0);
}

bool TZvMemo::acnBlockAlignCenter() {
    return AlignLines(*this, 1);
}

bool TZvMemo::acnBlockAlignRight() {
    return AlignLines(*this, 2);
}

bool TZvMemo::acnStripTags() {
    bool inTag = false; // a tag may run over line ends
    return RunLineCommand(*this, false, std::make_unique<TReplaceUndo>(),
                          [&](const TLineList& lines, TLineList& result) {
                              MapLines(lines, result,
                                       [&](std::u16string_view line, std::u16string& out) {
                                           for (char16_t c : line) {
                                               if (inTag)
                                                   inTag = c != u'>';
                                               else if (c == u'<')
                                                   inTag = true;
                                               else
                                                   out.push_back(c);
                                           }
                                           return out.size() != line.size();
                                       });
                          });
}

bool TZvMemo::acnAddHtmlLineBreaks() {
    return RunLineCommand(
        *this, false, std::make_unique<TReplaceUndo>(),
        [](const TLineList& lines, TLineList& result) {
            MapLines(lines, result, [](std::u16string_view line, std::u16string& out) {
                constexpr std::u16string_view br = u"<br>";
                if (line.size() >= br.size() && line.substr(line.size() - br.size()) == br)
                    return false;
                out.assign(line);
                out.append(br);
                return true;
            });
        });
}

bool TZvMemo::acnInsertDateTime(const std::string& format) {
    if (!MayChangeText(*this) || format.empty())
        return false;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char buffer[256];
    const std::size_t n = std::strftime(buffer, sizeof buffer, format.c_str(), &local);
    if (n == 0)
        return false;
    return InsertText(Utf8ToUtf16(std::string_view(buffer, n)));
}

TZvMemo::TWordCount TZvMemo::acnWordCount() const {
    TWordCount count;
    TZvPos s{0, 0}, e{RowLength(RowCount() - 1), RowCount() - 1};
    if (HasSelection()) {
        OrderedSelection(s, e);
        s.X = std::min(s.X, RowLength(s.Y));
        e.X = std::min(e.X, RowLength(e.Y));
    }
    const TEditText text = ExtractText(Lines(), s, e);
    bool inWord = false;
    for (std::size_t r = 0; r < text.Rows.size(); ++r) {
        const auto row = text.Rows[r].View();
        if (r > 0 && text.Ends[r - 1] != leWrap)
            inWord = false;
        if (r == 0 || text.Ends[r - 1] != leWrap)
            ++count.Lines;
        for (std::size_t i = 0; i < row.size();) {
            char32_t c;
            U16_NEXT(row.data(), i, row.size(), c);
            ++count.Chars;
            const bool blank = c <= 0xFFFF && IsWhiteSpace(static_cast<char16_t>(c));
            count.Words += !blank && !inWord;
            inWord = !blank;
        }
    }
    if (text.Rows.size() > 1 && text.Rows.back().Empty() && text.Ends.back() != leWrap)
        --count.Lines; // the empty row behind a final line end
    return count;
}

} // namespace zv
