// The one-row scanner. Each round of the walk applies the first rule that fits at the current
// position, in a fixed order: open comment, here-document or string first; then blanks,
// block ends, numbers, text between tags, escapes, comment and line-comment openers, tags,
// here-document, block and string openers, and finally the plain run. Rules decide where the
// walk goes from the text and the state alone; the sink is told what was passed.
#include "syntax/RowScanner.h"

#include "syntax/LiteralRules.h"

#include <algorithm>

namespace zv {
namespace {

constexpr bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}
constexpr bool IsBlankish(char16_t c) {
    return c == u' ' || c == u'\t' || c == 0x00A0 || c == 0x00B7;
}
constexpr bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}
constexpr bool IsHexDigit(char16_t c) {
    return IsDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
constexpr bool IsLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}
// Characters of a plain run: ASCII letters and digits, "_", and everything from U+00C0 up.
constexpr bool IsWordChar(char16_t c) {
    return IsLetter(c) || IsDigit(c) || c >= 192;
}
constexpr char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
}

bool StartsAt(std::u16string_view t, int p, std::u16string_view s, bool caseSensitive) {
    if (s.empty() || t.size() - p < s.size())
        return false;
    if (caseSensitive)
        return t.compare(p, s.size(), s) == 0;
    for (std::size_t i = 0; i < s.size(); ++i)
        if (Lower(t[p + i]) != Lower(s[i]))
            return false;
    return true;
}

// Length of the first "|"-separated alternative of `list` found at `p`, or 0.
int AlternativeAt(std::u16string_view t, int p, std::u16string_view list, bool caseSensitive) {
    while (!list.empty()) {
        const auto bar = list.find(u'|');
        const auto alt = list.substr(0, bar);
        if (StartsAt(t, p, alt, caseSensitive))
            return int(alt.size());
        if (bar == std::u16string_view::npos)
            break;
        list.remove_prefix(bar + 1);
    }
    return 0;
}

// Earliest position >= p of `s` compared without case, or -1.
int FindCaseless(std::u16string_view t, int p, std::u16string_view s) {
    for (int i = p; i + int(s.size()) <= int(t.size()); ++i)
        if (StartsAt(t, i, s, false))
            return i;
    return -1;
}

constexpr std::u16string_view kUrlSchemes[] = {u"http://", u"https://", u"ftp://", u"mailto:",
                                               u"file://"};

int UrlLengthAt(std::u16string_view t, int p) {
    for (auto scheme : kUrlSchemes)
        if (StartsAt(t, p, scheme, false)) {
            int q = p + int(scheme.size());
            while (q < int(t.size()) && std::u16string_view(u"\u00B7'\t\" <>(){}[]").find(t[q]) ==
                                            std::u16string_view::npos)
                ++q;
            return q - p;
        }
    return 0;
}

char16_t Delimiter(const TZvCustomMemoStyles& s, int kind) {
    const char16_t d = kind == 0 ? s.FCharSymbol : kind == 1 ? s.FStringSymbol : s.FString2Symbol;
    return d == u'1' ? u'"' : d;
}

// Block.Id of an open raw string, whose terminator is kept as the here-document word.
constexpr std::int8_t kRawStringBlock = -3;
// Block.Id of an open long-bracket comment (--[[ ... ]]), kept the same way.
constexpr std::int8_t kRawCommentBlock = -4;
// Run index of a word of SymbolWordsA; B and C follow.
constexpr int kSymbolWordIndex = 10;

bool IsScriptType(TScriptType t) {
    return t != scNone && t != scHtml;
}

class TRowWalk {
public:
    TRowWalk(const TScanContext& ctx, const TScanRequest& r, TStyle& state, TScanScratch& x)
        : C(ctx), T(r.Text), S(state), P(state.Properties), X(x), Sink(r.Sink), Halt(r.Halt),
          Facts(r.Limit < 0 ? r.Facts : nullptr), FNext(r.NextRowIsWrapped), FFull(r.Limit < 0) {
        N = FFull ? int(T.size()) : std::min<int>(r.Limit, int(T.size()));
        T = T.substr(0, N); // a partial scan sees nothing behind its limit
        FStop = r.Stop < 0 ? N : std::min(r.Stop, N);
        p = std::clamp(r.Start, 0, N);
        FReached = r.Reached;
    }

    bool Run() {
        if (!FFull && N == 0)
            return true;
        if (Facts)
            *Facts = {}, Facts->Indent = RowIndent(T, C.Options().FTabSize);
        SelectSet();
        if (!Set) {
            Emit(0, N, TTokenKind::Text);
            return true;
        }
        P.Set(spStringEnd, false);
        P.Set(spStringStart, false);
        if (!P.Get(spInComment))
            P.NestedCommentIndex = 0;
        if (S.Block.Id >= int(Set->FBlocks.size()))
            S.Block.Id = -1;
        if (!P.Get(spInComment) && P.Get(spInLineComment)) {
            Emit(p, N, TTokenKind::LineComment); // a wrapped continuation of a line comment
            p = N;
        }
        while (p < FStop) {
            if (Halt && Halt->load(std::memory_order_relaxed))
                return false;
            Round();
        }
        if (FReached)
            *FReached = p;
        if (FFull)
            EndOfRow();
        return true;
    }

private:
    // ---- Plumbing
    void SelectSet() {
        Set = C.SetFor(P);
        Starters = Set ? &C.Starters(Set) : nullptr;
        FCss = Starters && Starters->CssFamily;
        FJsx = Set && Set->FJsxTags && !C.TagMode();
        FNumbers = Set && !Set->FNumericChars.empty();
        FHexStart = Set && !Set->FHexIdentifier.empty() && !IsDigit(Set->FHexIdentifier[0])
                        ? Set->FHexIdentifier[0]
                        : char16_t(0xFFFF);
        FExtraWordChars = Set && !Set->FWordChars.empty();
        FSymbolWords = Set && (Set->FSymbolWordsA.size() > 2 || Set->FSymbolWordsB.size() > 2 ||
                               Set->FSymbolWordsC.size() > 2);
        FWordLiterals = Set && (!Set->FRawStringParen.empty() || !Set->FRawStringHash.empty() ||
                                !Set->FFormatStringPrefix.empty() || !Set->FQuoteWords.empty() ||
                                !Set->FSubstituteWords.empty());
    }
    // In an embedded language's code; an SVG region is markup, read as the HTML around it.
    bool InScript() const { return P.Get(spInScript) && P.ScriptType != scSVG; }
    bool InSvg() const { return P.Get(spInScript) && P.ScriptType == scSVG; }
    // The end tag that closes the embedded language in force.
    std::u16string_view ScriptEndTag() const {
        return P.ScriptType == scCSS  ? u"</style"
               : P.ScriptType == scCF ? u"</cfscript"
                                      : u"</script";
    }
    const TBlock* OpenBlock() const {
        return S.Block.Id >= 0 && S.Block.Id < int(Set->FBlocks.size()) ? &Set->FBlocks[S.Block.Id]
                                                                        : nullptr;
    }
    bool Case() const { return Set->FKeywordCase; }
    int FirstNonBlank() const {
        int f = 0;
        while (f < N && IsBlank(T[f]))
            ++f;
        return f;
    }

