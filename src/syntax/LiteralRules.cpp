// Literal rules of script languages, read from the row text.
#include "syntax/LiteralRules.h"

namespace zv {
namespace {

constexpr bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}
constexpr bool IsHexDigit(char16_t c) {
    return IsDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}
constexpr bool IsWord(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || IsDigit(c) ||
           c >= 192;
}
constexpr bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}
bool Has(std::u16string_view set, char16_t c) {
    return set.find(c) != std::u16string_view::npos;
}
bool StartsAt(std::u16string_view t, std::size_t p, std::u16string_view s) {
    return !s.empty() && t.size() >= p + s.size() && t.compare(p, s.size(), s) == 0;
}
char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
}

// Deep nesting of interpolations stops being followed here; the rest reads as string.
constexpr int kMaxInterpolationDepth = 16;

int InterpolationEndAt(std::u16string_view t, int from, const TZvCustomMemoStyles& s, int depth);

// Behind the closing quote of the nested string opened at q, or t.size().
int NestedStringEnd(std::u16string_view t, int q, const TZvCustomMemoStyles& s, int depth) {
    const int n = int(t.size());
    const char16_t quote = t[q];
    const char16_t esc = s.FEscape.empty() ? 0 : s.FEscape[0];
    const bool interpolates = quote == s.FString2Symbol && !s.FInterpolation.empty();
    for (int k = q + 1; k < n;) {
        if (t[k] == esc && esc)
            k += 2;
        else if (t[k] == quote)
            return k + 1;
        else if (interpolates && StartsAt(t, k, s.FInterpolation))
            k = InterpolationEndAt(t, k + int(s.FInterpolation.size()), s, depth + 1);
        else
            ++k;
    }
    return n;
}

int InterpolationEndAt(std::u16string_view t, int from, const TZvCustomMemoStyles& s, int depth) {
    const int n = int(t.size());
    if (depth > kMaxInterpolationDepth)
        return n;
    // An opener ending in "(" (Julia's "$(") closes at its parenthesis, any other at "}".
    const bool paren = !s.FInterpolation.empty() && s.FInterpolation.back() == u'(';
    const char16_t open = paren ? u'(' : u'{', close = paren ? u')' : u'}';
    int braces = 1;
    for (int q = from; q < n;) {
        const char16_t c = t[q];
        if (c == open)
            ++braces, ++q;
        else if (c == close) {
            if (--braces == 0)
                return q + 1;
            ++q;
        } else if (c == u'"' || c == u'\'' || (c == s.FString2Symbol && c))
            q = NestedStringEnd(t, q, s, depth);
        else
            ++q;
    }
    return n;
}

} // namespace

int RawStringOpener(std::u16string_view t, int wordStart, int q, const TZvCustomMemoStyles& s,
                    TRawTerminator& end) {
    const int n = int(t.size());
    if (q >= n || q <= wordStart || q - wordStart > 3)
        return -1;
    const char16_t letter = t[q - 1];
    if (!s.FRawStringParen.empty() && t[q] == u'"' && Has(s.FRawStringParen, letter)) {
        int k = q + 1; // delimiter: up to 16 characters, then "("
        while (k < n && k - q - 1 <= 16 && t[k] != u'(' && t[k] != u')' && t[k] != u'\\' &&
               t[k] != u'"' && !IsBlank(t[k]))
            ++k;
        if (k >= n || t[k] != u'(' || k - q - 1 > 16)
            return -1;
        end.Length = 0;
        end.Text[end.Length++] = u')';
        for (int i = q + 1; i < k; ++i)
            end.Text[end.Length++] = t[i];
        end.Text[end.Length++] = u'"';
        return k + 1;
    }
    if (!s.FRawStringHash.empty() && Has(s.FRawStringHash, letter) && q - wordStart <= 2) {
        int k = q;
        while (k < n && t[k] == u'#' && k - q < 16)
            ++k;
        if (k >= n || t[k] != u'"')
            return -1;
        end.Length = 0;
        end.Text[end.Length++] = u'"';
        for (int i = q; i < k; ++i)
            end.Text[end.Length++] = u'#';
        return k + 1;
    }
    return -1;
}

int LongBracketOpener(std::u16string_view t, int p, const TZvCustomMemoStyles& s,
                      TRawTerminator& end) {
    const int n = int(t.size());
    if (!s.FLongBrackets || p >= n || t[p] != u'[')
        return -1;
    int k = p + 1;
    while (k < n && t[k] == u'=' && k - p <= 128)
        ++k;
    if (k >= n || t[k] != u'[')
        return -1;
    end.Length = 0;
    end.Text[end.Length++] = u']';
    for (int i = p + 1; i < k; ++i)
        end.Text[end.Length++] = u'=';
    end.Text[end.Length++] = u']';
    return k + 1;
}

