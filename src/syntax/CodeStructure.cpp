// The structure build: one scan of each row (the same one-row scanner the colours come from,
// so braces and words in comments and strings never count), then either brace blocks (a
// syntax whose DefaultBegin is "{") or indent blocks (the others).
#include "syntax/CodeStructure.h"

#include "ZvMemoControl/ZvMemoStyles.h"
#include "syntax/RowScanner.h"

#include <algorithm>
#include <unordered_map>

namespace zv {

namespace {

constexpr std::size_t kMaxStatement = 4000; // longer statement heads are cut
constexpr char16_t kRowBreak = u'\n';

bool IsWordChar(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           c == u'_' || c == u'$' || c >= 0x80;
}
bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == 0xA0;
}
bool IsAsciiLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
char16_t Lower(char16_t c) {
    return (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
}

bool SameText(std::u16string_view a, std::u16string_view b, bool caseSensitive) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (caseSensitive ? a[i] != b[i] : Lower(a[i]) != Lower(b[i]))
            return false;
    return true;
}

bool InList(const TStringList& list, std::u16string_view word) {
    return std::any_of(list.begin(), list.end(),
                       [&](const std::u16string& w) { return w == word; });
}

std::u16string Trimmed(std::u16string_view s) {
    std::size_t a = 0, b = s.size();
    while (a < b && (IsBlank(s[a]) || s[a] == kRowBreak))
        ++a;
    while (b > a && (IsBlank(s[b - 1]) || s[b - 1] == kRowBreak))
        --b;
    return std::u16string(s.substr(a, b - a));
}

// Marks which units of a row are code (not comment, string or character literal); a
// preprocessor-like block counts for words only.
class TCodeMask final : public IRunSink {
public:
    enum : char { kNone = 0, kWord = 1, kCode = 2 };
    std::vector<char> Mask;
    const TZvCustomMemoStyles* Only = nullptr; // when set, runs of other sets are no code
    void Reset(std::size_t length) { Mask.assign(length, kNone); }
    void Run(int start, int length, const TRunInfo& info) override {
        TTokenKind kind = info.Kind == TTokenKind::Url ? info.Outer : info.Kind;
        char value = kCode;
        if (Only && info.Set != Only)
            kind = TTokenKind::Comment;
        switch (kind) {
        case TTokenKind::Comment:
        case TTokenKind::DocComment:
        case TTokenKind::LineComment:
        case TTokenKind::String:
        case TTokenKind::Char:
            value = kNone;
            break;
        case TTokenKind::Block:
            value = kWord;
            break;
        default:
            break;
        }
        for (int i = start; i < start + length && i < static_cast<int>(Mask.size()); ++i)
            Mask[static_cast<std::size_t>(i)] = value;
    }
};

// A fold word with its mark split off ("^": only blanks before it on its row; "~": only
// blanks, letters and the allowed symbols).
struct TFoldWord {
    std::u16string Word;
    char16_t Mark = 0;
};

struct TDefinition {
    std::vector<TFoldWord> Words;
    TCEListItemType Kind = ceNone;
};

std::vector<TDefinition> NamedDefinitions(const TZvCustomMemoStyles& s) {
    std::vector<TDefinition> out;
    for (const TNodes& n : s.FNodes) {
        if (n.list_Item == ceNone || n.list_Item == ceSkip || n.level >= nltRegion ||
            n.level == nltNestedOnly)
            continue;
        TDefinition d;
        d.Kind = n.list_Item;
        std::u16string_view all = n.wId.empty() ? std::u16string_view(n.wStart) : n.wId;
        std::size_t p = 0;
        while (p <= all.size()) {
            std::size_t e = all.find_first_of(u"\n|", p);
            if (e == std::u16string_view::npos)
                e = all.size();
            TFoldWord w;
            for (char16_t c : all.substr(p, e - p)) {
                if ((c == u'^' || c == u'~') && w.Word.empty() && !w.Mark)
                    w.Mark = c;
                else if (c != u'@' && c != 0xA8 && c != u'\r')
                    w.Word += c;
            }
            if (!w.Word.empty())
                d.Words.push_back(std::move(w));
            p = e + 1;
        }
        if (!d.Words.empty())
            out.push_back(std::move(d));
    }
    return out;
}

bool IsTypeKind(TCEListItemType k) {
    return k == ceClass || k == ceStruct || k == ceEnum;
}

bool IsTagKind(TCEListItemType k) {
    return k == ceTag || k == ceTagStyle || k == ceTagScript || k == ceTagHead || k == ceTagBody;
}

// The tag's name in its head row's trimmed text: what follows "<" up to a blank, ">" or "/".
std::u16string TagName(std::u16string_view text) {
    const std::size_t open = text.find(u'<');
    if (open == std::u16string_view::npos)
        return std::u16string(text);
    std::size_t end = open + 1;
    while (end < text.size() && !IsBlank(text[end]) && text[end] != u'>' && text[end] != u'/')
        ++end;
    return std::u16string(text.substr(open + 1, end - open - 1));
}

} // namespace

