// Every key of a definition file that is about colouring changes what is painted: each case
// loads a small definition without the key and with it, paints the same text through the
// scanner with the shipped colours, and the two must differ. Keys about completion,
// indentation, auto-closing and folding change no colour and are not listed.
#include "ScanTestSupport.h"
#include "syntax/TypeColors.h"

namespace zv::test {
namespace {

struct TKeyCase {
    const char* Key;          // what the case is about
    const char* Options;      // [Options] lines both definitions hold
    const char* OptionsWith;  // [Options] lines of the second one only
    const char* Sections;     // sections both hold, behind [Options] and the keyword group
    const char* SectionsWith; // lines of the second one only: a section of their own when
                              // they begin with a header, else lines of the last section
    const char* Text;         // painted by both
};

// Options every case starts from (no Numbers: digits are text), and one keyword group.
constexpr const char* kFrame = "[Options]\nSymbols=;=(){}+:<>\n";
constexpr const char* kKeywords = "\n[Keywords]\nReserved=if|int|span\n";

const TKeyCase kKeys[] = {
    {"LineCommentA", "", "LineCommentA=//\n", "", "", "a // b"},
    {"LineCommentB", "", "LineCommentB=--\n", "", "", "a -- b"},
    {"CommentStartA", "CommentEndA=*/\n", "CommentStartA=/*\n", "", "", "a /* b */ c"},
    {"CommentEndA", "CommentStartA=/*\n", "CommentEndA=*/\n", "", "", "a /* b */ c"},
    {"CommentEndA -line", "CommentStartA=<!--\n", "CommentEndA=--> -line\n", "", "",
     "<!-- a --> b\nc"},
    {"CommentStartB", "CommentEndB=*)\n", "CommentStartB=(*\n", "", "", "a (* b *) c"},
    {"CommentEndB", "CommentStartB=(*\n", "CommentEndB=*)\n", "", "", "a (* b *) c"},
    {"CommentDocA", "CommentStartA=/*\nCommentEndA=*/\n", "CommentDocA=/**\n",
     "[Keywords]\n?Doc=@param\n", "", "/** d */"},
    {"CommentDocB", "CommentStartA=/*\nCommentEndA=*/\n", "CommentDocB=/*!\n",
     "[Keywords]\n?Doc=@param\n", "", "/*! d */"},
    {"AllowNestedComments", "CommentStartA=/*\nCommentEndA=*/\n", "AllowNestedComments=1\n", "", "",
     "/* a /* b */ c */ int"},
    {"OnlyLineCommentIfFirstChar", "LineCommentA=#\n", "OnlyLineCommentIfFirstChar=1\n", "", "",
     "a # b"},
    {"OnlyLineCommentIfFirstCharA", "LineCommentA=#\n", "OnlyLineCommentIfFirstCharA=2\n", "", "",
     " # b"},
    {"OnlyLineCommentIfFirstCharB", "LineCommentB=#\n", "OnlyLineCommentIfFirstCharB=1\n", "", "",
     "a # b"},
    {"Char", "", "Char='\n", "", "", "a 'b' c"},
    {"String", "", "String=\"\n", "", "", "a \"b\" c"},
    {"String2", "", "String2=`\n", "", "", "a `b` c"},
    {"StringOnLine", "String=\"\n", "StringOnLine=1\n", "", "", "a \"b\nint"},
    {"VerbatimStringStart", "String=\"\nEscape=\\\n", "VerbatimStringStart=@\n", "", "",
     "@\"a\\\" int"},
    {"CharVerbatim", "Char='\nEscape=\\\n", "CharVerbatim=1\n", "", "", "'a\\' int '"},
    {"Escape", "String=\"\n", "Escape=\\\n", "", "", "\"a\\\" int \""},
    {"AllowEscapeOutsideString", "String=\"\nEscape=\\\n", "AllowEscapeOutsideString=1\n", "", "",
     "a \\\" int"},
    {"HexIdentifier", "Numbers=0123456789\n", "HexIdentifier=$\n", "", "", "x = $FF"},
    {"Symbols", "", "Symbols=*\n", "", "", "a * b"},
    {"Numbers", "", "Numbers=0123456789\n", "", "", "x = 12"},
    {"DigitSeparator", "Numbers=0123456789\n", "DigitSeparator='\n", "", "", "x = 1'000"},
    {"Case", "", "Case=1\n", "", "", "IF"},
    {"HighlightUrl", "", "HighlightUrl=1\n", "", "", "see http://example.org/a"},
    {"SymbolWordsA", "", "SymbolWordsA=:=\n", "", "", "a := b"},
    {"SymbolWordsB", "", "SymbolWordsB=<>\n", "", "", "a <> b"},
    {"SymbolWordsC", "", "SymbolWordsC=++\n", "", "", "a ++ b"},
    {"HereDocSymbol", "", "HereDocSymbol=<<\n", "", "", "cat <<EOF\nint\nEOF"},
    {"HereDocBlank", "HereDocSymbol=<<\n", "HereDocBlank=1\n", "", "", "cat << EOF\nint\nEOF"},
    {"RawStringParen", "String=\"\n", "RawStringParen=R\n", "", "", "R\"(a\" int)\""},
    {"RawStringHash", "String=\"\n", "RawStringHash=r\n", "", "", "r#\"a\" int\"#"},
    {"Interpolation", "String=\"\nString2=`\n", "Interpolation=${\n", "", "", "`a ${`b`} int`"},
    {"FormatStringPrefix", "String=\"\n", "FormatStringPrefix=f\n", "", "", "f\"{a[\"b\"]} int\""},
    {"SlashRegex", "String=\"\n", "SlashRegex=1\n", "", "", "x = /a\"b/; int"},
    {"JsxTags", "String=\"\n", "JsxTags=1\n", "", "", "x = <p>\"a</p>; int"},
    {"QuoteWords", "", "QuoteWords=q qw\n", "", "", "qw/a b/"},
    {"SubstituteWords", "", "SubstituteWords=s\n", "", "", "s/a/b/g"},
    {"LongBrackets", "LineCommentA=--\n", "LongBrackets=1\n", "", "", "--[==[ a\nint ]==] b"},
    {"PercentLiterals", "", "PercentLiterals=1\n", "", "", "x = %w[int if]"},
    {"StringOnlyAfter", "String=\"\n", "StringOnlyAfter=:\n", "", "", "a: b \"int\""},
    {"CharShort", "Char='\n", "CharShort=1\n", "", "", "f<'a> int 'x'"},
    {"QuoteStringsOnLine", "String=\"\n", "QuoteStringsOnLine=1\n", "", "", "a \"b\nint"},
    {"WordChars", "", "WordChars=-\n", "[Keywords]\nProperties=font-size\n", "", "font-size"},
    {"BlockEsc", "", "BlockEsc=\\\n", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n", "", "\\<% int"},
    {"CommentEsc", "CommentStartA=/*\nCommentEndA=*/\n", "CommentEsc=\\\n", "", "", "\\/* int"},
    {"EndOpenBlockAt", "", "EndOpenBlockAt=;\n",
     "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\nB_HighlightKeywords=0\n", "", "<% a ; int"},
    {"OnlyHighlightInBlock", "", "OnlyHighlightInBlock=1\n", "", "", "int"},
    {"AutoCompleteTags", "", "AutoCompleteTags=1\n", "", "", "<a> int"},
    {"AllowHighlightBetweenTags", "", "AllowHighlightBetweenTags=1\n", "[Tags]\nT=a\n", "",
     "<a> int"},
    {"CaseTags", "", "CaseTags=1\n", "[Tags]\nT=a\nU=SPAN\n", "", "<span>"},
    {"Block Name/Start/End", "", "", "", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n", "<% a %> b"},
    {"Block OnLine", "", "", "[Block]\nB_Name=B\nB_Start=<%\n", "B_OnLine=1\n", "<% a\nb"},
    {"Block AsString", "", "", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n", "B_AsString=1\n",
     "<% int %>"},
    {"Block AsString, a line block without End", "Symbols=;\n", "",
     "[Block]\nB_Name=B\nB_Start=<%\nB_OnLine=1\n", "B_AsString=1\n", "<% int ; 1"},
    {"Block FirstOnLine", "", "", "[Block]\nB_Name=B\nB_Start=#\nB_OnLine=1\n", "B_FirstOnLine=1\n",
     "a # b"},
    {"Block OnlyAfter", "", "", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n", "B_OnlyAfter==\n",
     "a <% b %>"},
    {"Block HighlightKeywords", "", "", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n",
     "B_HighlightKeywords=0\n", "<% int %>"},
    {"Block HighlightSymbols", "", "", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n",
     "B_HighlightSymbols=0\n", "<% a ; b %>"},
    {"Block HighlightBlocks", "String=\"\n", "", "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n",
     "B_HighlightBlocks=0\n", "<% \"a\" %>"},
    {"Block HighlightBlocks, a nested block", "", "",
     "[Block]\nC_Name=C\nC_Start=[\nC_End=]\nB_Name=B\nB_Start=<%\nB_End=%>\n",
     "B_HighlightBlocks=0\n", "<% [a] %>"},
    {"Block HighlightNumbers", "Numbers=0123456789\n", "",
     "[Block]\nB_Name=B\nB_Start=<%\nB_End=%>\n", "B_HighlightNumbers=0\n", "<% 12 %>"},
    {"Block regular expression", "", "", "", "[Block]\n#B_Name=#B\n#B_Start=@[a-z]+\n#B_End=;\n",
     "@abc x; y"},
    {"Keywords group", "", "", "", "[Keywords]\nMore=while\n", "while"},
    {"Keywords regular expression", "", "", "", "[Keywords]\n#Var=\\$[a-z]+\n", "x = $abc"},
    {"Keywords documentation group", "CommentStartA=/*\nCommentEndA=*/\nCommentDocA=/**\n", "", "",
     "[Keywords]\n?Doc=@param\n", "/** d */"},
    {"Tags", "", "", "", "[Tags]\nT=a\n", "<a> x"},
    {"Tags group colour", "", "", "[Tags]\nT=a\n", "U=b\n", "<b>"},
};

// The colour and font of every character of `text` as painted by a definition file.
std::vector<std::pair<TColor, TFontStyles>> Painted(const std::filesystem::path& syx,
                                                    std::u16string_view text) {
    const TTypeColors colors(ShippedSyntaxFolder() / "Colors.ini", nullptr, u"Light");
    TZvSyntax loader;
    loader.SetColorSource(&colors);
    TMemoStyleHost host;
    EXPECT_TRUE(loader.LoadStyleFromFile(&host, U16(syx), u"Test", 1, u""));
    for (const std::string& w : loader.Warnings)
        ADD_FAILURE() << syx.filename() << ": " << w;
    TZvMemoStrings store;
    store.SetTextStr(text);
    const TScanContext ctx(host, TScanOptions{});
    TLineScanner scanner(store, ctx);
    std::vector<std::pair<TColor, TFontStyles>> out;
    for (int row = 0; row < store.Count(); ++row) {
        const auto runs = RowRuns(scanner, row);
        for (int x = 0; x < int(store.Get(row).size()); ++x) {
            const TColourRun* run = RunAt(runs, x);
            const TCharStyle style = run ? RunStyle(*run, {}) : TCharStyle{};
            out.emplace_back(style.FTextColor, style.FStyle);
        }
    }
    return out;
}

TEST(SyxKeyPaint, EveryColouringKeyChangesWhatIsPainted) {
    TTempDir temp;
    for (const TKeyCase& c : kKeys) {
        auto build = [&](bool with) {
            std::string s = std::string(kFrame) + c.Options + (with ? c.OptionsWith : "") +
                            kKeywords + (*c.Sections ? "\n" : "") + c.Sections;
            if (with && *c.SectionsWith)
                s += std::string(*c.SectionsWith == '[' ? "\n" : "") + c.SectionsWith;
            return s;
        };
        const auto without = WriteFile(temp.Path() / "without.syx", build(false));
        const auto with = WriteFile(temp.Path() / "with.syx", build(true));
        const std::u16string text = Utf8ToUtf16(c.Text);
        EXPECT_NE(Painted(without, text), Painted(with, text))
            << c.Key << " changes nothing in \"" << c.Text << "\"\n--- with:\n"
            << build(true);
    }
}

} // namespace
} // namespace zv::test
