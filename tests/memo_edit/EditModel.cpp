// The plain document model of the editing tests.
#include "EditModel.h"

#include <unicode/brkiter.h>

#include <memory>

namespace zv::test {
namespace {

std::vector<std::u16string> SplitLf(const std::u16string& s) {
    std::vector<std::u16string> out(1);
    for (char16_t c : s) {
        if (c == u'\n')
            out.emplace_back();
        else
            out.back().push_back(c);
    }
    return out;
}

// A character break iterator over `row`; the iterator keeps a reference to the text, so
// both live together.
struct TCharacters {
    explicit TCharacters(const std::u16string& row)
        : text(reinterpret_cast<const UChar*>(row.data()), static_cast<int32_t>(row.size())) {
        UErrorCode status = U_ZERO_ERROR;
        it.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        it->setText(text);
    }
    icu::UnicodeString text;
    std::unique_ptr<icu::BreakIterator> it;
};

} // namespace

TEditModel::TEditModel(const std::u16string& text) : Lines(SplitLf(text)) {}

std::u16string TEditModel::Text() const {
    std::u16string out;
    for (std::size_t i = 0; i < Lines.size(); ++i)
        out += (i ? u"\n" : u"") + Lines[i];
    return out;
}

int TEditModel::NextCluster(const std::u16string& row, int pos) {
    if (pos >= static_cast<int>(row.size()))
        return pos + 1;
    return TCharacters(row).it->following(pos);
}

int TEditModel::PrevCluster(const std::u16string& row, int pos) {
    if (pos > static_cast<int>(row.size()))
        return pos - 1;
    return pos <= 0 ? 0 : TCharacters(row).it->preceding(pos);
}

std::u16string TEditModel::Cut(TZvPos from, TZvPos to) {
    std::u16string cut;
    if (from.Y == to.Y) {
        cut = Lines[from.Y].substr(from.X, to.X - from.X);
        Lines[from.Y].erase(from.X, to.X - from.X);
        return cut;
    }
    cut = Lines[from.Y].substr(from.X);
    for (int y = from.Y + 1; y < to.Y; ++y)
        cut += u"\n" + Lines[y];
    cut += u"\n" + Lines[to.Y].substr(0, to.X);
    Lines[from.Y] = Lines[from.Y].substr(0, from.X) + Lines[to.Y].substr(to.X);
    Lines.erase(Lines.begin() + from.Y + 1, Lines.begin() + to.Y + 1);
    return cut;
}

void TEditModel::InsertAt(TZvPos at, const std::u16string& text) {
    auto parts = SplitLf(text);
    const std::u16string tail = Lines[at.Y].substr(at.X);
    Lines[at.Y] = Lines[at.Y].substr(0, at.X) + parts[0];
    for (std::size_t i = 1; i < parts.size(); ++i)
        Lines.insert(Lines.begin() + at.Y + static_cast<long>(i), parts[i]);
    Lines[at.Y + parts.size() - 1] += tail;
}

void TEditModel::PadTo(TZvPos caret) {
    auto& row = Lines[caret.Y];
    if (caret.X > static_cast<int>(row.size()))
        row.append(caret.X - row.size(), u' ');
}

void TEditModel::Paste(TZvPos caret, TZvPos selStart, TZvPos selEnd, const std::u16string& text) {
    std::u16string lf = TEditText::FromString(text, false).ToLfString();
    if (selStart != selEnd) {
        Cut(selStart, selEnd);
        InsertAt(selStart, lf);
        return;
    }
    PadTo(caret);
    InsertAt(caret, lf);
}

void TEditModel::Type(TZvPos caret, TZvPos selStart, TZvPos selEnd, char16_t c) {
    Paste(caret, selStart, selEnd, std::u16string(1, c));
}

void TEditModel::Enter(TZvPos caret, TZvPos selStart, TZvPos selEnd, bool autoIndent) {
    std::u16string indent;
    const auto& row = Lines[caret.Y];
    const int limit = std::min<int>(caret.X, static_cast<int>(row.size()));
    for (int i = 0; autoIndent && i < limit && (row[i] == u' ' || row[i] == u'\t'); ++i)
        indent += row[i];
    if (selStart == selEnd)
        caret.X = std::min<int>(caret.X, static_cast<int>(row.size()));
    Paste(caret, selStart, selEnd, u"\n" + indent);
}

void TEditModel::DeleteRange(TZvPos from, TZvPos to) {
    Cut(from, to);
}

void TEditModel::Backspace(TZvPos caret, TZvPos selStart, TZvPos selEnd) {
    if (selStart != selEnd)
        return DeleteRange(selStart, selEnd);
    if (caret.X == 0) {
        if (caret.Y > 0)
            Cut({static_cast<int>(Lines[caret.Y - 1].size()), caret.Y - 1}, {0, caret.Y});
        return;
    }
    const auto& row = Lines[caret.Y];
    if (caret.X > static_cast<int>(row.size()))
        return;
    Cut({PrevCluster(row, caret.X), caret.Y}, caret);
}

void TEditModel::Delete(TZvPos caret, TZvPos selStart, TZvPos selEnd) {
    if (selStart != selEnd)
        return DeleteRange(selStart, selEnd);
    const auto& row = Lines[caret.Y];
    if (caret.X < static_cast<int>(row.size())) {
        Cut(caret, {NextCluster(row, caret.X), caret.Y});
        return;
    }
    if (caret.Y + 1 >= static_cast<int>(Lines.size()))
        return;
    PadTo(caret);
    Cut(caret, {0, caret.Y + 1});
}

void TEditModel::Move(TZvPos from, TZvPos to, TZvPos drop) {
    if (drop > from && drop < to)
        return;
    if (drop >= to) {
        if (drop.Y == to.Y)
            drop = {from.X + (drop.X - to.X), from.Y};
        else
            drop.Y -= to.Y - from.Y;
    }
    const std::u16string moved = Cut(from, to);
    InsertAt(drop, moved);
}

void TEditModel::DeleteLine(int row) {
    if (Lines.size() == 1)
        Lines[0].clear();
    else
        Lines.erase(Lines.begin() + row);
}

void TEditModel::DuplicateLines(int first, int last) {
    const std::vector<std::u16string> copy(Lines.begin() + first, Lines.begin() + last + 1);
    Lines.insert(Lines.begin() + last + 1, copy.begin(), copy.end());
}

} // namespace zv::test