bool IsCallableKind(TCEListItemType k) {
    return k == ceFunction || k == ceMethod || k == ceConstructor || k == ceDestructor ||
           k == ceLocalMethod;
}

int TCodeStructure::ItemAt(int row) const {
    auto it = std::upper_bound(Items.begin(), Items.end(), row,
                               [](int r, const TStructureItem& item) { return r < item.Row; });
    if (it == Items.begin())
        return -1;
    int i = static_cast<int>(it - Items.begin()) - 1;
    while (i >= 0 && Items[static_cast<std::size_t>(i)].EndRow < row)
        i = Items[static_cast<std::size_t>(i)].Parent;
    return i;
}

int TCodeStructure::FindId(std::int32_t idNr, int row) const {
    auto it = std::lower_bound(Items.begin(), Items.end(), row,
                               [](const TStructureItem& item, int r) { return item.Row < r; });
    for (; it != Items.end() && it->Row == row; ++it)
        if (it->IdNr == idNr)
            return static_cast<int>(it - Items.begin());
    return FindId(idNr);
}

bool TCodeStructure::SameItemsAs(const TCodeStructure& other) const {
    return std::equal(Items.begin(), Items.end(), other.Items.begin(), other.Items.end(),
                      [](const TStructureItem& a, const TStructureItem& b) {
                          return a.Row == b.Row && a.EndRow == b.EndRow && a.IdNr == b.IdNr &&
                                 a.Parent == b.Parent && a.Kind == b.Kind && a.Text == b.Text;
                      });
}

int TCodeStructure::FindId(std::int32_t idNr) const {
    for (std::size_t i = 0; i < Items.size(); ++i)
        if (Items[i].IdNr == idNr)
            return static_cast<int>(i);
    return -1;
}

// ---- The build -----------------------------------------------------------------------------

namespace {

struct TStructureBuildState {
    const TZvMemoStrings& Rows;
    bool FromThread = false;
    const TFoldTemp* Folds = nullptr; // a pass over the same rows, or null
    const TScanContext& Ctx;
    const TZvCustomMemoStyles* Styles;
    std::vector<TDefinition> Defs;
    bool BraceMode = false;
    bool CaseSensitive = false;
    std::u16string AllowedSymbols, Separator, MethodMark;
    const TStringList* Excludes = nullptr;

    int Count = 0;
    int Row = 0;
    TStyle ScanState;
    TScanScratch Scratch;
    TCodeMask Code;
    std::shared_ptr<TCodeStructure> Out = std::make_shared<TCodeStructure>();

    // Brace mode: the code text since the last ";", "{" or "}" with the row of each unit.
    std::u16string Statement;
    std::vector<int> StatementRows;
    struct TOpen {
        int Item; // -1: a block no definition names
        int Indent;
    };
    std::vector<TOpen> Open;
    // Indent mode: bracket depth carried over rows, and the last row holding code.
    int Depth = 0;
    int DepthIndent = 0; // indent of the row where Depth rose from 0
    int LastCodeRow = -1;

