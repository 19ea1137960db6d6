// The fold pass. First each row is classed (blank, comment, code, with its indent) from its
// text and the state above it; then the rows are walked once, each row being tried in turn
// as a region word, a comment fold, a definition's head and an indented block's head.
#include "syntax/FoldPass.h"

#include "ZvMemoControl/ZvMemoStyles.h"
#include "syntax/LineScanner.h"

#include <algorithm>
#include <string_view>

namespace zv {
namespace {

enum class TRowKind : std::uint8_t {
    Blank,
    Code,
    LineComment,  // begins with a line comment opener
    InComment,    // begins inside a block comment
    CommentOpens, // begins with a block comment opener that the row does not close
};

struct TRowClass {
    const TZvCustomMemoStyles* Set = nullptr; // the set in force at the row's start
    std::int32_t Indent = -1;                 // columns of leading blanks; -1 for a blank row
    TRowKind Kind = TRowKind::Blank;
};

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == 0xA0;
}

bool IsWordChar(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           c == u'_' || c > 0x7F;
}

char16_t AsciiLower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

bool SameText(std::u16string_view a, std::u16string_view b, bool caseSensitive) {
    if (a.size() != b.size())
        return false;
    if (caseSensitive)
        return a == b;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (AsciiLower(a[i]) != AsciiLower(b[i]))
            return false;
    return true;
}

std::size_t FirstNonBlank(std::u16string_view text) {
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i]))
        ++i;
    return i;
}

// Calls `f` with each alternative of a "|"- or line-separated word list.
template <class F> void ForEachWord(std::u16string_view list, F&& f) {
    while (!list.empty()) {
        const std::size_t cut = list.find_first_of(u"|\n");
        const std::u16string_view word = list.substr(0, cut);
        if (!word.empty() && !f(word))
            return;
        if (cut == std::u16string_view::npos)
            break;
        list.remove_prefix(cut + 1);
    }
}

bool StartsWithAny(std::u16string_view text, std::u16string_view list) {
    bool found = false;
    ForEachWord(list, [&](std::u16string_view w) {
        found = text.starts_with(w);
        return !found;
    });
    return found;
}

// A definition word with its marks taken off.
struct TWordMarks {
    std::u16string_view Word;
    bool LineStart = false;  // "^": only blanks before it
    bool AfterWords = false; // "~": only blanks, letters and allowed symbols before it
    bool Last = false;       // U+00A8: the last occurrence counts
};

TWordMarks Marks(std::u16string_view w) {
    TWordMarks m;
    for (bool more = true; more && !w.empty();) {
        more = true;
        if (w[0] == u'^')
            m.LineStart = true;
        else if (w[0] == u'~')
            m.AfterWords = true;
        else if (w[0] == 0xA8)
            m.Last = true;
        else
            more = false;
        if (more)
            w.remove_prefix(1);
    }
    m.Word = w;
    return m;
}

class TFoldWalk {
public:
    TFoldWalk(TLineScanner& scanner, const TFoldPassOptions& options, TFoldTemp& out,
              bool fromThread, const std::atomic<bool>* halt)
        : FScanner(scanner), FStore(scanner.Store()), FOptions(options), FOut(out),
          FFromThread(fromThread), FHalt(halt) {}