    void Emit(int from, int to, TTokenKind kind, int index = -1) {
        if (!Sink || to <= from)
            return;
        TRunInfo info;
        info.Kind = kind;
        info.Index = std::int16_t(index);
        info.Set = Set;
        if (S.Block.Id >= 0) {
            info.Block = S.Block.Id;
            if (kind == TTokenKind::Text)
                info.Kind = TTokenKind::Block, info.Index = S.Block.Id;
        }
        Sink->Run(from, to - from, info);
    }
    // Comment and string text: URLs inside stay one run each.
    void EmitText(int from, int to, TTokenKind kind) {
        if (!Sink)
            return;
        if (C.Urls())
            for (int i = from; i < to; ++i) {
                if (T[i] != u'h' && T[i] != u'f' && T[i] != u'm' && T[i] != u'H' && T[i] != u'F' &&
                    T[i] != u'M')
                    continue;
                const int len = std::min(UrlLengthAt(T, i), to - i);
                if (len <= 0)
                    continue;
                Emit(from, i, kind);
                TRunInfo info;
                info.Kind = TTokenKind::Url;
                info.Outer = kind;
                info.Set = Set;
                Sink->Run(i, len, info);
                from = i + len;
                i = from - 1;
            }
        Emit(from, to, kind);
    }

    // ---- The round
    void Round() {
        const char16_t c = T[p];
        if (P.Get(spInComment))
            return ContinueComment();
        if (S.Block.Id == -2)
            return ContinueHereDoc();
        if (S.Block.Id == kRawStringBlock || S.Block.Id == kRawCommentBlock)
            return ContinueRawString();
        if (P.BracketId >= 0)
            return ContinueString(p);
        if (FJsx && Jsx())
            return;
        if (IsBlank(c) || c == 0x00A0) {
            int q = p;
            while (q < N && IsBlankish(T[q]))
                ++q;
            Emit(p, q, TTokenKind::Text);
            p = q;
            return;
        }
        if (S.Block.Id >= 0 && BlockStop())
            return;
        const TBlock* open = OpenBlock();
        if (open && open->ForceColor &&
            (!open->Stop.empty() || (open->LineBlock && Set->FEndOpenBlockAt.empty())))
            return StringBlockText(*open);
        if (NumberStart(c))
            return Number();
        if (C.TagMode() && !Set->FAllowHighlightBetweenTags && c != u'<' && NothingOpen() &&
            !(c < 128 && BlockStartChar(c)))
            return BetweenTags();
        if (c < 128 && !Starters->Starts[c] && !Starters->AnyRegexBlock && !P.Get(spInTag))
            return Plain();
        if (EscapeOutsideString() || OpenComment() || LineComment())
            return;
        if (C.TagMode() && Tags())
            return;
        if (OpenHereDoc() || OpenBlock(c) || RegexLiteral() || LongBracketString() || OpenString())
            return;
        Plain();
    }

    bool NothingOpen() const {
        return !InScript() && !P.Get(spInTag) && P.BracketId < 0 && S.Block.Id == -1;
    }

    // ---- Comments
    bool CommentsAllowed() const {
        if (P.BracketId >= 0 || P.ScriptStringId >= 0)
            return false;
        return !C.TagMode() || InScript() || !P.Get(spInTag);
    }

    // CommentEsc in front of a comment opener or closer makes it text.
    bool CommentEscaped(int at) const {
        return !Set->FCommentEsc.empty() && at > 0 && T[at - 1] == Set->FCommentEsc[0];
    }

    bool OpenComment() {
        if (!CommentsAllowed() || CommentEscaped(p))
            return false;
        int len = 0;
        std::int8_t style = 0;
        if (StartsAt(T, p, Set->FCommentStartA, true))
            len = int(Set->FCommentStartA.size()), style = 1;
        else if (StartsAt(T, p, Set->FCommentStartB, true))
            len = int(Set->FCommentStartB.size()), style = 2;
        if (!style)
            return false;
        P.Set(spInComment, true);
        P.CommentStyle = style;
        P.Set(spDocComment, style == 1 && IsDocComment());
        if (style == 1 && Set->FAllowNestedComments)
            P.NestedCommentIndex = 1;
        Emit(p, p + len, CommentKind());
        p += len;
        TodoAt(p);
        return true;
    }

    // A to-do word that opens the comment text at `at` makes the row a to-do item.
    void TodoAt(int at) {
        if (Facts && !Facts->TodoItem() && TodoWordAt(T, at, C.Options().FTodoWords))
            Facts->TodoId = TRowFacts::kTodoNew;
    }

    bool IsDocComment() const {
        if (Set->FKeyWords.empty() || !Set->FKeyWords.back().Name.starts_with(u'?'))
            return false;
        for (const std::u16string* doc : {&Set->FCommentDocA, &Set->FCommentDocB}) {
            if (!StartsAt(T, p, *doc, true))
                continue;
            const int q = p + int(doc->size());
            if (q >= N || IsBlank(T[q]))
                return true;
        }
        return false;
    }

    TTokenKind CommentKind() const {
        return P.Get(spDocComment) ? TTokenKind::DocComment : TTokenKind::Comment;
    }

    // Where an embedded language's closing tag ends a comment or line comment, or -1.
    int ScriptCloseFrom(int from) const {
        if (!C.TagMode() || !InScript())
            return -1;
        int best = -1;
        auto take = [&](int at) {
            if (at >= 0 && (best < 0 || at < best))
                best = at;
        };
        if (P.ScriptType == scPHP || P.ScriptType == scASP) {
            const auto q = T.substr(0, N).find(P.ScriptType == scPHP ? u"?>" : u"%>", from);
            take(q == std::u16string_view::npos ? -1 : int(q));
        } else {
            take(FindCaseless(T.substr(0, N), from, ScriptEndTag()));
        }
        return best;
    }