    TStructureBuildState(const TZvMemoStrings& rows, const TScanContext& ctx, bool fromThread,
                         const TFoldTemp* folds)
        : Rows(rows), FromThread(fromThread), Folds(folds), Ctx(ctx),
          Styles(ctx.Host().FStyles.get()), Count(rows.Count()) {
        ClearStyle(ScanState, true);
        Out->RowCount = Count;
        if (!Styles)
            return;
        // A page with server code: its structure is that of the server language.
        if (const TZvCustomMemoStyles* php = ctx.Embedded(scPHP); php && php != Styles) {
            Styles = php;
            Code.Only = php;
        }
        Defs = NamedDefinitions(*Styles);
        BraceMode = Styles->FNodeOpt_DefaultBegin == u"{";
        CaseSensitive = Styles->FNodeOpt_Case;
        AllowedSymbols = Styles->FNodeOpt_AllowedWordSymbols;
        Separator = Styles->FList_Class_Separator;
        MethodMark = Styles->FList_Method;
        Excludes = &Styles->FFoldListExclude;
    }

    // The row's text; from the thread it is taken under the store's lock (a shared handle,
    // no copy of the characters).
    TRowText Text(int row) const {
        if (!FromThread)
            return Rows.GetRowText(row);
        std::lock_guard lock(Rows.Lock());
        return Rows.GetRowText(row);
    }

    bool Excluded(std::u16string_view word) const { return Excludes && InList(*Excludes, word); }

    int InnermostItem() const {
        for (auto it = Open.rbegin(); it != Open.rend(); ++it)
            if (it->Item >= 0)
                return it->Item;
        return -1;
    }

    int AddItem(int row, TCEListItemType kind, std::u16string name) {
        TStructureItem item;
        item.Row = row;
        item.EndRow = Count > 0 ? Count - 1 : 0;
        item.Kind = kind;
        item.Parent = InnermostItem();
        item.Level = item.Parent < 0
                         ? 0
                         : std::int8_t(Out->Items[static_cast<std::size_t>(item.Parent)].Level + 1);
        item.Name = std::move(name);
        item.Text = Trimmed(Text(row).View());
        Out->Items.push_back(std::move(item));
        return static_cast<int>(Out->Items.size()) - 1;
    }

    // Where fold word `w` stands in `text` (code units only, per `isCode`), honouring its
    // mark within the text's row (rows are split by kRowBreak); -1 when nowhere.
    template <class IsCode>
    int FindWord(std::u16string_view text, const TFoldWord& w, IsCode isCode) const {
        const std::size_t n = w.Word.size();
        for (std::size_t p = 0; p + n <= text.size(); ++p) {
            if (!isCode(p) || !SameText(text.substr(p, n), w.Word, CaseSensitive))
                continue;
            if (IsWordChar(w.Word.front()) && p > 0 && IsWordChar(text[p - 1]))
                continue;
            if (IsWordChar(w.Word.back()) && p + n < text.size() && IsWordChar(text[p + n]))
                continue;
            bool ok = true;
            for (std::size_t q = p; ok && q > 0 && text[q - 1] != kRowBreak; --q) {
                char16_t c = text[q - 1];
                if (w.Mark == u'^')
                    ok = IsBlank(c);
                else if (w.Mark == u'~')
                    ok = IsBlank(c) || IsAsciiLetter(c) ||
                         AllowedSymbols.find(c) != std::u16string::npos;
            }
            if (ok)
                return static_cast<int>(p);
        }
        return -1;
    }

    // The identifier after position `p` of `s`, passing blanks, "*", "&" and one bracketed
    // group (a receiver); its start goes to `at`.
    static std::u16string NameAfter(std::u16string_view s, std::size_t p, std::size_t& at) {
        auto skipBlanks = [&] {
            while (p < s.size() &&
                   (IsBlank(s[p]) || s[p] == kRowBreak || s[p] == u'*' || s[p] == u'&'))
                ++p;
        };
        skipBlanks();
        if (p < s.size() && s[p] == u'(') {
            int depth = 0;
            for (; p < s.size(); ++p) {
                depth += s[p] == u'(' ? 1 : s[p] == u')' ? -1 : 0;
                if (depth == 0) {
                    ++p;
                    break;
                }
            }
            skipBlanks();
        }
        at = p;
        std::size_t e = p;
        while (e < s.size() && IsWordChar(s[e]))
            ++e;
        return std::u16string(s.substr(p, e - p));
    }