    bool Run();

private:
    bool Halted() const { return FHalt && FHalt->load(std::memory_order_relaxed); }
    TRowText Text(int row) const;
    TStyle StateBefore(int row) const;
    const TZvCustomMemoStyles* SetAt(int row) const;
    bool ClassifyRows();
    // The first column of `word` in `text` that honours the marks, or npos.
    std::size_t FindWord(std::u16string_view text, const TWordMarks& m, bool caseSensitive,
                         std::u16string_view allowed, std::size_t from = 0) const;
    bool OutsideCommentsAndStrings(int row, std::size_t x);
    const TNodes* DefinitionOf(int row, const TZvCustomMemoStyles& set);
    // 0: no region word on the row; 1: it starts a region; 2: it ends one.
    int RegionWord(int row, const TZvCustomMemoStyles& set) const;
    bool RegionRow(int row, const TZvCustomMemoStyles& set);
    int CommentFold(int row, const TZvCustomMemoStyles& set);
    bool PairedFold(int row, const TNodes& def, const TZvCustomMemoStyles& set);
    int CountWords(int row, std::u16string_view list, const TZvCustomMemoStyles& set);
    void IndentFold(int row, const TNodes* def, const TZvCustomMemoStyles& set);
    int SectionEnd(int row, const TNodes& def, const TZvCustomMemoStyles& set);
    int NextCodeRow(int row) const;
    std::int8_t LevelAt(int row) const;
    void SetFold(int first, int last, const TNodes* def, bool comment, bool region, bool endBefore,
                 int regionLevel = 0);

    TLineScanner& FScanner;
    const TZvMemoStrings& FStore;
    const TFoldPassOptions& FOptions;
    TFoldTemp& FOut;
    bool FFromThread;
    const std::atomic<bool>* FHalt;
    int FCount = 0;
    std::vector<TRowClass> FRows;
    std::vector<std::int8_t> FLevel;    // nesting depth the folds so far give each row, -1 none
    std::vector<std::uint8_t> FHeadEnd; // 1 the row heads a fold, 2 it ends one
    std::vector<int> FRegionStack;      // head rows of the open regions
};

TRowText TFoldWalk::Text(int row) const {
    if (!FFromThread)
        return FStore.GetRowText(row);
    std::lock_guard lock(FStore.Lock());
    return FStore.GetRowText(row);
}

TStyle TFoldWalk::StateBefore(int row) const {
    bool valid = false;
    return FScanner.GetLineStyle(row - 1, valid);
}

const TZvCustomMemoStyles* TFoldWalk::SetAt(int row) const {
    return FRows[static_cast<std::size_t>(row)].Set;
}

bool InCommentOrString(const TStyle& s) {
    const TStyleProperties& p = s.Properties;
    return p.Get(spInComment) || p.Get(spInLineComment) || p.BracketId >= 0 ||
           (s.Block.Id <= -2 && s.Block.Id >= -4);
}

bool TFoldWalk::ClassifyRows() {
    FRows.assign(static_cast<std::size_t>(FCount), {});
    TStyle before;
    ClearStyle(before, true);
    bool valid = false;
    for (int row = 0; row < FCount; ++row) {
        if ((row & 1023) == 0 && Halted())
            return false;
        const TStyle after = FScanner.GetLineStyle(row, valid);
        const TRowText holder = Text(row);
        const std::u16string_view text = holder.View();
        TRowClass& c = FRows[static_cast<std::size_t>(row)];
        std::size_t i = 0;
        int indent = 0;
        for (; i < text.size() && IsBlank(text[i]); ++i)
            indent =
                text[i] == u'\t' ? (indent / FOptions.TabSize + 1) * FOptions.TabSize : indent + 1;
        if (i < text.size()) {
            c.Indent = indent;
            c.Kind = TRowKind::Code;
            const TZvCustomMemoStyles* set = FScanner.Context().SetFor(before.Properties);
            c.Set = set;
            const std::u16string_view rest = text.substr(i);
            if (before.Properties.Get(spInComment))
                c.Kind = TRowKind::InComment;
            else if (set && !InCommentOrString(before)) {
                if ((!set->FLineCommentA.empty() && StartsWithAny(rest, set->FLineCommentA)) ||
                    (!set->FLineCommentB.empty() && StartsWithAny(rest, set->FLineCommentB)))
                    c.Kind = TRowKind::LineComment;
                else if (after.Properties.Get(spInComment) &&
                         ((!set->FCommentStartA.empty() && rest.starts_with(set->FCommentStartA)) ||
                          (!set->FCommentStartB.empty() && rest.starts_with(set->FCommentStartB))))
                    c.Kind = TRowKind::CommentOpens;
            }
        }
        before = after;
    }
    return true;
}