    void ContinueComment() {
        if (p == 0) // a row inside the comment: its first text may be the word
            TodoAt(0);
        const bool styleB = P.CommentStyle == 2;
        const std::u16string& closer = styleB ? Set->FCommentEndB : Set->FCommentEndA;
        int end = -1; // position of the closer that ends the comment
        if (!styleB && Set->FAllowNestedComments)
            end = NestedCommentEnd();
        else if (!closer.empty()) {
            auto q = T.substr(0, N).find(closer, p);
            while (q != std::u16string_view::npos && CommentEscaped(int(q)))
                q = T.substr(0, N).find(closer, q + 1);
            end = q == std::u16string_view::npos ? -1 : int(q);
        }
        const int tag = ScriptCloseFrom(p);
        if (tag >= 0 && (end < 0 || tag < end)) { // the closing tag of the language wins
            EmitText(p, tag, CommentKind());
            CloseComment();
            p = tag;
            return;
        }
        if (end < 0) {
            EmitText(p, N, CommentKind());
            p = N;
            return;
        }
        const int after = end + int(closer.size());
        EmitText(p, after, CommentKind());
        CloseComment();
        p = after;
        if (styleB ? Set->FCommentEndB_Line : Set->FCommentEndA_Line) {
            Emit(p, N, TTokenKind::LineComment);
            P.Set(spInLineComment, true);
            p = N;
        }
    }

    // Nested comments: openers raise the depth, closers lower it; returns the closer that
    // reaches depth 0, or -1 when the row ends first.
    int NestedCommentEnd() {
        const std::u16string& open = Set->FCommentStartA;
        const std::u16string& close = Set->FCommentEndA;
        if (close.empty())
            return -1;
        for (int i = p; i < N;) {
            if (StartsAt(T, i, open, true)) {
                P.NestedCommentIndex = std::int8_t(std::min(P.NestedCommentIndex + 1, 127));
                i += int(open.size());
            } else if (StartsAt(T, i, close, true)) {
                if (--P.NestedCommentIndex <= 0)
                    return i;
                i += int(close.size());
            } else
                ++i;
        }
        return -1;
    }

    void CloseComment() {
        P.Set(spInComment, false);
        P.Set(spDocComment, false);
        P.CommentStyle = 0;
        P.NestedCommentIndex = 0;
    }

    bool LineComment() {
        if (!CommentsAllowed() || (C.TagMode() && !InScript()) || CommentEscaped(p))
            return false;
        int len = AlternativeAt(T, p, Set->FLineCommentA, Case());
        int rule = Set->FOnlyLineCommentIfFirstChar;
        if (!len) {
            len = AlternativeAt(T, p, Set->FLineCommentB, Case());
            rule = Set->FOnlyLineCommentIfFirstCharB;
        }
        if (!len || (rule == 2 && p != 0))
            return false;
        if (T[p] == u'#' && p > 0 && (T[p - 1] == u'$' || T[p - 1] == u'{'))
            return false; // "$#" and "${#name}" are variables, not comments
        if (rule == 1)
            for (int i = 0; i < p; ++i)
                if (!IsBlankish(T[i]))
                    return false;
        TRawTerminator end;
        if (const int open = LongBracketOpener(T, p + len, *Set, end); open > 0) {
            RawString(open, end, TTokenKind::Comment);
            return true;
        }
        TodoAt(p + len);
        const int tag = ScriptCloseFrom(p + len);
        if (tag >= 0) {
            EmitText(p, tag, TTokenKind::LineComment);
            p = tag;
            return true;
        }
        EmitText(p, N, TTokenKind::LineComment);
        P.Set(spInLineComment, true);
        p = N;
        return true;
    }

    // ---- Escapes, numbers, text between tags
    bool EscapeOutsideString() {
        if (!Set->FAllowEscapeOutsideString || Set->FEscape.empty() || T[p] != Set->FEscape[0] ||
            p + 1 >= N)
            return false;
        const char16_t n = T[p + 1];
        if (n != Set->FEscape[0] && n != Delimiter(*Set, 0) && n != Delimiter(*Set, 1) && n != u'/')
            return false;
        Emit(p, p + 2, TTokenKind::Text);
        p += 2;
        return true;
    }

    // A number begins at a digit, at "." before a digit that follows no word or dot, and at
    // a hexadecimal prefix that is no digit ("$FF"); only in a syntax that states Numbers.
    bool NumberStart(char16_t c) const {
        if (IsDigit(c))
            return FNumbers;
        if (c != u'.' && c != FHexStart)
            return false;
        const bool free = FNumbers && (p == 0 || (!WordCharAt(T[p - 1]) && T[p - 1] != u'.'));
        if (c == u'.')
            return free && p + 1 < N && IsDigit(T[p + 1]);
        const std::u16string& hex = Set->FHexIdentifier;
        return free && p + int(hex.size()) < N && StartsAt(T, p, hex, false) &&
               IsHexDigit(T[p + hex.size()]);
    }

    // A number, then the rest of its word as plain text: "1e" colours the "1", while a
    // number with a radix prefix glued to a word ("0x1FG") is no number at all.
    void Number() {
        bool hex = false;
        const int q = NumberEnd(T, p, *Set, hex);
        const bool radix = hex || (q > p + 1 && T[p] == u'0' && (T[p + 1] | 0x20) != u'.' &&
                                   !IsDigit(T[p + 1]) && (T[p + 1] | 0x20) != u'e');
        int end = q;
        while (end < N && WordCharAt(T[end]))
            ++end;
        const TBlock* open = OpenBlock();
        const bool number = (!open || open->HighlightNumbers) && (!radix || end == q) && q > p;
        const int numberEnd = number ? q : p;
        Emit(p, numberEnd, hex ? TTokenKind::HexNumber : TTokenKind::Number);
        Emit(numberEnd, end, TTokenKind::Text);
        p = std::max(end, p + 1);
    }

    // Text between tags is passed up to the next "<" or a block opener.
    void BetweenTags() {
        int q = p + 1;
        while (q < N && T[q] != u'<' && !(T[q] < 128 && BlockStartChar(T[q])))
            ++q;
        Emit(p, q, TTokenKind::Text);
        p = q;
    }
    bool BlockStartChar(char16_t c) const {
        for (const TBlock& b : Set->FBlocks)
            if (!b.IsRegEx() && !b.Start.empty() && b.Start[0] == c)
                return true;
        return false;
    }