    // Where an operator name ending at `e` begins ("operator==", "operator()", "operator
    // bool"), or `e` when none ends there.
    static std::size_t OperatorStart(std::u16string_view s, std::size_t e) {
        std::size_t b = e;
        while (b > 0 && std::u16string_view(u"=!<>+-*/%&|^~[](),").find(s[b - 1]) !=
                            std::u16string_view::npos)
            --b;
        std::size_t w = b;
        while (w > 0 && IsBlank(s[w - 1]))
            --w;
        if (b == e) { // a conversion or allocation operator: "operator bool"
            std::size_t n = b;
            while (n > 0 && IsWordChar(s[n - 1]))
                --n;
            w = n;
            while (w > 0 && IsBlank(s[w - 1]))
                --w;
            if (n < b && w >= 8 && s.substr(w - 8, 8) == u"operator" &&
                (w == 8 || !IsWordChar(s[w - 9])))
                return w - 8;
            return e;
        }
        if (w >= 8 && s.substr(w - 8, 8) == u"operator" && (w == 8 || !IsWordChar(s[w - 9])))
            return w - 8;
        return e;
    }

    // A lone "=" (not ==, !=, <=, >=, =>) at bracket depth 0 of s[from, to).
    // With `angles`, "<...>" counts as brackets too (template parameters before a name).
    static bool HasAssignment(std::u16string_view s, std::size_t from, std::size_t to,
                              bool angles = false) {
        int depth = 0;
        for (std::size_t i = from; i < to && i < s.size(); ++i) {
            char16_t c = s[i];
            depth += (c == u'(' || c == u'[' || (angles && c == u'<'))   ? 1
                     : (c == u')' || c == u']' || (angles && c == u'>')) ? -1
                                                                         : 0;
            if (c != u'=' || depth != 0)
                continue;
            char16_t before = i > 0 ? s[i - 1] : 0, after = i + 1 < s.size() ? s[i + 1] : 0;
            if (after == u'=' || after == u'>' || before == u'=' || before == u'!' ||
                before == u'<' || before == u'>')
                continue;
            return true;
        }
        return false;
    }

    // The ")" closing the "(" at `open`, or npos.
    static std::size_t MatchingParen(std::u16string_view s, std::size_t open) {
        int depth = 0;
        for (std::size_t i = open; i < s.size(); ++i) {
            depth += s[i] == u'(' ? 1 : s[i] == u')' ? -1 : 0;
            if (depth == 0)
                return i;
        }
        return std::u16string_view::npos;
    }
    static std::size_t FirstWordStart(std::u16string_view s) {
        std::size_t f = 0;
        while (f < s.size() && (IsBlank(s[f]) || s[f] == kRowBreak))
            ++f;
        return f;
    }

    // The first "(" at depth 0 of s[from, ...), or npos.
    static std::size_t FirstParen(std::u16string_view s, std::size_t from) {
        for (std::size_t i = from; i < s.size(); ++i)
            if (s[i] == u'(')
                return i;
        return std::u16string_view::npos;
    }

    // A named definition standing in the statement: its item, else -1 (and `function` is set
    // when a type word turned out to head a function returning that type).
    int MatchDefinition(std::u16string_view s, bool& function) {
        function = false;
        for (const TDefinition& d : Defs) {
            for (const TFoldWord& w : d.Words) {
                int p = FindWord(s, w, [](std::size_t) { return true; });
                if (p < 0)
                    continue;
                std::size_t at = 0;
                std::u16string name = NameAfter(s, static_cast<std::size_t>(p) + w.Word.size(), at);
                if (name.empty() || Excluded(name))
                    return -1;
                std::size_t after = at + name.size();
                while (after < s.size() && (IsBlank(s[after]) || s[after] == kRowBreak))
                    ++after;
                if (IsTypeKind(d.Kind)) {
                    bool own = after < s.size() && s[after] == u'(';
                    if (!own && FirstParen(s, after) != std::u16string_view::npos) {
                        function = true;
                        return -1;
                    }
                    if (HasAssignment(s, after, s.size()))
                        return -1;
                }
                TCEListItemType kind = d.Kind;
                int enclosing = InnermostItem();
                if (kind == ceFunction && enclosing >= 0 &&
                    IsTypeKind(Out->Items[static_cast<std::size_t>(enclosing)].Kind))
                    kind = ceMethod;
                return AddItem(StatementRows[at], kind, std::move(name));
            }
        }
        return -1;
    }