bool IsFormatPrefix(std::u16string_view t, int wordStart, int q, const TZvCustomMemoStyles& s) {
    if (s.FFormatStringPrefix.empty() || q >= int(t.size()) || q - wordStart > 2 ||
        (t[q] != u'"' && t[q] != u'\''))
        return false;
    bool format = false;
    for (int i = wordStart; i < q; ++i) {
        if (Has(s.FFormatStringPrefix, t[i]))
            format = true;
        else if (Lower(t[i]) != u'r') // a raw prefix may stand beside it
            return false;
    }
    return format;
}

int InterpolationEnd(std::u16string_view t, int from, const TZvCustomMemoStyles& s) {
    return InterpolationEndAt(t, from, s, 0);
}

int NumberEnd(std::u16string_view t, int p, const TZvCustomMemoStyles& s, bool& hex) {
    const int n = int(t.size());
    hex = false;
    int q = p;
    const std::u16string& hexPrefix = s.FHexIdentifier;
    auto prefixAt = [&](std::u16string_view prefix) {
        if (prefix.empty() || n - p < int(prefix.size()))
            return false;
        for (std::size_t i = 0; i < prefix.size(); ++i)
            if (Lower(t[p + i]) != Lower(prefix[i]))
                return false;
        return true;
    };
    if (prefixAt(hexPrefix) && p + int(hexPrefix.size()) < n &&
        IsHexDigit(t[p + hexPrefix.size()])) {
        hex = true;
        q = p + int(hexPrefix.size());
        while (q < n && (IsHexDigit(t[q]) || t[q] == u'_'))
            ++q;
    } else if (t[p] == u'0' && p + 2 < n && (Lower(t[p + 1]) == u'b' || Lower(t[p + 1]) == u'o')) {
        const char16_t top = Lower(t[p + 1]) == u'b' ? u'1' : u'7';
        q = p + 2;
        while (q < n && ((t[q] >= u'0' && t[q] <= top) || t[q] == u'_'))
            ++q;
        if (q == p + 2)
            return p;
    } else {
        const char16_t sep = s.FDigitSeparator.empty() ? 0 : s.FDigitSeparator[0];
        bool dot = false, exp = false;
        while (q < n) {
            const char16_t c = t[q];
            const bool digitNext = q + 1 < n && IsDigit(t[q + 1]);
            if (IsDigit(c) || (c == u'_' && q > p) || (c == sep && sep && digitNext && q > p))
                ++q;
            else if (c == u'.' && !dot && !exp && digitNext)
                dot = true, ++q;
            else if ((c == u'e' || c == u'E') && !exp && q > p && digitNext)
                exp = true, ++q;
            else if ((c == u'e' || c == u'E') && !exp && q > p && q + 2 < n &&
                     (t[q + 1] == u'+' || t[q + 1] == u'-') && IsDigit(t[q + 2]))
                exp = true, q += 2;
            else
                break;
        }
    }
    for (int suffix = 0; q > p && q < n && suffix < 3 && Has(u"uUlLfFjJn", t[q]); ++suffix)
        ++q;
    return q;
}

int HereDocWordAt(std::u16string_view t, int p, const TZvCustomMemoStyles& s) {
    const std::u16string& sym = s.FHereDocSymbol;
    const int n = int(t.size());
    int q = p + int(sym.size());
    if (q < n && t[q] == sym.back())
        return -1; // "<<<" where the symbol is "<<": a here-string
    if (p > 0 && (t[p - 1] == sym.front() || (IsWord(t[p - 1]) && !s.FHereDocBlank)))
        return -1; // "a<<b": a shift
    int open = 0;  // "((" not closed before p: arithmetic, where "<<" shifts
    for (int i = 0; i + 1 < p; ++i)
        if (t[i] == u'(' && t[i + 1] == u'(')
            ++open, ++i;
        else if (t[i] == u')' && t[i + 1] == u')')
            open -= open > 0, ++i;
    if (open > 0)
        return -1;
    if (q < n && IsBlank(t[q])) {
        if (!s.FHereDocBlank)
            return -1; // "a << b"
        while (q < n && IsBlank(t[q]))
            ++q;
    }
    return q;
}