    // ---- Tags and embedded languages
    bool Tags() {
        if (InScript() && (P.ScriptType == scPHP || P.ScriptType == scASP) && CloseServerTag())
            return true;
        if (P.Get(spInTag) && !InScript())
            return InsideTag();
        if (T[p] != u'<' || P.BracketId >= 0)
            return false;
        if (OpenServerTag())
            return true;
        if (InScript() && !EndOfScriptTag())
            return false;
        return OpenTag();
    }

    bool OpenServerTag() {
        const bool php = StartsAt(T, p, u"<?", true), asp = StartsAt(T, p, u"<%", true);
        const TScriptType type = php ? scPHP : scASP;
        if ((!php && !asp) || StartsAt(T, p, u"<%--", true) || !C.Embedded(type))
            return false;
        int len = 2;
        if (php && StartsAt(T, p, u"<?php", false))
            len = 5;
        else if (StartsAt(T, p, php ? u"<?=" : u"<%=", true))
            len = 3;
        Emit(p, p + len, TTokenKind::ServerTag);
        P.CachedBracketId = P.BracketId;
        P.Set(spSavedInTag, P.Get(spInTag));
        P.Set(spInTag, false);
        P.BracketId = -1;
        P.ScriptTypeOld = P.Get(spInScript) ? P.ScriptType : scHtml;
        P.ScriptType = type;
        P.Set(spInScript, true);
        SelectSet();
        p += len;
        return true;
    }

    bool CloseServerTag() {
        if (!StartsAt(T, p, P.ScriptType == scPHP ? u"?>" : u"%>", true))
            return false;
        Emit(p, p + 2, TTokenKind::ServerTag);
        P.ScriptType = P.ScriptTypeOld;
        P.ScriptTypeOld = scNone;
        if (!IsScriptType(P.ScriptType)) {
            P.ScriptType = scHtml;
            P.Set(spInScript, false);
        }
        P.BracketId = P.CachedBracketId;
        P.CachedBracketId = -1;
        P.Set(spInTag, P.Get(spSavedInTag));
        P.Set(spSavedInTag, false);
        SelectSet();
        p += 2;
        return true;
    }

    // In a script only the matching end tag is a tag; it returns the row to HTML.
    bool EndOfScriptTag() {
        if (!StartsAt(T, p, ScriptEndTag(), false))
            return false;
        P.Set(spInScript, false);
        P.ScriptType = scHtml;
        SelectSet();
        return true;
    }

    bool OpenTag() {
        if (StartsAt(T, p, u"<<", true))
            return false;
        int q = p + 1;
        const bool closing = q < N && T[q] == u'/';
        if (closing)
            ++q;
        if (q >= N || !(IsWordChar(T[q]) || T[q] == u'!' || T[q] == u'?'))
            return false;
        if (StartsAt(T, q, u"![", true))
            return false; // "<![CDATA[" is left to the blocks

        const int nameStart = q;
        while (q < N && !IsBlank(T[q]) && T[q] != u'/' && T[q] != u'<' && T[q] != u'>')
            ++q;
        const std::u16string_view name = T.substr(nameStart, q - nameStart);
        if (closing && InSvg() && name.size() == 3 && StartsAt(name, 0, u"svg", false)) {
            P.Set(spInScript, false); // "</svg" is HTML's again
            P.ScriptType = scHtml;
            SelectSet();
        }
        const int group = Set->FindTag(name, C.Host().FTagsCaseSensitive);
        Emit(p, q, TTokenKind::Tag, group);
        P.Set(spInTag, true);
        P.TagNr = std::int8_t(std::clamp(group, 0, 127));
        if (!closing)
            PrepareScript(name, q);
        p = q;
        return true;
    }

    // A start tag of an embedded language: the language begins behind the tag's ">". A
    // script's language is told by its attributes within 100 characters of the name.
    void PrepareScript(std::u16string_view name, int q) {
        const auto is = [&](std::u16string_view tag) {
            return name.size() == tag.size() && StartsAt(name, 0, tag, false);
        };
        TScriptType type = scNone;
        if (is(u"script")) {
            auto head = T.substr(q, std::min(100, N - q));
            head = head.substr(0, head.find(u'>'));
            type = FindCaseless(head, 0, u"vb") >= 0                 ? scVB
                   : FindCaseless(head, 0, u"c#") >= 0               ? scJS
                   : FindCaseless(head, 0, u"text/hyperscript") >= 0 ? scHyperscript
                   : C.Host().FASPXLanguage == 2                     ? scVB
                                                                     : scJS;
        } else if (is(u"style"))
            type = scCSS;
        else if (is(u"cfscript"))
            type = scCF;
        else if (is(u"svg"))
            type = scSVG;
        if (type != scNone && C.Embedded(type))
            P.ScriptType = type;
    }

    bool InsideTag() {
        const char16_t c = T[p];
        if (c == u'"' || c == u'\'')
            return false; // the string rule reads attribute values
        if (c == u'<') {
            P.Set(spInTag, false); // an unclosed tag ends where the next one starts
            return true;
        }
        if (c == u'>' || (c == u'/' && p + 1 < N && T[p + 1] == u'>')) {
            const int len = c == u'>' ? 1 : 2;
            Emit(p, p + len, TTokenKind::Tag);
            P.Set(spInTag, false);
            p += len;
            if (IsScriptType(P.ScriptType) && len == 1) {
                P.Set(spInScript, true);
                SelectSet();
            } else if (!InSvg())
                P.ScriptType = scHtml;
            return true;
        }
        int q = p;
        while (q < N && !IsBlank(T[q]) &&
               std::u16string_view(u"=<>/\"'").find(T[q]) == std::u16string_view::npos)
            ++q;
        if (q == p) {
            Emit(p, p + 1, TTokenKind::Symbol);
            p += 1;
            return true;
        }
        int before = p - 1;
        while (before >= 0 && IsBlank(T[before]))
            --before;
        const bool value = before >= 0 && T[before] == u'=';
        Emit(p, q, value ? TTokenKind::AttributeValue : TTokenKind::AttributeName);
        p = q;
        return true;
    }