    // Whether the name starting at `q` is declared or a member where it is assigned ("var f",
    // "a.f"): a bare "f = function" gives a variable declared elsewhere a new value, and the
    // function is listed where the name is defined, not at each replacement.
    static bool Declared(std::u16string_view s, std::size_t q) {
        while (q > 0 && (IsBlank(s[q - 1]) || s[q - 1] == kRowBreak))
            --q;
        return q > 0 && (s[q - 1] == u'.' || IsWordChar(s[q - 1]));
    }

    // An anonymous function given a name: "a.b = function (", "var f = function (" or
    // "key: function (".
    int MatchAssignedFunction(std::u16string_view s) {
        for (const TDefinition& d : Defs) {
            if (d.Kind != ceFunction)
                continue;
            for (const TFoldWord& w : d.Words) {
                int p = FindWord(s, TFoldWord{w.Word, 0}, [](std::size_t) { return true; });
                if (p < 0)
                    continue;
                std::size_t at = 0;
                if (!NameAfter(s, static_cast<std::size_t>(p) + w.Word.size(), at).empty())
                    continue;
                std::size_t q = static_cast<std::size_t>(p);
                auto back = [&] {
                    while (q > 0 && (IsBlank(s[q - 1]) || s[q - 1] == kRowBreak))
                        --q;
                };
                back();
                if (q >= 5 && s.substr(q - 5, 5) == u"async") {
                    q -= 5;
                    back();
                }
                if (q == 0 || (s[q - 1] != u'=' && s[q - 1] != u':') ||
                    (q >= 2 &&
                     std::u16string_view(u"=!<>:").find(s[q - 2]) != std::u16string_view::npos))
                    continue;
                const std::size_t assign = --q;
                back();
                std::size_t e = q;
                while (q > 0 && IsWordChar(s[q - 1]))
                    --q;
                if (q == e || Excluded(s.substr(q, e - q)) ||
                    (s[assign] == u'=' && !Declared(s, q)))
                    continue;
                return AddItem(StatementRows[q], d.Kind, std::u16string(s.substr(q, e - q)));
            }
        }
        return -1;
    }

