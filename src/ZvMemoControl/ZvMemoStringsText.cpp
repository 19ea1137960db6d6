// Whole-text operations of the line store: extraction with line ends, splitting text into
// rows (SetTextStr, SetTextStrSilent, SetText), tab expansion and the search
// primitives over one row.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/RowSplitter.h"
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <algorithm>
#include <map>

namespace zv {
namespace {

std::u16string_view LineEndFor(const TAttribute& next, bool addLineEnds, bool formFeed) {
    if (addLineEnds && !formFeed)
        return u"\r\n";
    return LineEndBefore(next, formFeed ? u"\f" : u"\r\n");
}

} // namespace

// ---- Extraction -------------------------------------------------------------------------

std::u16string TZvMemoStrings::GetText(int startRow, int endRow, int startCol, int endCol,
                                       bool columnMode, bool addLineEnds, bool formFeed) const {
    if (FCount == 0 || (startRow == endRow && startCol == endCol + 1))
        return {};
    if (startRow > endRow || (startRow == endRow && startCol > endCol)) {
        std::swap(startRow, endRow);
        if (columnMode || startRow == endRow)
            std::swap(startCol, endCol);
        else
            std::swap(startCol, endCol);
    }
    if (columnMode && startCol > endCol)
        std::swap(startCol, endCol);
    startRow = std::clamp(startRow, 0, Count() - 1);
    endRow = std::clamp(endRow, 0, Count() - 1);
    const auto clipStart = [&](int row, int col) {
        return std::clamp(col, 1, GetLineLength(row) + 1);
    };
    const auto clipEnd = [&](int row, int col) { return std::clamp(col, 0, GetLineLength(row)); };
    std::u16string out;
    if (startRow == endRow) {
        const int a = clipStart(startRow, startCol), b = clipEnd(startRow, endCol);
        return b >= a ? std::u16string(Get(startRow).substr(a - 1, b - a + 1)) : std::u16string();
    }
    for (int r = startRow; r <= endRow; ++r) {
        if (!Item(r)->FObject.Enabled())
            continue;
        const auto s = Get(r);
        int a = 1, b = static_cast<int>(s.size());
        if (columnMode || r == startRow)
            a = clipStart(r, startCol);
        if (columnMode || r == endRow)
            b = clipEnd(r, endCol);
        if (b >= a)
            out.append(s.substr(a - 1, b - a + 1));
        if (r < endRow && (columnMode || !Item(r + 1)->FObject.Wrapped()))
            out.append(LineEndFor(Item(r + 1)->FObject, addLineEnds, formFeed));
    }
    return out;
}

std::u16string TZvMemoStrings::GetText() const {
    return FCount ? GetText(0, Count() - 1, 1, GetLineLength(Count() - 1), false, true, false)
                  : std::u16string();
}

std::u16string TZvMemoStrings::GetTextWithLinefeeds() const {
    return FCount ? GetText(0, Count() - 1, 1, GetLineLength(Count() - 1), false, false, false)
                  : std::u16string();
}

std::u16string TZvMemoStrings::GetTabExpanded(int row) const {
    std::u16string s(Get(row));
    WConvertTabToSpace(s, Memo().FTabSize, u' ');
    return s;
}

int TZvMemoStrings::GetVisualLength(int row) const {
    return static_cast<int>(GetTabExpanded(row).size());
}

int TZvMemoStrings::GetVisualIndent(int row, int tabSize, bool blankAsNone) const {
    const auto s = Get(row);
    if (s.empty())
        return -1;
    tabSize = std::max(tabSize, 1);
    int col = 0;
    std::size_t i = 0;
    for (; i < s.size() && (s[i] == u' ' || s[i] == u'\t' || s[i] == 0xA0); ++i)
        col = s[i] == u'\t' ? col + tabSize - col % tabSize : col + 1;
    if (i == s.size() && blankAsNone)
        return -1;
    return col;
}

// ---- Search primitives ------------------------------------------------------------------

int TZvMemoStrings::WPosAt(int row, std::u16string_view what, int from, bool caseless) const {
    if (!InRange(row))
        return 0;
    return caseless ? WNCPosEx(what, Get(row), from) : WPosEx(what, Get(row), from);
}

int TZvMemoStrings::WRPosAt(int row, std::u16string_view what, int from) const {
    return InRange(row) ? WRPosEx(what, Get(row), from, false) : 0;
}

int TZvMemoStrings::WNCPosAt(int row, std::u16string_view what, int from) const {
    return WPosAt(row, what, from, true);
}

int TZvMemoStrings::WNCRPosAt(int row, std::u16string_view what, int from) const {
    return InRange(row) ? WRPosEx(what, Get(row), from, true) : 0;
}

int TZvMemoStrings::WTextPosAt(int row, std::u16string_view what, int from, int count,
                               bool caseless) const {
    return InRange(row) ? WTextPos(what, Get(row), from, count, caseless) : 0;
}

int TZvMemoStrings::WRegexPosAt(int row, std::u16string_view what, int from,
                                std::u16string& match) const {
    match.clear();
    if (!OnRegExFind || Get(row).empty())
        return -1;
    const int col = OnRegExFind(Get(row), what, from, match);
    return col > 0 ? col : -1;
}

// ---- Splitting text into rows -----------------------------------------------------------

void TZvMemoStrings::SetTextStr(std::u16string_view s) {
    BeginUpdate();
    if (!FAddToStringList && !FMonitorLogFile)
        ClearQuick();
    FSize = static_cast<std::int64_t>(s.size());
    TRowSplitter splitter(*this, false, false);
    if (Memo().FBinaryMode) {
        std::string bytes(s.size(), '\0');
        for (std::size_t i = 0; i < s.size(); ++i)
            bytes[i] = static_cast<char>(s[i] & 0xFF);
        splitter.FeedBinary(bytes);
    } else {
        splitter.FeedText(s, true);
    }
    splitter.Finish();
    ApplyLineEndVerdict(splitter.CrLfCount(), splitter.LfCount(), splitter.CrCount());
    EndUpdate();
}

void TZvMemoStrings::SetTextStrSilent(std::u16string_view s) {
    std::map<int, std::int8_t> bookmarks;
    std::vector<int> linemarks;
    for (std::size_t i = 0; i < FCount; ++i) {
        if (Item(i)->FObject.Bookmark >= 0)
            bookmarks[static_cast<int>(i)] = Item(i)->FObject.Bookmark;
        if (Item(i)->FObject.GetValue(abLinemark))
            linemarks.push_back(static_cast<int>(i));
    }
    ClearQuick();
    TRowSplitter splitter(*this, true, false);
    splitter.FeedText(s, true);
    splitter.Finish();
    for (const auto& [row, mark] : bookmarks)
        if (InRange(row))
            Item(row)->FObject.Bookmark = mark;
    for (int row : linemarks)
        if (InRange(row))
            Item(row)->FObject.SetValue(abLinemark, true);
}

void TZvMemoStrings::SetText(std::u16string_view s) {
    std::vector<std::u16string_view> lines;
    if (Memo().FBinaryMode) {
        for (std::size_t i = 0; i < s.size(); i += 80)
            lines.push_back(s.substr(i, 80));
    } else {
        std::size_t start = 0;
        for (std::size_t i = 0; i <= s.size(); ++i) {
            if (i < s.size() && s[i] != u'\r' && s[i] != u'\n')
                continue;
            lines.push_back(s.substr(start, i - start));
            if (i + 1 < s.size() && s[i] == u'\r' && s[i + 1] == u'\n')
                ++i;
            start = i + 1;
        }
    }
    std::lock_guard lock(FLock);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i < FCount) {
            Item(i)->FString.Assign(lines[i]);
            continue;
        }
        TRowItem& item = AppendItem();
        item.FString.Assign(lines[i]);
        item.FObject = NewAttribute();
        item.FObject.SetValue(abChanged, true);
        item.FObject.SetValue(abChangeSaved, false);
        item.FObject.SetChangeHistory(item.FObject.ChangeHistory() + 1);
        ++FVisibleCount;
    }
    if (FCount > lines.size())
        DeleteLinesSilent(static_cast<int>(lines.size()), static_cast<int>(FCount - lines.size()));
    Changed();
}

} // namespace zv
