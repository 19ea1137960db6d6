// TZvCustomMemoStyles: the in-memory form of one syntax - what its definition file says, the
// colours of its type, and the tables the scanner and the painter walk. After a load the set
// is immutable; any number of threads may read it at once (keyword tables carry both case
// variants, and regular expressions are compiled at load).
#pragma once

#include "ZvMemoControl/KeywordTable.h"
#include "ZvMemoControl/StyleRegex.h"
#include "ZvMemoControl/StyleTypes.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zv {

class TMemIniFileW;
class TCssHelp;

using TStringList = std::vector<std::u16string>;

// A keyword or tag group: one line of [Keywords] or [Tags].
struct TKeyWord {
    std::u16string Name;
    TKeywordTable KeyWords; // empty for a regular-expression group
    std::u16string Info;    // colour key: "Keywords" or "Tags" and the group number
    std::int32_t Boldness = 0;
    TColor Color = kNoColor;
    TColor ColorBk = kNoColor;
    TFontStyles Style = 0;
    bool RegEx = false;
    std::u16string sRegEx;
    std::shared_ptr<const TStyleRegex> CompiledRegEx; // set by CompileRegExes when RegEx
};

// A block of [Block]; a name beginning "#" makes Start and Stop regular expressions.
struct TBlock {
    std::u16string Name, OnlyAfter, Start, Stop;
    TColor Color = kNoColor;
    TColor ColorBk = kNoColor;
    std::int32_t Boldness = 0;
    TFontStyles Style = 0;
    bool ForceColor = false;
    bool LineBlock = false;
    bool FirstOnLine = false;
    bool HighlightKeywords = true;
    bool HighlightSymbols = true;
    bool HighlightBlocks = true;
    bool HighlightNumbers = true;
    bool HighlightStrings = true;
    bool HighlightChars = true;
    std::shared_ptr<const TStyleRegex> StartRegEx, StopRegEx; // "#" blocks only

    bool IsRegEx() const { return !Name.empty() && Name[0] == u'#'; }
};

// A fold definition of [Fold]. wStart and wEnd hold the alternatives, one to a line.
struct TNodes {
    std::u16string wId, wStart, wEnd, Name;
    std::int32_t nIndent = 0;
    TCEListItemType list_Item = ceNone;
    TNodeLevelType level = nltNone;
};

struct THintParameter {
    TColor FTextColor = kNoColor;
    TColor FBkColor = kNoColor;
    char16_t FStartchar = 0, FEndchar = 0, FDelimiterchar = 0, FWritedelimiterchar = 0;
    TStringList FParameters; // "word=hint" lines of the companion's "Hints"
};

// One entry of a completion or menu list.
struct TCompletionItem {
    std::u16string Name;   // what the list shows and sorts by
    std::u16string Insert; // text put into the document
    std::u16string Detail; // extra description
    char16_t Icon = 0;     // icon letter; 0 for none
};
using TCompletionList = std::vector<TCompletionItem>;

class TZvCustomMemoStyles {
public:
    // Stores the path and sets the default token styles; OpenCompanion reads the companion.
    explicit TZvCustomMemoStyles(std::u16string syntaxFile = {});
    ~TZvCustomMemoStyles();

    // Opens the companion file (the path with the extension ".ini") when it exists. Never
    // throws for a missing or unreadable companion: the set then has none.
    void OpenCompanion();
    TZvCustomMemoStyles(const TZvCustomMemoStyles&) = delete;
    TZvCustomMemoStyles& operator=(const TZvCustomMemoStyles&) = delete;

    // Compiles every "#" keyword group and block; returns one message per bad expression.
    // Called once by the loader after reading, before the set is shared.
    std::vector<std::string> CompileRegExes();

    // Index of the first keyword group (file order) holding the word, or -1. Regular-expression
    // groups are not asked here. No allocation.
    int FindKeyword(std::u16string_view word, bool caseSensitive) const noexcept;
    int FindTag(std::u16string_view name, bool caseSensitive) const noexcept;

    // Completion data from the companion file; all do nothing without one.
    // A "@" reference to itself recurses without end: definition files must not do that
    // (references deeper than 32 levels are cut off). In a CSS-family syntax a key without
    // "@" is a property, answered with its values from the CSS help file, and the user menu
    // lists the help file's properties.
    void LoadKeyList(std::u16string_view section, std::u16string_view key, TCompletionList& list);
    void LoadTagList(TCompletionList& list);
    void LoadStopTagList(TCompletionList& list);
    void LoadHintList();
    void LoadUserMenu(TCompletionList& list, bool skipFlag);
    void LoadSection(std::u16string_view section, TStringList& list) const;
    // The numbered lines "1", "2", ... of a companion section, up to the first missing number.
    TStringList ReadNumberedSection(std::u16string_view section) const;
    TCompletionItem CreateBitmap(char16_t iconChar) const;
    bool HasCompanion() const { return SynIni != nullptr; }
    bool IsCssFamily() const;