    // A block no definition names, headed like "name(...)", is a function or method when it
    // stands outside every function.
    int MatchFunction(std::u16string_view s) {
        if (MethodMark.empty() || s.find(MethodMark) == std::u16string_view::npos)
            return -1;
        for (const TOpen& o : Open)
            if (o.Item >= 0 && IsCallableKind(Out->Items[static_cast<std::size_t>(o.Item)].Kind))
                return -1;
        std::size_t paren = FirstParen(s, 0);
        // Attribute-like groups in front ("__attribute__((...))") are passed over.
        while (paren != std::u16string_view::npos) {
            std::size_t w = paren;
            while (w > 0 && IsBlank(s[w - 1]))
                --w;
            std::size_t wb = w;
            while (wb > 0 && IsWordChar(s[wb - 1]))
                --wb;
            if (wb == w || !Excluded(s.substr(wb, w - wb)) || wb == FirstWordStart(s))
                break;
            std::size_t close = MatchingParen(s, paren);
            if (close == std::u16string_view::npos)
                return -1;
            paren = FirstParen(s, close + 1);
        }
        if (paren == std::u16string_view::npos)
            return -1;
        // "operator()(...)": the first group is part of the name.
        std::size_t nameEnd = paren;
        while (nameEnd > 0 && IsBlank(s[nameEnd - 1]))
            --nameEnd;
        if (nameEnd >= 8 && s.substr(nameEnd - 8, 8) == u"operator" &&
            s.substr(paren).starts_with(u"()")) {
            nameEnd = paren + 2;
            paren = FirstParen(s, paren + 2);
            if (paren == std::u16string_view::npos)
                return -1;
        }
        // The parameter list closes before the block, and nothing after it assigns.
        std::size_t close = MatchingParen(s, paren);
        if (close == std::u16string_view::npos || HasAssignment(s, close + 1, s.size()))
            return -1;
        // A call chain or an arrow after the list: a call taking a callback, no definition.
        std::u16string_view rest = s.substr(close + 1);
        std::size_t r = FirstWordStart(rest);
        if (rest.find(u"=>") != std::u16string_view::npos || (r < rest.size() && rest[r] == u'.'))
            return -1;
        // The name: the (qualified) identifier just before "(", or an operator.
        std::size_t e = std::min(nameEnd, paren);
        while (e > 0 && (IsBlank(s[e - 1]) || s[e - 1] == kRowBreak))
            --e;
        std::size_t b = OperatorStart(s, e);
        while (b > 0) {
            if (IsWordChar(s[b - 1]) || s[b - 1] == u'~')
                --b;
            else if (!Separator.empty() && b >= Separator.size() &&
                     s.substr(b - Separator.size(), Separator.size()) == Separator &&
                     b > Separator.size() && IsWordChar(s[b - Separator.size() - 1]))
                b -= Separator.size();
            else
                break;
        }
        if (HasAssignment(s, 0, b, true))
            return -1;
        std::u16string name;
        for (char16_t c : s.substr(b, e - b))
            if (!IsBlank(c) && c != kRowBreak)
                name += c;
        if (name.empty() || (!IsWordChar(name[0]) && name[0] != u'~') ||
            (name[0] >= u'0' && name[0] <= u'9'))
            return -1;
        std::u16string_view last = name;
        if (!Separator.empty() && last.rfind(Separator) != std::u16string_view::npos)
            last = last.substr(last.rfind(Separator) + Separator.size());
        if (Excluded(last))
            return -1;
        // The word in front of the name, and the statement's first word, are no control word.
        std::size_t q = b;
        while (q > 0 && (IsBlank(s[q - 1]) || s[q - 1] == kRowBreak))
            --q;
        if (q > 0 && !(IsWordChar(s[q - 1]) || s[q - 1] == u'*' || s[q - 1] == u'&' ||
                       s[q - 1] == u'>' || s[q - 1] == u']' || s[q - 1] == u')'))
            return -1;
        std::size_t qb = q;
        while (qb > 0 && IsWordChar(s[qb - 1]))
            --qb;
        if (qb < q && Excluded(s.substr(qb, q - qb)))
            return -1;
        std::size_t f = 0;
        while (f < s.size() && (IsBlank(s[f]) || s[f] == kRowBreak))
            ++f;
        std::size_t fe = f;
        while (fe < s.size() && IsWordChar(s[fe]))
            ++fe;
        if (fe > f && Excluded(s.substr(f, fe - f)))
            return -1;
        for (const TDefinition& d : Defs)
            for (const TFoldWord& w : d.Words)
                if (w.Word == last)
                    return -1;
        int enclosing = InnermostItem();
        const TStructureItem* cls =
            enclosing >= 0 && IsTypeKind(Out->Items[static_cast<std::size_t>(enclosing)].Kind)
                ? &Out->Items[static_cast<std::size_t>(enclosing)]
                : nullptr;
        std::u16string_view owner;
        if (cls)
            owner = cls->Name;
        else if (last.size() < name.size())
            owner =
                std::u16string_view(name).substr(0, name.size() - last.size() - Separator.size());
        if (!Separator.empty() && owner.rfind(Separator) != std::u16string_view::npos)
            owner = owner.substr(owner.rfind(Separator) + Separator.size());
        TCEListItemType kind = ceFunction;
        if (!owner.empty())
            kind = last[0] == u'~' ? ceDestructor : last == owner ? ceConstructor : ceMethod;
        std::u16string ownerName(cls ? std::u16string_view() : owner);
        int item = AddItem(StatementRows[b], kind, std::move(name));
        Out->Items[static_cast<std::size_t>(item)].Owner = std::move(ownerName);
        return item;
    }

    void Append(char16_t c, int row) {
        if (Statement.size() >= kMaxStatement)
            return;
        if (IsBlank(c) && (Statement.empty() || IsBlank(Statement.back())))
            return;
        Statement.push_back(c);
        StatementRows.push_back(row);
    }
    void ClearStatement() {
        Statement.clear();
        StatementRows.clear();
    }

    void OpenBlock() {
        int item = -1;
        if (!Statement.empty()) {
            bool function = false;
            item = MatchDefinition(Statement, function);
            if (item < 0 && !function)
                item = MatchAssignedFunction(Statement);
            if (item < 0)
                item = MatchFunction(Statement);
        }
        Open.push_back({item, 0});
    }