namespace {

// Reads a quoted text whose opening delimiter stands at `at`: `parts` parts (s/a/b/ has two),
// brackets nesting, backslash escapes, then flags. A one-part text left open at the row's
// end is told in `open`.
TQuoteLike QuotedFrom(std::u16string_view t, int p, int at, int parts) {
    const int n = int(t.size());
    const char16_t open = t[at];
    const char16_t close = open == u'('   ? u')'
                           : open == u'[' ? u']'
                           : open == u'{' ? u'}'
                           : open == u'<' ? u'>'
                                          : open;
    int q = at + 1;
    for (int part = 0; part < parts; ++part) {
        if (part > 0 && close != open) { // s{a}{b}: the second part has its own brackets
            while (q < n && IsBlank(t[q]))
                ++q;
            if (q >= n || t[q] != open)
                return {};
            ++q;
        }
        int depth = 1;
        for (; q < n; ++q) {
            if (t[q] == u'\\') {
                ++q;
                continue;
            }
            if (t[q] == close && --depth == 0)
                break;
            if (t[q] == open && close != open)
                ++depth;
        }
        if (q >= n)
            return parts == 1 ? TQuoteLike{n - p, close} : TQuoteLike{};
        ++q;
    }
    while (q < n && IsWord(t[q]) && !IsDigit(t[q])) // flags
        ++q;
    return {q - p, 0};
}

bool IsDelimiter(char16_t c) {
    return !IsWord(c) && !IsBlank(c) && !Has(u"=,;)}]>", c);
}

} // namespace

TQuoteLike QuoteLike(std::u16string_view t, int p, int wordEnd, const TZvCustomMemoStyles& s) {
    const int n = int(t.size());
    if (wordEnd >= n || wordEnd - p > 2 || (s.FQuoteWords.empty() && s.FSubstituteWords.empty()))
        return {};
    const std::u16string_view word = t.substr(p, wordEnd - p);
    auto listed = [&](const std::u16string& list) {
        for (std::size_t at = list.find(word); at != list.npos; at = list.find(word, at + 1))
            if (at > 0 && list[at - 1] == u' ' && at + word.size() < list.size() &&
                list[at + word.size()] == u' ')
                return true;
        return false;
    };
    const int parts = listed(s.FQuoteWords) ? 1 : listed(s.FSubstituteWords) ? 2 : 0;
    if (!parts)
        return {};
    if (p > 0 && (Has(u"$@%&*", t[p - 1]) || IsWord(t[p - 1]) ||
                  (p > 1 && t[p - 2] == u'-' && t[p - 1] == u'>')))
        return {}; // a variable or a method named so
    if (!IsDelimiter(t[wordEnd]))
        return {};
    return QuotedFrom(t, p, wordEnd, parts);
}

TQuoteLike PercentLiteral(std::u16string_view t, int p, const TZvCustomMemoStyles& s) {
    const int n = int(t.size());
    if (!s.FPercentLiterals || t[p] != u'%' || p + 2 >= n)
        return {};
    int k = p - 1;
    while (k >= 0 && IsBlank(t[k]))
        --k;
    if (k >= 0 && (IsWord(t[k]) || Has(u")]}\"'", t[k])))
        return {}; // an operand in front: "a % b"
    int at = p + 1;
    if (Has(u"qQwWiIrsx", t[at]))
        ++at;
    if (at >= n || !IsDelimiter(t[at]) || t[at] == u'%')
        return {};
    return QuotedFrom(t, p, at, 1);
}

bool OperandStartsAt(std::u16string_view t, int p) {
    int k = p - 1;
    while (k >= 0 && IsBlank(t[k]))
        --k;
    bool operandStart = k < 0 || Has(u"(,=:[!&|?{};~", t[k]);
    if (!operandStart && IsWord(t[k])) { // behind a word that an operand follows
        int w = k;
        while (w > 0 && IsWord(t[w - 1]))
            --w;
        const std::u16string_view word = t.substr(w, k + 1 - w);
        for (std::u16string_view kw : {u"return", u"split", u"grep", u"if", u"unless", u"when",
                                       u"and", u"or", u"not", u"typeof", u"case", u"elsif"})
            operandStart = operandStart || word == kw;
    }
    return operandStart;
}

int SlashRegexLength(std::u16string_view t, int p) {
    const int n = int(t.size());
    if (!OperandStartsAt(t, p))
        return 0;
    bool inClass = false;
    int q = p + 1;
    for (; q < n; ++q) {
        if (t[q] == u'\\')
            ++q;
        else if (t[q] == u'[')
            inClass = true;
        else if (t[q] == u']')
            inClass = false;
        else if (t[q] == u'/' && !inClass)
            break;
    }
    if (q >= n || q == p + 1)
        return 0;
    ++q;
    while (q < n && ((t[q] >= u'a' && t[q] <= u'z') || (t[q] >= u'A' && t[q] <= u'Z'))) // flags
        ++q;
    return q - p;
}

} // namespace zv
