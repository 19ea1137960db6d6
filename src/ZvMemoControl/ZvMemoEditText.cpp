// Splitting, joining and measuring the texts that edits and undo records carry.
#include "ZvMemoControl/ZvMemoEditText.h"

#include <algorithm>

namespace zv {

TEditText TEditText::FromString(std::u16string_view s, bool documentEnds) {
    TEditText t;
    t.Rows.clear();
    // All rows view one copy of `s`: a pasted million lines make one allocation, not one
    // per line.
    std::size_t breaks = 0;
    for (char16_t c : s)
        breaks += c == u'\r' || c == u'\n';
    if (breaks == 0) {
        t.Rows.emplace_back(s);
        return t;
    }
    t.Rows.reserve(breaks + 1);
    t.Ends.reserve(breaks);
    TTextChunk* chunk = TTextChunk::Create(static_cast<std::uint32_t>(s.size()));
    std::copy(s.begin(), s.end(), chunk->Data());
    const TRowText whole(chunk, 0, static_cast<std::uint32_t>(s.size())); // frees it if unused
    const auto piece = [&](std::size_t from, std::size_t to) {
        return TRowText(chunk, static_cast<std::uint32_t>(from),
                        static_cast<std::uint32_t>(to - from));
    };
    std::size_t start = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char16_t c = s[i];
        if (c != u'\r' && c != u'\n')
            continue;
        t.Rows.push_back(piece(start, i));
        TLineEnd end = c == u'\n' ? leLF : leCR;
        if (c == u'\r' && i + 1 < s.size() && s[i + 1] == u'\n') {
            end = leCRLF;
            ++i;
        }
        t.Ends.push_back(documentEnds ? leDocument : end);
        start = i + 1;
    }
    t.Rows.push_back(piece(start, s.size()));
    return t;
}

namespace {

std::u16string_view EndText(TLineEnd end) {
    switch (end) {
    case leLF:
        return u"\n";
    case leCR:
        return u"\r";
    case leWrap:
        return u"";
    default:
        return u"\r\n";
    }
}

} // namespace

std::u16string TEditText::ToString() const {
    std::u16string out;
    out.reserve(Length());
    for (std::size_t i = 0; i < Rows.size(); ++i) {
        if (i > 0)
            out.append(EndText(Ends[i - 1]));
        out.append(Rows[i].View());
    }
    return out;
}

std::u16string TEditText::ToLfString() const {
    std::u16string out;
    for (std::size_t i = 0; i < Rows.size(); ++i) {
        if (i > 0 && Ends[i - 1] != leWrap)
            out.push_back(u'\n');
        out.append(Rows[i].View());
    }
    return out;
}

std::size_t TEditText::Length() const {
    std::size_t n = 0;
    for (const auto& row : Rows)
        n += row.Length();
    for (auto end : Ends)
        n += EndText(end).size();
    return n;
}

TZvPos TEditText::EndFrom(TZvPos at) const {
    const auto last = static_cast<std::int32_t>(Rows.back().Length());
    if (Ends.empty())
        return {at.X + last, at.Y};
    return {last, at.Y + BreakCount()};
}

TZvPos TEditText::LineEndFrom(TZvPos at) const {
    TZvPos end = at;
    for (std::size_t i = 0; i < Rows.size(); ++i) {
        if (i > 0 && Ends[i - 1] != leWrap) {
            ++end.Y;
            end.X = 0;
        }
        end.X += static_cast<std::int32_t>(Rows[i].Length());
    }
    return end;
}

void TEditText::Append(const TEditText& other) {
    Rows.back().Append(other.Rows.front().View());
    Rows.insert(Rows.end(), other.Rows.begin() + 1, other.Rows.end());
    Ends.insert(Ends.end(), other.Ends.begin(), other.Ends.end());
}

void TEditText::Prepend(const TEditText& other) {
    TEditText joined = other;
    joined.Append(*this);
    *this = std::move(joined);
}

std::u16string TEditText::Head(std::size_t n) const {
    std::u16string out;
    for (std::size_t i = 0; i < Rows.size() && out.size() < n; ++i) {
        if (i > 0)
            out.append(EndText(Ends[i - 1]));
        out.append(Rows[i].View().substr(0, n));
    }
    return out.substr(0, n);
}

} // namespace zv