    // ---- JSX elements. The document is not in tag mode, so P.TagNr is free to count the
    // open elements and spInTag marks the inside of a JSX tag. Code in braces within an
    // element is code up to its closing brace, when that is on the same row.
    bool Jsx() {
        const char16_t c = T[p];
        if (FJsxCodeLevel >= 0) {
            if (c == u'}' && P.Brace2Level == FJsxCodeLevel) {
                Brace(c);
                FJsxCodeLevel = -1;
                return true;
            }
            return c == u'<' && JsxTag();
        }
        if (P.Get(spInTag))
            return JsxInsideTag();
        if (c == u'<' && JsxTag())
            return true;
        if (P.TagNr <= 0)
            return false;
        if (c == u'{')
            return JsxCode();
        int q = p + 1; // the element's text
        while (q < N && T[q] != u'<' && T[q] != u'{')
            ++q;
        Emit(p, q, TTokenKind::Text);
        p = q;
        return true;
    }

    bool JsxCode() {
        Brace(u'{');
        FJsxCodeLevel = P.Brace2Level;
        return true;
    }

    // "<name", "</name", "<>" or "</>": in an element's text, or where an operand may begin.
    bool JsxTag() {
        if (P.TagNr <= 0 && !OperandStartsAt(T, p))
            return false;
        int q = p + 1;
        const bool closing = q < N && T[q] == u'/';
        if (closing)
            ++q;
        const int name = q;
        if (q < N && IsLetter(T[q]))
            while (q < N && (IsWordChar(T[q]) || T[q] == u'.' || T[q] == u'-' || T[q] == u':'))
                ++q;
        if (q == name && !(q < N && T[q] == u'>'))
            return false; // "< b", "<=", "<1": no tag
        Emit(p, q, TTokenKind::Tag);
        P.TagNr = std::int8_t(std::clamp(P.TagNr + (closing ? -1 : 1), 0, 127));
        P.Set(spInTag, true);
        p = q;
        return true;
    }

    bool JsxInsideTag() {
        const char16_t c = T[p];
        if (c == u'>' || (c == u'/' && p + 1 < N && T[p + 1] == u'>')) {
            const int len = c == u'>' ? 1 : 2;
            if (len == 2) // self-closed: the element is over
                P.TagNr = std::int8_t(std::max(P.TagNr - 1, 0));
            Emit(p, p + len, TTokenKind::Tag);
            P.Set(spInTag, false);
            p += len;
            return true;
        }
        if (c == u'{')
            return JsxCode();
        if (c == u'"' || c == u'\'') {
            int q = p + 1;
            while (q < N && T[q] != c)
                ++q;
            q = std::min(q + 1, N);
            Emit(p, q, TTokenKind::AttributeValue);
            p = q;
            return true;
        }
        if (IsBlank(c))
            return false; // the round passes blanks
        int q = p;
        while (q < N && !IsBlank(T[q]) &&
               std::u16string_view(u"=>/{\"'").find(T[q]) == std::u16string_view::npos)
            ++q;
        const bool name = q > p;
        q = std::max(q, p + 1);
        Emit(p, q, name ? TTokenKind::AttributeName : TTokenKind::Symbol);
        p = q;
        return true;
    }

    // ---- Here-documents and raw strings
    bool OpenHereDoc() {
        const std::u16string& sym = Set->FHereDocSymbol;
        if (sym.empty() || !StartsAt(T, p, sym, true) || S.Block.Id >= 0)
            return false;
        int q = HereDocWordAt(T, p, *Set);
        if (q < 0)
            return false;
        if (q < N && (T[q] == u'-' || T[q] == u'~'))
            ++q;
        const char16_t quote = q < N && (T[q] == u'"' || T[q] == u'\'') ? T[q] : 0;
        if (quote)
            ++q;
        const int word = q;
        if (q >= N || !IsLetter(T[q]))
            return false;
        while (q < N && (IsLetter(T[q]) || IsDigit(T[q])))
            ++q;
        S.Block.Extra.mut().HereDocString.assign(T.substr(word, q - word));
        if (quote && q < N && T[q] == quote)
            ++q;
        Emit(p, q, TTokenKind::String);
        FHereDocPending = true;
        p = q;
        return true;
    }

    // A raw string whose opener ends at `open`: no escapes; it ends at its terminator, on
    // this row or, kept as the open block's terminator, on a later one.
    void RawString(int open, const TRawTerminator& end, TTokenKind kind = TTokenKind::String) {
        const auto at = T.find(end.View(), open);
        if (at != std::u16string_view::npos) {
            const int q = int(at) + end.Length;
            EmitText(p, q, kind);
            p = q;
            return;
        }
        EmitText(p, N, kind);
        S.Block.Id = kind == TTokenKind::Comment ? kRawCommentBlock : kRawStringBlock;
        S.Block.Extra.mut().HereDocString.assign(end.View());
        p = N;
    }

    void ContinueRawString() {
        const std::u16string& end = S.Block.HereDocString();
        const TTokenKind kind =
            S.Block.Id == kRawCommentBlock ? TTokenKind::Comment : TTokenKind::String;
        const auto at = T.find(end, p);
        if (at == std::u16string_view::npos) {
            EmitText(p, N, kind);
            p = N;
            return;
        }
        const int q = int(at + end.size());
        EmitText(p, q, kind);
        S.Block.Id = -1;
        DropHereDocWord();
        p = q;
    }

    void ContinueHereDoc() {
        const std::u16string& word = S.Block.HereDocString();
        const int f = FirstNonBlank();
        int rest = f + int(word.size());
        bool ends = p <= f && StartsAt(T, f, word, true);
        for (int i = rest; ends && i < N; ++i)
            ends = IsBlank(T[i]) || T[i] == u';' || T[i] == u')' || T[i] == u',';
        if (!ends) {
            EmitText(p, N, TTokenKind::String);
            p = N;
            return;
        }
        Emit(p, f, TTokenKind::Text);
        Emit(f, rest, TTokenKind::String);
        S.Block.Id = -1;
        P.BracketId = -1;
        DropHereDocWord();
        p = rest;
    }

    void DropHereDocWord() {
        if (!S.Block.HereDocString().empty())
            S.Block.Extra.mut().HereDocString.clear();
    }

    // ---- Blocks
    int BlockStartLength(const TBlock& b) const {
        if (b.IsRegEx())
            return b.StartRegEx && b.StartRegEx->MayStartWith(T[p])
                       ? std::max(0, b.StartRegEx->MatchAt(T.substr(0, N), p, X.Match))
                       : 0;
        return StartsAt(T, p, b.Start, Case()) ? int(b.Start.size()) : 0;
    }