std::size_t TFoldWalk::FindWord(std::u16string_view text, const TWordMarks& m, bool caseSensitive,
                                std::u16string_view allowed, std::size_t from) const {
    const std::u16string_view w = m.Word;
    if (w.empty() || text.size() < w.size())
        return std::u16string_view::npos;
    const std::size_t first = FirstNonBlank(text);
    std::size_t found = std::u16string_view::npos;
    const char16_t head = caseSensitive ? w[0] : AsciiLower(w[0]);
    // A word that must begin the row is tried there only.
    const std::size_t stop = m.LineStart ? std::min(first + 1, text.size()) : text.size();
    for (std::size_t x = std::max(from, first); x < stop && x + w.size() <= text.size(); ++x) {
        if ((caseSensitive ? text[x] : AsciiLower(text[x])) != head ||
            !SameText(text.substr(x, w.size()), w, caseSensitive))
            continue;
        const bool wordStart = IsWordChar(w.front()), wordEnd = IsWordChar(w.back());
        if (wordStart && x > 0 && IsWordChar(text[x - 1]))
            continue;
        if (wordEnd && x + w.size() < text.size() && IsWordChar(text[x + w.size()]))
            continue;
        if (m.LineStart && x != first)
            break;
        if (m.AfterWords) {
            const auto fits = [&](char16_t c) {
                return IsBlank(c) || (c < 0x80 && IsWordChar(c) && !(c >= u'0' && c <= u'9')) ||
                       allowed.find(c) != std::u16string_view::npos;
            };
            if (!std::all_of(text.begin() + static_cast<std::ptrdiff_t>(first),
                             text.begin() + static_cast<std::ptrdiff_t>(x), fits))
                break;
        }
        found = x;
        if (!m.Last)
            break;
    }
    return found;
}

bool TFoldWalk::OutsideCommentsAndStrings(int row, std::size_t x) {
    TStyle state = StateBefore(row);
    if (InCommentOrString(state))
        return false;
    if (x > 0 && !FScanner.GetUpLineStyleFromThread(row, 1, static_cast<int>(x), state, nullptr,
                                                    FFromThread, FHalt))
        return false;
    return !InCommentOrString(state);
}

// The first definition, in file order, whose identifying word (or, without one, a begin
// word) stands on the row in code.
const TNodes* TFoldWalk::DefinitionOf(int row, const TZvCustomMemoStyles& set) {
    if (set.FNodes.empty())
        return nullptr;
    const TRowText holder = Text(row);
    const std::u16string_view text = holder.View();
    for (const TNodes& def : set.FNodes) {
        std::size_t at = std::u16string_view::npos;
        const auto tryWord = [&](std::u16string_view w) {
            std::u16string plain;
            if (w.find(u'@') != std::u16string_view::npos) {
                plain = w;
                std::erase(plain, u'@');
                w = plain;
            }
            at = FindWord(text, Marks(w), set.FNodeOpt_Case, set.FNodeOpt_AllowedWordSymbols);
            return at == std::u16string_view::npos;
        };
        if (!def.wId.empty())
            tryWord(def.wId);
        if (at == std::u16string_view::npos)
            ForEachWord(def.wStart, tryWord);
        if (at != std::u16string_view::npos && OutsideCommentsAndStrings(row, at))
            return &def;
    }
    return nullptr;
}

int TFoldWalk::RegionWord(int row, const TZvCustomMemoStyles& set) const {
    if (set.FRgn_Start.empty())
        return 0;
    const TRowText holder = Text(row);
    std::u16string_view text = holder.View();
    text.remove_prefix(FirstNonBlank(text));
    if (!set.FRgn_CommentStart.empty() && text.starts_with(set.FRgn_CommentStart)) {
        text.remove_prefix(set.FRgn_CommentStart.size());
        text.remove_prefix(FirstNonBlank(text));
    }
    const auto starts = [&](const TStringList& words) {
        return std::any_of(words.begin(), words.end(), [&](const std::u16string& w) {
            return text.size() >= w.size() && SameText(text.substr(0, w.size()), w, false);
        });
    };
    if (starts(set.FRgn_End)) // before the start words: "#endregion" may hold "region"
        return 2;
    return starts(set.FRgn_Start) ? 1 : 0;
}