    // The hint while a CSS value is typed (TCssHelp::Hint); empty outside a CSS-family syntax.
    std::u16string LoadCSSHint(std::u16string_view property, std::u16string_view value);
    // The CSS help file (the definition's path with ".xml", else "css.xml" beside it), parsed
    // on first use.
    const TCssHelp& CssHelp();

    // Identity
    std::u16string FSyntaxName, FSyntaxPathName, FFileName;
    // The language this set colours in a multi-syntax document. Rewritten by the region switch
    // of both the painter and the scanner, hence atomic.
    std::atomic<TScriptType> ScriptType = scNone;
    std::shared_ptr<const TMemIniFileW> SynIni; // companion file; may be null

    // Text colours
    TColor FTextColor = 0, FTextColorBK = 0xFFFFFF, FBkColor = 0xFFFFFF;
    TFontStyles FTextStyle = 0;
    std::int32_t FTextBoldness = 0;
    TColor FSelColor = kNoColor, FSelBkColor = kNoColor;
    TColor FSyncEditColor = kNoColor, FSyncEditBkColor = kNoColor;
    TColor FControlCharColor = kNoColor, FControlCharColorBk = kNoColor;
    bool FControlCharFollowSyntax = false, FCustomDraw = false;

    // Token styles
    TCharStyle FCharStyle, FStringStyle, FCommentStyle, FLineCommentStyle, FNumberStyle,
        FHexNumberStyle, FSymbolsStyle, FSymbolWordsAStyle, FSymbolWordsBStyle, FSymbolWordsCStyle,
        FAttributeName, FAttributeValue, FFoldMarkStyle;

    // Keywords
    std::vector<TKeyWord> FKeyWords;
    bool FKeywordCase = false, FHasRegExKeywords = false;

    // Tags
    std::vector<TKeyWord> FTags;
    bool FTagCase = false;
    TColor FTagColor = kNoColor, FTagColorBk = kNoColor;
    TFontStyles FTagStyle = 0;
    std::int32_t FTagBoldness = 0;
    TCompletionList FTagList, FEndTagList;

    // Blocks
    std::vector<TBlock> FBlocks;
    std::u16string FBlockEsc, FEndOpenBlockAt;
    bool FOnlyHighlightInBlock = false, FAllowHighlightBetweenTags = false;

    // Comments
    std::u16string FLineCommentA, FLineCommentB, FCommentStartA, FCommentEndA, FCommentStartB,
        FCommentEndB, FCommentDocA, FCommentDocB, FCommentEsc;
    bool FCommentEndA_Line = false, FCommentEndB_Line = false, FAllowNestedComments = false;
    bool FLineCommentIfFirstChar = false;
    std::int32_t FOnlyLineCommentIfFirstChar = 0, FOnlyLineCommentIfFirstCharB = 0;

    // Strings
    char16_t FCharSymbol = 0, FStringSymbol = 0, FString2Symbol = 0, FVerbatimStringStart = 0;
    bool FStringLine = false, FAllowEscapeOutsideString = false;
    bool FCharVerbatim = false; // strings of FCharSymbol know no escapes (shell single quotes)
    bool FCharShort = false;    // a character literal opens only when it closes within 12 units
                                // of its row (Rust's lifetime 'a is none)
    bool FQuoteStringsOnLine = false; // Char and String strings end with their row; String2 not
    // When set, a string opens only where the last non-blank in front of it on the row is one
    // of these characters, or there is none (YAML: a quote inside a plain scalar is text).
    std::u16string FStringOnlyAfter;
    std::u16string FEscape, FHereDocSymbol;
    bool FHereDocBlank = false; // a blank may stand between FHereDocSymbol and its word (shell)
    // Letters that, ending the word in front of a string opener, make a raw string:
    // FRawStringParen the form R"delim(...)delim", FRawStringHash the form r#"..."#.
    std::u16string FRawStringParen, FRawStringHash;
    std::u16string FInterpolation;      // opens code inside String2 strings ("${")
    std::u16string FFormatStringPrefix; // letters of a prefix whose strings hold {code} ("fF")
    bool FSlashRegex = false;   // regular expressions between slashes where an operand begins
    bool FJsxTags = false;      // JSX elements where an operand begins: tags, and text no code
    bool FLongBrackets = false; // [[...]] and [==[...]==] strings, and comments behind the
                                // line comment opener (Lua, CMake)
    // Blank-separated words that quote with the delimiter behind them: FQuoteWords with two
    // delimiters (q/../), FSubstituteWords with three (s/../../).
    std::u16string FQuoteWords, FSubstituteWords;
    bool FPercentLiterals = false; // %w[...], %Q(...) and their kin where an operand begins