    int BlockStopLength(const TBlock& b) const {
        if (b.IsRegEx())
            return b.StopRegEx ? std::max(0, b.StopRegEx->MatchAt(T.substr(0, N), p, X.Match)) : 0;
        return StartsAt(T, p, b.Stop, Case()) ? int(b.Stop.size()) : 0;
    }

    bool EscapedByBlockEsc() const {
        return !Set->FBlockEsc.empty() && p > 0 && T[p - 1] == Set->FBlockEsc[0];
    }

    bool OpenBlock(char16_t) {
        if (S.Block.Id >= 0 && (S.Block.Force || !S.Block.HighlightBlocks))
            return false;
        const int first = FirstNonBlank();
        for (int i = 0; i < int(Set->FBlocks.size()) && i < 127; ++i) {
            const TBlock& b = Set->FBlocks[i];
            const int len = BlockStartLength(b);
            if (len <= 0 || (b.FirstOnLine && p != first) || !AfterAllowed(b) ||
                EscapedByBlockEsc())
                continue;
            if (S.Block.Id >= 0)
                S.Block.Extra.mut().Cache.push_back(S.Block.Id);
            EnterBlock(i);
            Emit(p, p + len, TTokenKind::Block, i);
            p += len;
            return true;
        }
        return false;
    }

    bool AfterAllowed(const TBlock& b) const {
        if (b.OnlyAfter.empty())
            return true;
        int k = p - 1;
        while (k >= 0 && IsBlank(T[k]))
            --k;
        return k >= 0 && b.OnlyAfter.find(T[k]) != std::u16string::npos;
    }

    void EnterBlock(int id) {
        const TBlock& b = Set->FBlocks[id];
        S.Block.Id = std::int8_t(id);
        S.Block.Force = b.ForceColor || b.Stop.empty();
        S.Block.IsLine = b.LineBlock;
        S.Block.HighlightKeywords = b.HighlightKeywords;
        S.Block.HighlightSymbols = b.HighlightSymbols;
        S.Block.HighlightBlocks = b.HighlightBlocks;
        S.Block.HighlightNumbers = b.HighlightNumbers;
        S.Block.HighlightStrings = b.HighlightStrings;
        S.Block.HighlightChars = b.HighlightChars;
    }

    void LeaveBlock() {
        S.Block.Force = false;
        S.Block.IsLine = false;
        if (!S.Block.Cache().empty()) {
            auto& cache = S.Block.Extra.mut().Cache;
            const int parent = cache.back();
            cache.pop_back();
            EnterBlock(parent);
        } else
            S.Block.Id = -1;
    }

    bool BlockStop() {
        const TBlock* b = OpenBlock();
        if (!b)
            return false;
        int len = b->Stop.empty() && !b->IsRegEx() ? 0 : BlockStopLength(*b);
        if (len <= 0 && StartsAt(T, p, Set->FEndOpenBlockAt, Case()))
            len = int(Set->FEndOpenBlockAt.size());
        if (len <= 0 || EscapedByBlockEsc())
            return false;
        Emit(p, p + len, TTokenKind::Block, S.Block.Id);
        LeaveBlock();
        p += len;
        return true;
    }

    // A block coloured as a string: nothing opens inside it; only its end is looked for.
    void StringBlockText(const TBlock& b) {
        int q = p + 1;
        if (b.Stop.empty() && !b.IsRegEx()) // a line block without closer: the rest of the row
            q = N;
        else if (!b.IsRegEx())
            while (q < N && T[q] != b.Stop[0])
                ++q;
        Emit(p, q, TTokenKind::Block, S.Block.Id);
        p = q;
    }

    // A long-bracket string ([[...]], [==[...]==]) of a syntax with LongBrackets.
    bool LongBracketString() {
        TRawTerminator end;
        const int open = T[p] == u'[' ? LongBracketOpener(T, p, *Set, end) : -1;
        if (open < 0)
            return false;
        RawString(open, end);
        return true;
    }

    // ---- Regular-expression literals and quote-like operators
    // Syntaxes with SlashRegex write regular expressions between slashes; one is taken where
    // an operand may begin and the closing slash is on the row, so that quotes and comment
    // characters in it open nothing.
    bool RegexLiteral() {
        if (T[p] != u'/' || !Set->FSlashRegex)
            return false;
        const int len = SlashRegexLength(T, p);
        if (!len)
            return false;
        Emit(p, p + len, TTokenKind::String);
        p += len;
        return true;
    }

    // ---- Strings
    bool OpenString() {
        const TBlock* open = OpenBlock();
        if (open && !open->HighlightBlocks)
            return false;
        if (const std::u16string& after = Set->FStringOnlyAfter; !after.empty()) {
            int k = p - 1;
            while (k >= 0 && IsBlank(T[k]))
                --k;
            if (k >= 0 && after.find(T[k]) == std::u16string::npos)
                return false;
        }
        for (int k = 0; k < 3; ++k) {
            const char16_t d = Delimiter(*Set, k);
            if (!d || T[p] != d || (k == 0 && Set->FCharShort && !ShortCharAt(d)))
                continue;
            // Shell's $'...' knows escapes, unlike its other single-quoted strings.
            if ((Set->FVerbatimStringStart && p > 0 && T[p - 1] == Set->FVerbatimStringStart) ||
                (k == 0 && Set->FCharVerbatim && !(p > 0 && T[p - 1] == u'$')))
                P.Set(spVerbatim, true);
            P.BracketId = std::int8_t(k);
            P.Set(spStringStart, true);
            P.Set(spStringOnLine, Set->FStringLine || (k < 2 && Set->FQuoteStringsOnLine));
            ContinueString(p + 1, p);
            return true;
        }
        return false;
    }

    // A character literal: one character ('x'), or an escape closing within 12 units ('\n',
    // '\u{1F600}'). Rust's "'a" of a lifetime is none.
    bool ShortCharAt(char16_t d) const {
        const char16_t esc = Set->FEscape.empty() ? 0 : Set->FEscape[0];
        if (p + 1 < N && T[p + 1] == esc && esc) {
            for (int q = p + 3; q < N && q <= p + 12; ++q)
                if (T[q] == d)
                    return true;
            return false;
        }
        const int close = p + (p + 1 < N && T[p + 1] >= 0xD800 && T[p + 1] < 0xDC00 ? 3 : 2);
        return close < N && T[close] == d;
    }

