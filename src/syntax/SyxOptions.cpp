// Sections [Options] and [FoldOptions] of the ".syx" reader, and what a load resets.
#include "syntax/SyxReader.h"

#include "common/Utf.h"

#include <array>

namespace zv {

namespace {

using TStyles = TZvCustomMemoStyles;
using TOptionFn = void (*)(TSyxTarget&, std::u16string_view);

template <std::u16string TStyles::*Field> void SetText(TSyxTarget& t, std::u16string_view v) {
    t.Styles.*Field = v;
}

// Booleans of these sections are true only for the exact value "1".
template <bool TStyles::*Field> void SetFlag(TSyxTarget& t, std::u16string_view v) {
    t.Styles.*Field = v == u"1";
}

// A character key takes the first character; an empty value leaves it unset.
template <char16_t TStyles::*Field> void SetChar(TSyxTarget& t, std::u16string_view v) {
    t.Styles.*Field = v.empty() ? char16_t(0) : v.front();
}

template <std::int32_t TStyles::*Field>
void SetFirstCharMode(TSyxTarget& t, std::u16string_view v) {
    t.Styles.*Field = v == u"1" ? 1 : v == u"2" ? 2 : 0;
}

// "-->" followed by " -line": the closer without the separator, and the line flag.
template <std::u16string TStyles::*Text, bool TStyles::*Line>
void SetCommentEnd(TSyxTarget& t, std::u16string_view v) {
    const std::size_t at = v.find(u"-line");
    t.Styles.*Line = at != v.npos;
    t.Styles.*Text = at == v.npos ? v : v.substr(0, at > 0 ? at - 1 : 0);
}

template <std::u16string TStyles::*Field>
void SetSymbolWords(TSyxTarget& t, std::u16string_view v) {
    t.Styles.*Field = u" " + std::u16string(TrimBlanks(v)) + u" ";
}

void SetCase(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FKeywordCase = v == u"1";
    if (t.Memo)
        t.Memo->CaseSensitive = t.Styles.FKeywordCase;
}

void SetCaseTags(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FTagCase = v == u"1";
    if (t.Memo)
        t.Memo->FTagsCaseSensitive = t.Styles.FTagCase;
}

void SetHighlightUrl(TSyxTarget& t, std::u16string_view v) {
    if (t.Memo && v == u"1")
        t.Memo->FUrlAware = true;
}

void SetAutoCompleteTags(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FAutoCompleteTags = v == u"1";
    if (t.Memo && t.Styles.FAutoCompleteTags)
        t.Memo->FXML = true;
}

void SetAutoCompleteSort(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FAutoCompleteSort = v == u"0" ? 0 : v == u"2" ? 2 : 1;
}

void SetHintStart(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FHintParameter.FStartchar = v.empty() ? char16_t(0) : v.front();
}

void SetHintEnd(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FHintParameter.FEndchar = v.empty() ? char16_t(0) : v.front();
}

struct TOptionKey {
    std::u16string_view Key;
    TOptionFn Set;
};

constexpr std::array<TOptionKey, 65> kOptionKeys{{
    {u"LineCommentA", SetText<&TStyles::FLineCommentA>},
    {u"LineCommentB", SetText<&TStyles::FLineCommentB>},
    {u"CommentStartA", SetText<&TStyles::FCommentStartA>},
    {u"CommentEndA", SetCommentEnd<&TStyles::FCommentEndA, &TStyles::FCommentEndA_Line>},
    {u"CommentStartB", SetText<&TStyles::FCommentStartB>},
    {u"CommentEndB", SetCommentEnd<&TStyles::FCommentEndB, &TStyles::FCommentEndB_Line>},
    {u"CommentDocA", SetText<&TStyles::FCommentDocA>},
    {u"CommentDocB", SetText<&TStyles::FCommentDocB>},
    {u"AllowNestedComments", SetFlag<&TStyles::FAllowNestedComments>},
    {u"OnlyLineCommentIfFirstChar", SetFirstCharMode<&TStyles::FOnlyLineCommentIfFirstChar>},
    {u"OnlyLineCommentIfFirstCharA", SetFirstCharMode<&TStyles::FOnlyLineCommentIfFirstChar>},
    {u"OnlyLineCommentIfFirstCharB", SetFirstCharMode<&TStyles::FOnlyLineCommentIfFirstCharB>},
    {u"Char", SetChar<&TStyles::FCharSymbol>},
    {u"String", SetChar<&TStyles::FStringSymbol>},
    {u"String2", SetChar<&TStyles::FString2Symbol>},
    {u"StringOnLine", SetFlag<&TStyles::FStringLine>},
    {u"VerbatimStringStart", SetChar<&TStyles::FVerbatimStringStart>},
    {u"CharVerbatim", SetFlag<&TStyles::FCharVerbatim>},
    {u"CharShort", SetFlag<&TStyles::FCharShort>},
    {u"QuoteStringsOnLine", SetFlag<&TStyles::FQuoteStringsOnLine>},
    {u"StringOnlyAfter", SetText<&TStyles::FStringOnlyAfter>},
    {u"HexIdentifier", SetText<&TStyles::FHexIdentifier>},
    {u"Escape", SetText<&TStyles::FEscape>},
    {u"AllowEscapeOutsideString", SetFlag<&TStyles::FAllowEscapeOutsideString>},
    {u"Symbols", SetText<&TStyles::FSymbols>},
    {u"Numbers", SetText<&TStyles::FNumericChars>},
    {u"Case", SetCase},
    {u"CaseTags", SetCaseTags},
    {u"HighlightUrl", SetHighlightUrl},
    {u"BlockEsc", SetText<&TStyles::FBlockEsc>},
    {u"CommentEsc", SetText<&TStyles::FCommentEsc>},
    {u"AutoCompleteTags", SetAutoCompleteTags},
    {u"AddProjectClassesToCompletion", SetFlag<&TStyles::FAddProjectClassesToCompletion>},
    {u"AutoCloseBraceStart", SetText<&TStyles::FAutoCloseBraceStart>},
    {u"AutoCloseBraceEnd", SetText<&TStyles::FAutoCloseBraceEnd>},
    {u"AutoCloseBlockStart", SetText<&TStyles::FAutoCloseBlockStart>},
    {u"AutoCloseBlockEnd", SetText<&TStyles::FAutoCloseBlockEnd>},
    {u"IndentAfter", SetText<&TStyles::FIndentAfter>},
    {u"UseTabs", SetFlag<&TStyles::FUseTabs>},
    {u"OnlyHighlightInBlock", SetFlag<&TStyles::FOnlyHighlightInBlock>},
    {u"EndOpenBlockAt", SetText<&TStyles::FEndOpenBlockAt>},
    {u"AutoCompleteCharA", SetChar<&TStyles::FAutoCompleteCharA>},
    {u"AutoCompleteCharB", SetChar<&TStyles::FAutoCompleteCharB>},
    {u"AutoCompleteCharC", SetChar<&TStyles::FAutoCompleteCharC>},
    {u"AutoCompleteSort", SetAutoCompleteSort},
    {u"HintCharStart", SetHintStart},
    {u"HintCharEnd", SetHintEnd},
    {u"AllowHighlightBetweenTags", SetFlag<&TStyles::FAllowHighlightBetweenTags>},
    {u"SymbolWordsA", SetSymbolWords<&TStyles::FSymbolWordsA>},
    {u"SymbolWordsB", SetSymbolWords<&TStyles::FSymbolWordsB>},
    {u"SymbolWordsC", SetSymbolWords<&TStyles::FSymbolWordsC>},
    {u"HereDocSymbol", SetText<&TStyles::FHereDocSymbol>},
    {u"DigitSeparator", SetText<&TStyles::FDigitSeparator>},
    {u"HereDocBlank", SetFlag<&TStyles::FHereDocBlank>},
    {u"RawStringParen", SetText<&TStyles::FRawStringParen>},
    {u"RawStringHash", SetText<&TStyles::FRawStringHash>},
    {u"Interpolation", SetText<&TStyles::FInterpolation>},
    {u"FormatStringPrefix", SetText<&TStyles::FFormatStringPrefix>},
    {u"SlashRegex", SetFlag<&TStyles::FSlashRegex>},
    {u"JsxTags", SetFlag<&TStyles::FJsxTags>},
    {u"LongBrackets", SetFlag<&TStyles::FLongBrackets>},
    {u"PercentLiterals", SetFlag<&TStyles::FPercentLiterals>},
    {u"QuoteWords", SetSymbolWords<&TStyles::FQuoteWords>},
    {u"SubstituteWords", SetSymbolWords<&TStyles::FSubstituteWords>},
    {u"WordChars", SetText<&TStyles::FWordChars>},
}};

void SetExcludes(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FFoldListExclude = SplitBar(v);
    t.Styles.FNodeOpt_AutoIdExcludes = t.Styles.FFoldListExclude;
}

void SetFoldCase(TSyxTarget& t, std::u16string_view v) {
    t.Styles.FNodeOpt_Case = v == u"1";
}

void SetFoldLineComments(TSyxTarget& t, std::u16string_view v) {
    if (v == u"0")
        t.Styles.FNodeOpt_FoldLineComments = false;
}

void SetFoldOnIndention(TSyxTarget& t, std::u16string_view v) {
    if (v == u"0")
        t.Styles.FNodeOpt_FoldOnIndention = false;
}

constexpr std::array<TOptionKey, 17> kFoldOptionKeys{{
    {u"AllowedWordSymbols", SetText<&TStyles::FNodeOpt_AllowedWordSymbols>},
    {u"Case", SetFoldCase},
    {u"DefaultBegin", SetText<&TStyles::FNodeOpt_DefaultBegin>},
    {u"DefaultEnd", SetText<&TStyles::FNodeOpt_DefaultEnd>},
    {u"FoldLineComments", SetFoldLineComments},
    {u"FoldOnIndention", SetFoldOnIndention},
    {u"List_ClassSeparator", SetText<&TStyles::FList_Class_Separator>},
    {u"List_Exclude", SetExcludes},
    // Keys the converter of the older format writes; kept so converted files lose nothing.
    {u"List_AsStruct", SetText<&TStyles::FList_Struct>},
    {u"List_AsEnum", SetText<&TStyles::FList_Enum>},
    {u"List_AsClass", SetText<&TStyles::FList_Class>},
    {u"List_AsNS", SetText<&TStyles::FList_NS>},
    {u"List_AsProperty", SetText<&TStyles::FList_Property>},
    {u"List_AsMethod", SetText<&TStyles::FList_Method>},
    {u"AsBegin", SetText<&TStyles::FNodeOpt_AsBegin>},
    {u"Separators", SetText<&TStyles::FNodeOpt_Seperators>},
    {u"Sections", SetText<&TStyles::FNodeOpt_Sections>},
}};

template <std::size_t N>
void Dispatch(const std::array<TOptionKey, N>& keys, const char* section, TSyxTarget& t,
              std::u16string_view key, std::u16string_view value) {
    for (const TOptionKey& k : keys) {
        if (k.Key == key) {
            k.Set(t, value);
            return;
        }
    }
    Warn(t, std::string("unknown key in ") + section + ": " + Utf16ToUtf8(key));
}

} // namespace

void ReadOptionsLine(TSyxTarget& t, std::u16string_view key, std::u16string_view value) {
    Dispatch(kOptionKeys, "[Options]", t, key, value);
}

void EnterFoldOptions(TSyxTarget& t) {
    TStyles& s = t.Styles;
    s.FNodeOpt_Case = false;
    s.FNodeOpt_AlwaysAllowNesting = false;
    s.FNodeOpt_AllowedWordSymbols.clear();
    s.FNodeOpt_FoldLineComments = true;
    s.FNodeOpt_FoldOnIndention = true;
}

void ReadFoldOptionsLine(TSyxTarget& t, std::u16string_view key, std::u16string_view value) {
    Dispatch(kFoldOptionKeys, "[FoldOptions]", t, key, value);
}

void ResetForLoad(TSyxTarget& t) {
    TStyles& s = t.Styles;
    t.Names = TSyxNames{};
    s.FCharSymbol = s.FStringSymbol = 0;
    s.FSymbols.clear();
    s.FNumericChars.clear(); // a syntax that wants numbers states "Numbers"
    s.FStringLine = s.FCharVerbatim = s.FAutoCompleteTags = s.FAddProjectClassesToCompletion =
        false;
    s.FNumbersAsSymbols = false;
    s.FAllowCmdEF = s.FAllowCmdIN = s.FAllowCmdLF = false;
    if (t.Memo) {
        t.Memo->CaseSensitive = false;
        t.Memo->FTagsCaseSensitive = false;
        // Tag mode and URL recognition belong to the syntax, so a new load starts without.
        t.Memo->IsHtml = t.Memo->FXML = t.Memo->FUrlAware = t.Memo->FAutoCompletionTags = false;
    }
}

} // namespace zv