// Region words: a start opens a region, an end closes the last open one.
bool TFoldWalk::RegionRow(int row, const TZvCustomMemoStyles& set) {
    const int word = RegionWord(row, set);
    if (word == 1)
        FRegionStack.push_back(row);
    if (word == 2 && !FRegionStack.empty()) {
        const int head = FRegionStack.back();
        FRegionStack.pop_back();
        if (row > head)
            SetFold(head, row, nullptr, false, true, false,
                    static_cast<int>(FRegionStack.size()) + 1);
    }
    return word != 0;
}

// A run of two or more line comments, or a block comment over several rows: returns the last
// row of the fold, or -1 when the row starts none.
int TFoldWalk::CommentFold(int row, const TZvCustomMemoStyles& set) {
    const TRowKind kind = FRows[static_cast<std::size_t>(row)].Kind;
    if (kind == TRowKind::CommentOpens) {
        int last = row; // the closing row begins inside the comment too
        while (last + 1 < FCount &&
               FRows[static_cast<std::size_t>(last + 1)].Kind == TRowKind::InComment)
            ++last;
        if (FOptions.FoldComments && set.FNodeOpt_FoldLineComments)
            SetFold(row, last, nullptr, true, false, false);
        return last;
    }
    if (kind != TRowKind::LineComment)
        return -1;
    int last = row;
    while (last + 1 < FCount &&
           FRows[static_cast<std::size_t>(last + 1)].Kind == TRowKind::LineComment &&
           RegionWord(last + 1, set) == 0)
        ++last;
    if (last > row && FOptions.FoldComments && set.FNodeOpt_FoldLineComments)
        SetFold(row, last, nullptr, true, false, false);
    return last;
}

// Occurrences of the words of `list` in code on the row.
int TFoldWalk::CountWords(int row, std::u16string_view list, const TZvCustomMemoStyles& set) {
    const TRowText holder = Text(row);
    const std::u16string_view text = holder.View();
    int n = 0;
    ForEachWord(list, [&](std::u16string_view w) {
        std::u16string plain; // "@" marks the word in the fold's text; it is no character
        if (w.find(u'@') != std::u16string_view::npos) {
            plain = w;
            std::erase(plain, u'@');
            w = plain;
        }
        TWordMarks m = Marks(w);
        m.Last = false;
        for (std::size_t x = FindWord(text, m, set.FNodeOpt_Case, set.FNodeOpt_AllowedWordSymbols);
             x != std::u16string_view::npos;
             x = m.LineStart ? std::u16string_view::npos
                             : FindWord(text, m, set.FNodeOpt_Case, set.FNodeOpt_AllowedWordSymbols,
                                        x + m.Word.size()))
            if (OutsideCommentsAndStrings(row, x))
                ++n;
        return true;
    });
    return n;
}

// A fold by paired words: each begin word counts up, each end word down, from the head on;
// the fold ends where the count comes back to 0. False when it never does.
bool TFoldWalk::PairedFold(int row, const TNodes& def, const TZvCustomMemoStyles& set) {
    if (def.wStart.empty() || def.wEnd.empty())
        return false;
    int depth = 0;
    for (int r = row; r < FCount; ++r) {
        if ((r & 1023) == 0 && Halted())
            return false;
        const TRowKind kind = FRows[static_cast<std::size_t>(r)].Kind;
        if (kind == TRowKind::Blank || kind == TRowKind::InComment ||
            (kind == TRowKind::LineComment && r != row))
            continue;
        depth += CountWords(r, def.wStart, set);
        depth -= CountWords(r, def.wEnd, set);
        if (depth <= 0) {
            if (r > row || depth == 0)
                SetFold(row, r, &def, false, false, false);
            return true;
        }
    }
    return false;
}