    // Reads string text from `from` (the opener at `start` when it is on this row).
    void ContinueString(int from, int start = -1) {
        if (start < 0)
            start = from;
        const char16_t d = Delimiter(*Set, P.BracketId);
        const char16_t esc = Set->FEscape.empty() ? 0 : Set->FEscape[0];
        const bool verbatim = P.Get(spVerbatim);
        // Code inside the string: "${...}" of template strings, "{...}" of format strings.
        const std::u16string_view code = FFormatString ? u"{"
                                         : P.BracketId == 2 && !Set->FInterpolation.empty()
                                             ? std::u16string_view(Set->FInterpolation)
                                             : std::u16string_view();
        int q = from;
        while (q < N) {
            if (T[q] == esc && esc && !verbatim) {
                q += 2;
                continue;
            }
            if (!code.empty() && T[q] == code[0] && StartsAt(T, q, code, true)) {
                if (FFormatString && q + 1 < N && T[q + 1] == u'{')
                    q += 2; // "{{" is a brace
                else
                    q = InterpolationEnd(T, q + int(code.size()), *Set);
                continue;
            }
            if (T[q] == d) {
                if (verbatim && q + 1 < N && T[q + 1] == d) {
                    q += 2;
                    continue;
                }
                break;
            }
            ++q;
        }
        const TTokenKind kind = P.Get(spInTag) && !InScript() ? TTokenKind::AttributeValue
                                : P.BracketId == 0            ? TTokenKind::Char
                                                              : TTokenKind::String;
        if (q >= N) {
            EmitText(start, N, kind);
            p = N;
            return;
        }
        EmitText(start, q + 1, kind);
        FFormatString = false;
        P.BracketId = -1;
        P.Set(spStringEnd, true);
        P.Set(spVerbatim, false);
        p = q + 1;
    }

    // ---- The plain run
    bool WordCharAt(char16_t c) const {
        return IsWordChar(c) ||
               (FExtraWordChars && c < 128 && Set->FWordChars.find(c) != std::u16string::npos);
    }
    // A word may begin with a character of WordChars ("-webkit-box", "--gap") when a letter
    // or the same character follows.
    bool WordStart(char16_t c) const {
        if (IsWordChar(c))
            return true;
        return WordCharAt(c) && p + 1 < N && (IsLetter(T[p + 1]) || T[p + 1] == c);
    }

    void Plain() {
        const char16_t c = T[p];
        if (C.Urls() && (c | 0x20) >= u'a' && (c | 0x20) <= u'z')
            if (const int len = UrlLengthAt(T.substr(0, N), p)) {
                Emit(p, p + len, TTokenKind::Url);
                p += len;
                return;
            }
        if (WordStart(c))
            return Word();
        const TBlock* open = OpenBlock();
        if (Set->FHasRegExKeywords && RegexKeyword(open))
            return;
        if (c == u'%' && Set->FPercentLiterals && (!open || open->HighlightBlocks) &&
            Quoted(PercentLiteral(T, p, *Set)))
            return;
        if (c == u'(' || c == u')' || c == u'{' || c == u'}' || c == u'[' || c == u']') {
            if (FCss)
                FCssValue = false;
            return Brace(c);
        }
        const bool symbol = Set->FSymbols.find(c) != std::u16string::npos &&
                            (!open || open->HighlightSymbols) &&
                            !(Set->FOnlyHighlightInBlock && !open);
        if (FCss)
            FCssValue = c == u':' ? P.Brace2Level > 0 : c == u';' ? false : FCssValue;
        if (symbol && FSymbolWords && SymbolWord())
            return;
        Emit(p, p + 1, symbol ? TTokenKind::Symbol : TTokenKind::Text);
        ++p;
    }

    // A word of the lists SymbolWordsA, B, C at p, made only of symbols and no digit.
    bool SymbolWord() {
        const std::u16string* lists[] = {&Set->FSymbolWordsA, &Set->FSymbolWordsB,
                                         &Set->FSymbolWordsC};
        for (int l = 0; l < 3; ++l) {
            const std::u16string& list = *lists[l];
            int best = 0; // the longest listed word at p
            for (std::size_t at = 1; at < list.size();) {
                const std::size_t end = list.find(u' ', at);
                const int len = int((end == list.npos ? list.size() : end) - at);
                if (len > best && StartsAt(T, p, std::u16string_view(list).substr(at, len), true))
                    best = len;
                at = end == list.npos ? list.size() : end + 1;
            }
            for (int i = 0; i < best; ++i)
                if (Set->FSymbols.find(T[p + i]) == std::u16string::npos ||
                    Set->FNumericChars.find(T[p + i]) != std::u16string::npos)
                    best = 0;
            if (best > 0) {
                Emit(p, p + best, TTokenKind::Symbol, kSymbolWordIndex + l);
                p += best;
                return true;
            }
        }
        return false;
    }

    void Brace(char16_t c) {
        std::int8_t* level = c == u'(' || c == u')'   ? &P.Brace1Level
                             : c == u'{' || c == u'}' ? &P.Brace2Level
                                                      : &P.Brace3Level;
        const bool opens = c == u'(' || c == u'{' || c == u'[';
        int colourLevel = *level;
        if (opens)
            *level = std::int8_t(std::min(*level + 1, 127));
        else
            colourLevel = *level = std::int8_t(std::max(*level - 1, -127));
        Emit(p, p + 1, TTokenKind::Brace, colourLevel);
        if (Facts)
            Facts->AddBrace(c);
        ++p;
    }

    void Word() {
        int q = p + 1;
        const TBlock* open = OpenBlock();
        const bool stopInside = open && !open->IsRegEx() && !open->Stop.empty();
        while (q < N && WordCharAt(T[q])) {
            if (stopInside && T[q] == open->Stop[0] && StartsAt(T, q, open->Stop, Case()))
                break;
            ++q;
        }
        if (FWordLiterals && q < N && QuotedAfterWord(q, open))
            return;
        // Regular-expression groups may take more or less than the word, so both walks look
        // them up; plain lists colour only.
        p = Sink || Set->FHasRegExKeywords ? EmitWord(q, open) : q;
    }

