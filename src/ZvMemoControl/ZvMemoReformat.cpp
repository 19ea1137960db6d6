// Refilling paragraphs to the right margin: the words of each paragraph (lines between blank
// lines) are laid out again greedily, each line as full as the margin allows, under the
// indent of the paragraph's first line.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoUndo.h"

namespace zv {

namespace {

bool IsBlankUnit(char16_t c) {
    return c == u' ' || c == u'\t';
}

bool IsBlankLine(std::u16string_view line) {
    for (char16_t c : line)
        if (!IsBlankUnit(c))
            return false;
    return true;
}

// Lays out the words of lines [from, to) within `margin` units into `result`; a word longer
// than the room left of the indent stands alone on its line.
void FillParagraph(const TLineList& lines, int from, int to, std::size_t margin, TRowArena& arena,
                   TLineList& result) {
    const std::u16string_view first = lines.Text(from);
    std::size_t indentLength = 0;
    while (indentLength < first.size() && IsBlankUnit(first[indentLength]))
        ++indentLength;
    const std::u16string_view indent = first.substr(0, indentLength);
    std::u16string line(indent);
    bool empty = true; // no word on `line` yet
    const auto flush = [&] {
        result.Add(arena.Add(line), leDocument);
        line.assign(indent);
        empty = true;
    };
    for (int i = from; i < to; ++i) {
        const std::u16string_view text = lines.Text(i);
        for (std::size_t p = 0; p < text.size();) {
            while (p < text.size() && IsBlankUnit(text[p]))
                ++p;
            std::size_t end = p;
            while (end < text.size() && !IsBlankUnit(text[end]))
                ++end;
            if (end == p)
                break;
            const std::u16string_view word = text.substr(p, end - p);
            if (!empty && line.size() + 1 + word.size() > margin)
                flush();
            if (!empty)
                line.push_back(u' ');
            line.append(word);
            empty = false;
            p = end;
        }
    }
    if (!empty)
        flush();
}

// Refills each paragraph of `lines`; blank lines stay as they are.
void Refill(const TLineList& lines, TLineList& result, int margin) {
    TRowArena arena;
    for (int i = 0; i < lines.Count();) {
        if (IsBlankLine(lines.Text(i))) {
            result.Add(lines.Lines[static_cast<std::size_t>(i)], leDocument);
            ++i;
            continue;
        }
        int end = i + 1;
        while (end < lines.Count() && !IsBlankLine(lines.Text(end)))
            ++end;
        FillParagraph(lines, i, end, static_cast<std::size_t>(std::max(margin, 1)), arena, result);
        i = end;
    }
    // Line ends of the block that stay between the same lines keep their kind.
    for (std::size_t e = 0; e < result.Ends.size() && e < lines.Ends.size(); ++e)
        if (result.Lines[e].View() == lines.Lines[e].View() &&
            result.Lines[e + 1].View() == lines.Lines[e + 1].View())
            result.Ends[e] = lines.Ends[e];
}

} // namespace

bool TZvMemo::acnReformatParagraph() {
    if (HasSelection())
        return acnReformatBlock();
    int first = std::clamp(Caret().Y, 0, std::max(RowCount() - 1, 0));
    if (RowCount() == 0 || IsBlankLine(RowText(first)))
        return false;
    int last = first;
    while (first > 0 && !IsBlankLine(RowText(first - 1)))
        --first;
    while (last + 1 < RowCount() && !IsBlankLine(RowText(last + 1)))
        ++last;
    const int margin = FRightMargin;
    return RunLineCommandOn(*this, first, last, std::make_unique<TReplaceUndo>(),
                            [margin](const TLineList& lines, TLineList& result) {
                                Refill(lines, result, margin);
                            }) >= 0;
}

bool TZvMemo::acnReformatBlock() {
    const int margin = FRightMargin;
    return RunLineCommand(
        *this, false, std::make_unique<TReplaceUndo>(),
        [margin](const TLineList& lines, TLineList& result) { Refill(lines, result, margin); });
}

} // namespace zv