int TFoldWalk::NextCodeRow(int row) const {
    for (int r = row + 1; r < FCount; ++r)
        if (FRows[static_cast<std::size_t>(r)].Kind == TRowKind::Code)
            return r;
    return -1;
}

// Without indention: a section runs to the row before the next head of the same
// definition whose mark repeats no more often ("##" ends at "#" or "##", not at "###").
int TFoldWalk::SectionEnd(int row, const TNodes& def, const TZvCustomMemoStyles& set) {
    const TRowText head = Text(row);
    const std::u16string_view headText = head.View().substr(FirstNonBlank(head.View()));
    const auto run = [](std::u16string_view t) {
        std::size_t n = 0;
        while (n < t.size() && t[n] == t[0])
            ++n;
        return n;
    };
    const std::size_t headRun = run(headText);
    for (int r = row + 1; r < FCount; ++r) {
        if (FRows[static_cast<std::size_t>(r)].Kind != TRowKind::Code)
            continue;
        const TRowText holder = Text(r);
        const std::u16string_view t = holder.View().substr(FirstNonBlank(holder.View()));
        bool same = false;
        ForEachWord(def.wId, [&](std::u16string_view w) {
            const TWordMarks m = Marks(w);
            same = t.size() >= m.Word.size() &&
                   SameText(t.substr(0, m.Word.size()), m.Word, set.FNodeOpt_Case);
            return !same;
        });
        if (same && run(t) <= headRun)
            return r - 1;
    }
    return FCount - 1;
}

std::int8_t TFoldWalk::LevelAt(int row) const {
    const std::int8_t stored = FLevel[static_cast<std::size_t>(row)];
    if (stored < 0)
        return 1;
    return stored < 126 ? static_cast<std::int8_t>(stored + 1) : stored;
}

// A fold of a block below `row`: by indention, named by the row's definition.
void TFoldWalk::IndentFold(int row, const TNodes* def, const TZvCustomMemoStyles& set) {
    const bool named = def && def->list_Item != ceNone;
    const int next = NextCodeRow(row);
    if (next < 0)
        return;
    const auto& rows = FRows;
    const auto indent = [&](int r) { return rows[static_cast<std::size_t>(r)].Indent; };
    if (!set.FNodeOpt_FoldOnIndention) {
        if (def) {
            const int last = SectionEnd(row, *def, set);
            int end = last;
            while (end > row && FRows[static_cast<std::size_t>(end)].Kind == TRowKind::Blank)
                --end;
            if (end > row)
                SetFold(row, end, def, false, false, end < FCount - 1);
        }
        return;
    }
    if (!(indent(next) > indent(row) || named))
        return;
    // A lone opening word ("{" on its own row) folds with the row above it.
    int head = row;
    if (!def || !named) {
        const TRowText holder = Text(row);
        const std::u16string_view t = holder.View();
        const std::size_t f = FirstNonBlank(t);
        std::size_t e = t.size();
        while (e > f && IsBlank(t[e - 1]))
            --e;
        if (!set.FNodeOpt_DefaultBegin.empty() && t.substr(f, e - f) == set.FNodeOpt_DefaultBegin) {
            int up = row - 1;
            while (up >= 0 && (FRows[static_cast<std::size_t>(up)].Kind != TRowKind::Code ||
                               indent(up) > indent(row)))
                --up;
            if (up >= 0 && indent(up) == indent(row) &&
                FHeadEnd[static_cast<std::size_t>(up)] == 0) {
                head = up;
                def = DefinitionOf(up, set);
                if (def && (def->level == nltSkip || def->level == nltNestedOnly))
                    def = nullptr;
            }
        }
    }
    // The end: the first code row not indented deeper than the head.
    int end = -1;
    for (int r = next; r < FCount; ++r) {
        if (FRows[static_cast<std::size_t>(r)].Kind != TRowKind::Code)
            continue;
        if (indent(r) <= indent(head)) {
            end = r;
            break;
        }
    }
    bool endBefore = true;
    int last;
    if (end < 0) { // the block runs to the end of the document
        last = FCount - 1;
        while (last > row && FRows[static_cast<std::size_t>(last)].Kind != TRowKind::Code)
            --last;
        endBefore = false;
    } else {
        const std::u16string_view endWords =
            def && !def->wEnd.empty() ? std::u16string_view(def->wEnd) : set.FNodeOpt_DefaultEnd;
        const TRowText holder = Text(end);
        const std::u16string_view t = holder.View().substr(FirstNonBlank(holder.View()));
        const int after = NextCodeRow(end);
        // A closing row that opens the next block ("} else {") stays out of this fold.
        const bool opens = after >= 0 && indent(after) > indent(end);
        if (!endWords.empty() && StartsWithAny(t, endWords) && !opens) {
            last = end;
            endBefore = false;
        } else {
            last = end - 1;
            while (last > row && FRows[static_cast<std::size_t>(last)].Kind == TRowKind::Blank)
                --last;
        }
    }
    if (last > row)
        SetFold(head, last, def, false, false, endBefore);
}