    // Literals a word opens: raw strings (R"x(...)x", r#"..."#), format strings (f"{x}"),
    // quote-like operators (s/a/b/). True when one was read.
    bool QuotedAfterWord(int q, const TBlock* open) {
        if (open && !open->HighlightBlocks)
            return false;
        TRawTerminator end;
        if (const int opener = RawStringOpener(T, p, q, *Set, end); opener > 0) {
            RawString(opener, end);
            return true;
        }
        if (IsFormatPrefix(T, p, q, *Set)) {
            Emit(p, q, TTokenKind::String);
            p = q;
            FFormatString = true;
            if (!OpenString())
                FFormatString = false;
            return true;
        }
        return Quoted(QuoteLike(T, p, q, *Set));
    }

    // A quote-like text; one left open at the row's end goes on until its closing delimiter.
    bool Quoted(const TQuoteLike& quote) {
        if (!quote.Length)
            return false;
        if (quote.OpenEnd) {
            TRawTerminator end;
            end.Text[end.Length++] = quote.OpenEnd;
            RawString(N, end);
            return true;
        }
        Emit(p, p + quote.Length, TTokenKind::String);
        p += quote.Length;
        return true;
    }

    bool KeywordsAllowed(const TBlock* open) const {
        if (S.Block.Id == -2 || (open && (!open->HighlightKeywords || S.Block.Force)))
            return false;
        // A block of a tag-mode syntax is template code ({% if %}): its keywords count.
        return !C.TagMode() || InScript() || Set->FAllowHighlightBetweenTags || open;
    }

    // Colours the word [p, q) and returns where the walk goes on: behind the word, or behind
    // a regular-expression group's match when that starts at the word.
    int EmitWord(int q, const TBlock* open) {
        const std::u16string_view word = T.substr(p, q - p);
        if (word.size() > 50 || !KeywordsAllowed(open)) {
            Emit(p, q, TTokenKind::Text);
            return q;
        }
        const int group = Set->FindKeyword(word, Case());
        if (group >= 0 && GroupAllowed(group, open)) {
            Emit(p, q, TTokenKind::Keyword, group);
            return q;
        }
        if (Set->FHasRegExKeywords && RegexKeyword(open))
            return p > q ? p : (Emit(p, q, TTokenKind::Text), q);
        Emit(p, q, TTokenKind::Text);
        return q;
    }

    // A regular-expression group that matches at p, or at the start of the blanks in front
    // of p (so "^\s*key" finds an indented key): colours the match from p and moves behind it.
    bool RegexKeyword(const TBlock* open) {
        if (!KeywordsAllowed(open))
            return false;
        int blanks = p;
        while (blanks > 0 && IsBlank(T[blanks - 1]))
            --blanks;
        for (int g = 0; g < int(Set->FKeyWords.size()); ++g) {
            const TKeyWord& k = Set->FKeyWords[g];
            if (!k.RegEx || !k.CompiledRegEx || !GroupAllowed(g, open))
                continue;
            if (blanks > 0 && k.sRegEx.starts_with(u'^'))
                continue; // anchored at the row's start, which lies behind
            const TStyleRegex& re = *k.CompiledRegEx;
            int end = re.MayStartWith(T[p]) ? p + re.MatchAt(T, p, X.Match) : p;
            if (end <= p && blanks < p && re.MayStartWith(T[blanks]))
                end = blanks + re.MatchAt(T, blanks, X.Match);
            if (end > p) {
                Emit(p, end, TTokenKind::Keyword, g);
                p = end;
                return true;
            }
        }
        return false;
    }

    bool GroupAllowed(int g, const TBlock* open) const {
        const std::u16string& name = Set->FKeyWords[g].Name;
        if (name.starts_with(u'?'))
            return false;
        if (FCss && P.Brace2Level > 0 && name == (FCssValue ? u"Properties" : u"Values"))
            return false; // a property name is no value, a value no property
        return !Set->FOnlyHighlightInBlock || open || name.starts_with(u"_") ||
               name.starts_with(u"#_");
    }

    // ---- End of the row
    void EndOfRow() {
        if (FHereDocPending) {
            S.Block.Id = -2;
            P.BracketId = -1;
        }
        const bool continues = FNext; // rows of one line scan as that line
        if (!continues) {
            P.Set(spInLineComment, false);
            if (P.Get(spStringOnLine)) {
                P.Set(spStringOnLine, false);
                if (P.BracketId >= 0)
                    P.BracketId = -1, P.Set(spVerbatim, false);
            }
            S.Block.IsLine = false;
            if (const TBlock* b = OpenBlock(); b && b->LineBlock)
                LeaveBlock();
        }
        // Flags that describe the last token, not the row's end, are not kept.
        for (auto bit : {spStringEnd, spStringStart, spSymbol, spHexNumber, spKeyword, spNumber})
            P.Set(bit, false);
    }

    const TScanContext& C;
    std::u16string_view T;
    TStyle& S;
    TStyleProperties& P;
    TScanScratch& X;
    IRunSink* Sink;
    const std::atomic<bool>* Halt;
    TRowFacts* Facts;
    const TZvCustomMemoStyles* Set = nullptr;
    const TStarterTable* Starters = nullptr;
    bool FNext, FFull;
    int FStop = 0;           // the walk ends at the first token boundary at or behind it
    int* FReached = nullptr; // told where the walk ended
    bool FHereDocPending = false;
    bool FFormatString = false; // the string being read holds {code} (a format prefix)
    bool FCss = false;          // the set is of the CSS family: it has a value state
    bool FJsx = false;          // the set reads JSX elements (a document not in tag mode)
    int FJsxCodeLevel = -1;     // in {code} of a JSX element: Brace2Level behind its "{"

    bool FWordLiterals = false;   // a word can open a literal: raw, format or quote-like
    bool FNumbers = false;        // the set states Numbers
    bool FExtraWordChars = false; // the set has WordChars
    bool FSymbolWords = false;    // the set lists symbol words
    char16_t FHexStart = 0xFFFF;  // first character of a hexadecimal prefix that is no digit
    bool FCssValue = false;       // behind a ":" of a declaration, up to its ";"
    int N = 0;
    int p = 0;
};

} // namespace

const char* TokenKindName(TTokenKind kind) {
    static constexpr const char* kNames[] = {
        "text",      "comment",        "doccomment", "linecomment", "string", "char",
        "number",    "hexnumber",      "keyword",    "symbol",      "brace",  "tag",
        "attribute", "attributevalue", "servertag",  "block",       "url"};
    return kNames[static_cast<int>(kind)];
}

bool ScanRow(const TScanContext& ctx, const TScanRequest& request, TStyle& state,
             TScanScratch& scratch) {
    return TRowWalk(ctx, request, state, scratch).Run();
}

} // namespace zv