    void CloseBlock(int row) {
        if (Open.empty())
            return;
        if (Open.back().Item >= 0)
            Out->Items[static_cast<std::size_t>(Open.back().Item)].EndRow = row;
        Open.pop_back();
    }

    bool IsAccessLabel(std::size_t colon, std::u16string_view text) const {
        if ((colon + 1 < text.size() && text[colon + 1] == u':') ||
            (colon > 0 && text[colon - 1] == u':'))
            return false;
        std::u16string label = Trimmed(Statement);
        return label == u"public" || label == u"private" || label == u"protected";
    }

    void BraceRow(int row, std::u16string_view text) {
        std::size_t first = 0;
        while (first < text.size() && IsBlank(text[first]))
            ++first;
        if (first < text.size() && text[first] == u'#' && Code.Mask[first] != TCodeMask::kNone)
            return; // a preprocessor line stands alone
        for (std::size_t i = 0; i < text.size(); ++i) {
            char16_t c = text[i];
            if (Code.Mask[i] != TCodeMask::kCode) {
                Append(u' ', row);
                continue;
            }
            if (c == u'{') {
                OpenBlock();
                ClearStatement();
            } else if (c == u'}') {
                CloseBlock(row);
                ClearStatement();
            } else if (c == u';') {
                ClearStatement();
            } else if (c == u':' && IsAccessLabel(i, text)) {
                ClearStatement(); // "public:" and its kin end what stood before
            } else {
                Append(c, row);
            }
        }
        if (!Statement.empty())
            Append(kRowBreak, row);
    }

    void IndentRow(int row, std::u16string_view text, bool startsInside) {
        int indent = 0;
        std::size_t first = 0;
        for (; first < text.size(); ++first) {
            if (text[first] == u'\t')
                indent = (indent / 8 + 1) * 8;
            else if (IsBlank(text[first]))
                ++indent;
            else
                break;
        }
        // A bracket left open by text the scanner misread must not swallow the rest of the
        // file: a row that is not indented past the row that opened it, and does not begin
        // with a closer, starts afresh.
        if (Depth > 0 && indent <= DepthIndent && first < text.size() &&
            Code.Mask[first] == TCodeMask::kCode && text[first] != u')' && text[first] != u']' &&
            text[first] != u'}')
            Depth = 0;
        int depthBefore = Depth;
        bool hasCode = false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (Code.Mask[i] != TCodeMask::kCode)
                continue;
            char16_t c = text[i];
            if (!IsBlank(c))
                hasCode = true;
            if (c == u'(' || c == u'[' || c == u'{') {
                if (Depth++ == 0)
                    DepthIndent = depthBefore > 0 ? DepthIndent : indent;
            } else if ((c == u')' || c == u']' || c == u'}') && Depth > 0) {
                --Depth;
            }
        }
        if (!hasCode)
            return;
        if (startsInside || depthBefore > 0) {
            LastCodeRow = row;
            return;
        }
        while (!Open.empty() && Open.back().Indent >= indent) {
            Out->Items[static_cast<std::size_t>(Open.back().Item)].EndRow =
                std::max(LastCodeRow, 0);
            Open.pop_back();
        }
        LastCodeRow = row;
        std::u16string_view view = text;
        for (const TDefinition& d : Defs) {
            for (const TFoldWord& w : d.Words) {
                int p = FindWord(view, w,
                                 [&](std::size_t q) { return Code.Mask[q] != TCodeMask::kNone; });
                if (p < 0)
                    continue;
                std::size_t at = 0;
                std::u16string name =
                    NameAfter(view, static_cast<std::size_t>(p) + w.Word.size(), at);
                if (name.empty())
                    continue;
                TCEListItemType kind = d.Kind;
                int item = AddItem(row, kind, std::move(name));
                Open.push_back({item, indent});
                return;
            }
        }
    }

    void ScanOne() {
        const TRowText holder = Text(Row);
        const std::u16string_view text = holder.View();
        const TStyleProperties& before = ScanState.Properties;
        bool startsInside = before.BracketId >= 0 || before.Get(spInComment);
        Code.Reset(text.size());
        TScanRequest request;
        request.Text = text;
        request.Sink = &Code;
        ScanRow(Ctx, request, ScanState, Scratch);
        if (BraceMode)
            BraceRow(Row, text);
        else
            IndentRow(Row, text, startsInside);
        ++Row;
    }