void TFoldWalk::SetFold(int first, int last, const TNodes* def, bool comment, bool region,
                        bool endBefore, int regionLevel) {
    const TCEListItemType item = def ? def->list_Item : ceNone;
    if (FOptions.OnlyNamedFolds && item == ceNone)
        return;
    if (FOptions.IgnoreSmallFoldsNr > 0 && last - first + 1 < FOptions.IgnoreSmallFoldsNr)
        return;
    if (FHeadEnd[static_cast<std::size_t>(first)] & 1)
        return; // a row heads one fold
    TFoldRange r;
    r.First = first;
    r.Last = last;
    r.Level = region ? static_cast<std::int8_t>(std::min(regionLevel, 126)) : LevelAt(first);
    r.Item = region ? ceRegion : item;
    r.Comment = comment;
    r.Region = region;
    r.EndBefore = endBefore;
    FOut.Folds.push_back(r);
    FHeadEnd[static_cast<std::size_t>(first)] |= 1;
    FHeadEnd[static_cast<std::size_t>(last)] |= 2;
    if (!region) // regions count their own depth
        std::fill(FLevel.begin() + first, FLevel.begin() + last + 1, r.Level);
}

bool TFoldWalk::Run() {
    FOut.Folds.clear();
    FCount = FStore.Count();
    FOut.RowCount = FCount;
    if (FCount < 2 || !FScanner.Context().HasSyntax())
        return true;
    if (!ClassifyRows())
        return false;
    FLevel.assign(static_cast<std::size_t>(FCount), -1);
    FHeadEnd.assign(static_cast<std::size_t>(FCount), 0);
    for (int row = 0; row < FCount - 1; ++row) {
        if ((row & 1023) == 0 && Halted())
            return false;
        const TRowKind kind = FRows[static_cast<std::size_t>(row)].Kind;
        if (kind == TRowKind::Blank || kind == TRowKind::InComment)
            continue;
        const TZvCustomMemoStyles* set = SetAt(row);
        if (!set)
            continue;
        if (RegionRow(row, *set))
            continue;
        if (const int last = CommentFold(row, *set); last >= 0) {
            row = last;
            continue;
        }
        const TNodes* def = DefinitionOf(row, *set);
        if (def && def->level == nltSkip)
            continue;
        if (def && def->level >= nltRegion && PairedFold(row, *def, *set))
            continue;
        if (def && def->level == nltNestedOnly)
            def = nullptr;
        IndentFold(row, def, *set);
    }
    std::sort(FOut.Folds.begin(), FOut.Folds.end(), [](const TFoldRange& a, const TFoldRange& b) {
        return a.First != b.First ? a.First < b.First : a.Last > b.Last;
    });
    return !Halted();
}

} // namespace

bool RunFoldPass(TLineScanner& scanner, const TFoldPassOptions& options, TFoldTemp& out,
                 bool fromThread, const std::atomic<bool>* halt) {
    TFoldWalk walk(scanner, options, out, fromThread, halt);
    return walk.Run();
}

} // namespace zv