    // Numbers and symbols
    std::u16string FNumericChars = u"0123456789", FHexIdentifier, FDigitSeparator, FSymbols;
    bool FNumbersAsSymbols = false;
    std::u16string FSymbolWordsA, FSymbolWordsB, FSymbolWordsC;
    std::u16string FWordChars; // characters that belong to words besides letters and digits

    // Folds
    std::vector<TNodes> FNodes;
    TStringList NodeIdWords;  // gathered while reading; NodeIdList is built from it
    TKeywordTable NodeIdList; // sorted, hashed: every fold and region word
    bool FNodeOpt_AlwaysAllowNesting = false, FNodeOpt_Case = false;
    bool FNodeOpt_FoldLineComments = false, FNodeOpt_FoldOnIndention = false;
    std::u16string FNodeOpt_AsBegin, FNodeOpt_DefaultBegin, FNodeOpt_DefaultEnd,
        FNodeOpt_AllowedWordSymbols, FNodeOpt_Sections, FNodeOpt_Seperators, FRgn_CommentStart;
    TStringList FNodeOpt_AutoIdExcludes, FRgn_Start, FRgn_End, FFoldListExclude;
    TColor FFoldHighlightColor = kNoColor, FFoldHighlightColor2 = kNoColor;

    // Structure lists
    std::u16string FList_Class, FList_Class_Separator, FList_Enum, FList_Method, FList_NS,
        FList_Property, FList_Struct;
    TStringList FCodeExplorerHintList;

    // Highlight colours
    TColor FBraceHighlightColor = kNoColor, FBraceHighlightColorE = kNoColor,
           FBraceHighlightTextColor = kNoColor, FBraceHighlightTextColorE = kNoColor;
    TFontStyles FBraceHighlightStyle = 0, FBraceHighlightStyleE = 0;
    bool FBraceHighlightBold = false, FBraceHighlightUnderline = false;
    TColor FLineHighlightColor = kNoColor, FLineHighlightBorderColor = kNoColor;
    TColor FHTMLTagHighlightColor1 = kNoColor, FHTMLTagHighlightColor2 = kNoColor,
           FHTMLTagHighlightColor3 = kNoColor, FXMLTagHighlightColor1 = kNoColor,
           FXMLTagHighlightColor2 = kNoColor, FXMLTagHighlightColor3 = kNoColor;

    // Embedded languages (file names from the multi-syntax file)
    std::u16string FHtmlHighlighterASP, FHtmlHighlighterCF, FHtmlHighlighterCSS, FHtmlHighlighterJS,
        FHtmlHighlighterPHP, FHtmlHighlighterVB;

    // Completion
    char16_t FAutoCompleteCharA = 0, FAutoCompleteCharB = 0, FAutoCompleteCharC = 0;
    std::int32_t FAutoCompleteSort = 0;
    bool FAutoCompleteTags = false, FAddProjectClassesToCompletion = false;
    TCompletionList FListAuto, FMenuList;
    THintParameter FHintParameter;
    TColor FHint1Color = kNoColor, FHint1ColorBk = kNoColor, FHint2Color = kNoColor,
           FHint2ColorBk = kNoColor, FHint3Color = kNoColor, FHint3ColorBk = kNoColor;
    std::u16string FAutoCloseBraceStart, FAutoCloseBraceEnd, FAutoCloseBlockStart,
        FAutoCloseBlockEnd, FFAutoCloseBlocksEnd;
    // Indentation: Enter indents deeper after these characters; FUseTabs: the language needs
    // tab characters for indentation (make), whatever the tab settings say.
    std::u16string FIndentAfter;
    bool FUseTabs = false;

    // CSS help: parsed once, on the main thread, when a CSS-family completion first needs it
    std::shared_ptr<const TCssHelp> FCSSXML;
    std::filesystem::file_time_type FCSSFileDate{}; // of the file parsed; zero when missing

    // Flags without a file key
    bool FAllowCmdEF = false, FAllowCmdIN = false, FAllowCmdLF = false;

private:
    void SetDefaultColors();
    void LoadKeyListDepth(std::u16string_view section, std::u16string_view key,
                          TCompletionList& list, int depth);
    bool FMenuLoaded = false;
};

} // namespace zv