    // Tags are the folds the pass found by the syntax's paired tag words: they join the
    // items as they stand. True when there were any.
    bool AddTagFolds() {
        if (!Folds || Folds->RowCount != Count)
            return false;
        bool any = false;
        for (const TFoldRange& f : Folds->Folds) {
            if (f.Region || f.Comment || !IsTagKind(f.Item))
                continue;
            TStructureItem item;
            item.Row = f.First;
            item.EndRow = f.Last;
            item.Kind = f.Item;
            item.Text = Trimmed(Text(f.First).View());
            item.Name = TagName(item.Text);
            Out->Items.push_back(std::move(item));
            any = true;
        }
        return any;
    }

    // Row order, outer before inner on one row, and parents and levels by the ranges.
    void NestByRanges() {
        std::vector<TStructureItem>& items = Out->Items;
        std::stable_sort(items.begin(), items.end(),
                         [](const TStructureItem& a, const TStructureItem& b) {
                             return a.Row != b.Row ? a.Row < b.Row : a.EndRow > b.EndRow;
                         });
        std::vector<int> open;
        for (std::size_t i = 0; i < items.size(); ++i) {
            while (!open.empty() &&
                   items[static_cast<std::size_t>(open.back())].EndRow < items[i].Row)
                open.pop_back();
            items[i].Parent = open.empty() ? -1 : open.back();
            items[i].Level = static_cast<std::int8_t>(std::min<std::size_t>(open.size(), 126));
            open.push_back(static_cast<int>(i));
        }
    }

    void Finish() {
        const bool tags = AddTagFolds();
        if (!BraceMode)
            for (const TOpen& o : Open)
                Out->Items[static_cast<std::size_t>(o.Item)].EndRow = std::max(LastCodeRow, 0);
        // Ids from kind and text, with the occurrence number for repeated heads.
        std::unordered_map<std::uint32_t, int> seen;
        for (TStructureItem& item : Out->Items) {
            std::uint32_t h = 2166136261u ^ item.Kind;
            for (char16_t c : item.Text)
                h = (h ^ c) * 16777619u;
            int n = seen[h]++;
            item.IdNr = static_cast<std::int32_t>(
                ((h + static_cast<std::uint32_t>(n) * 2654435761u) % 0x7FFFFFFDu) + 1);
            item.EndRow = std::max(item.EndRow, item.Row);
        }
        // Heads named on a row above the block's first name keep row order (stable).
        std::vector<int> order(Out->Items.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = static_cast<int>(i);
        if (!std::is_sorted(
                Out->Items.begin(), Out->Items.end(),
                [](const TStructureItem& a, const TStructureItem& b) { return a.Row < b.Row; })) {
            std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
                return Out->Items[static_cast<std::size_t>(a)].Row <
                       Out->Items[static_cast<std::size_t>(b)].Row;
            });
            std::vector<int> where(order.size());
            for (std::size_t i = 0; i < order.size(); ++i)
                where[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
            std::vector<TStructureItem> sorted;
            sorted.reserve(order.size());
            for (int i : order) {
                sorted.push_back(std::move(Out->Items[static_cast<std::size_t>(i)]));
                if (sorted.back().Parent >= 0)
                    sorted.back().Parent = where[static_cast<std::size_t>(sorted.back().Parent)];
            }
            Out->Items = std::move(sorted);
        }
        if (tags)
            NestByRanges();
        for (std::size_t i = 0; i < Out->Items.size(); ++i)
            if (!Out->Items[i].Owner.empty())
                Out->ByOwner[Out->Items[i].Owner].push_back(static_cast<int>(i));
    }
};

} // namespace

std::shared_ptr<const TCodeStructure> BuildCodeStructure(const TZvMemoStrings& rows,
                                                         const TScanContext& ctx, bool fromThread,
                                                         const std::atomic<bool>* halt,
                                                         const TFoldTemp* folds) {
    TStructureBuildState s(rows, ctx, fromThread, folds);
    if (s.Styles) {
        while (s.Row < s.Count) {
            if ((s.Row & 1023) == 0 && halt && halt->load(std::memory_order_relaxed))
                return nullptr;
            s.ScanOne();
        }
        s.Finish();
    }
    return std::move(s.Out);
}

} // namespace zv
