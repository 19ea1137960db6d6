// The converter of the older single-file format: its output, written through a settings
// file, must read back through the ".syx" reader to the same definitions.
#include "SyntaxTestFiles.h"

#include "shell/ZvIniFiles.h"
#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::TTempDir;
using test::U16;
using test::WriteFile;

class TIniWriter : public IKeyValueWriter {
public:
    explicit TIniWriter(TMemIniFileW& ini) : FIni(ini) {}
    void WriteString(std::u16string_view s, std::u16string_view k, std::u16string_view v) override {
        FIni.WriteString(s, k, v);
    }
    void WriteBool(std::u16string_view s, std::u16string_view k, bool v) override {
        FIni.WriteBool(s, k, v);
    }

private:
    TMemIniFileW& FIni;
};

constexpr std::string_view kOldFile = "{$HTML;html.syx}\n"
                                      "{A sample language}\n"
                                      "{second line}\n"
                                      "[Options]\n"
                                      "LineCommentA = \"//\"   ; the comment opener\n"
                                      "CommentStartA=\"/*\"\n"
                                      "CommentEndA=\"*/\"\n"
                                      "String=\"\\\"\"\n"
                                      "CaseSensitive=yes\n"
                                      "StringOnLine=No\n"
                                      "Symbols=\"+-;\" // quoted semicolon stays\n"
                                      "BlockName=Pre\n"
                                      "BlockStart=#\n"
                                      "BlockOnLine=y\n"
                                      "Fold_Id=class\n"
                                      "Fold_List_Item=ceClass\n"
                                      "HereDocSymbol=<<\n"
                                      "[End]\n"
                                      "[Keywords]\n"
                                      ">Reserved\n"
                                      "\"if\"\n"
                                      "\"\\while\"\n"
                                      ">\n"
                                      "unnamed\n"
                                      "[End]\n"
                                      "[Tags]\n"
                                      "; nothing but a comment\n"
                                      "[End]\n"
                                      "[AutoComplete]\n"
                                      "document\n"
                                      "->\"write\"|\"write(#12)\"+m\n"
                                      "->\"close\"\n"
                                      "[End]\n"
                                      "[AutoHint]\n"
                                      "\"alert(\\\"text\\\")\"\n"
                                      "[End]\n"
                                      "[BeginSample]\n"
                                      "if x // kept as is\n"
                                      "[EndSample]\n";

TEST(ConvertToNew, OlderFormatReadsBackThroughTheReader) {
    TTempDir dir;
    const auto old = WriteFile(dir.Path() / "old.txt", kOldFile);
    TMemIniFileW syx, companion;
    TIniWriter syxWriter(syx), companionWriter(companion);
    TZvSyntax syntax;
    ASSERT_TRUE(syntax.ConvertToNew(U16(old), syxWriter, companionWriter));

    EXPECT_EQ(companion.ReadString("MultiHighlight", "Syntax", u""), u"HTML");
    EXPECT_EQ(companion.ReadString("MultiHighlight", "File", u""), u"html.syx");
    EXPECT_EQ(companion.ReadString("Comment", "2", u""), u"second line");
    EXPECT_EQ(companion.ReadString("AutoComplete", "document", u""),
              u"write|write(#12)+m##close|+p");
    EXPECT_EQ(companion.ReadString("Hints", "1", u""), u"alert(text)");
    EXPECT_EQ(companion.ReadString("Sample", "1", u""), u"if x // kept as is");
    EXPECT_FALSE(syx.SectionExists("Tags")); // entered only when content follows

    // The written file is a ".syx": read it back.
    WriteFile(dir.Path() / "new.syx", syx.SaveToBytes());
    TMemoStyleHost memo;
    ASSERT_TRUE(syntax.LoadStyleFromFile(&memo, U16(dir.Path() / "new.syx"), u"N", 0, u""));
    const auto& s = *memo.FStyles;
    EXPECT_EQ(s.FLineCommentA, u"//");
    EXPECT_EQ(s.FCommentEndA, u"*/");
    EXPECT_EQ(s.FStringSymbol, u'"');
    EXPECT_EQ(s.FSymbols, u"+-;");
    EXPECT_TRUE(s.FKeywordCase);
    EXPECT_FALSE(s.FStringLine);
    ASSERT_EQ(s.FBlocks.size(), 1u);
    EXPECT_EQ(s.FBlocks[0].Start, u"#");
    EXPECT_TRUE(s.FBlocks[0].LineBlock);
    ASSERT_EQ(s.FNodes.size(), 1u);
    EXPECT_EQ(s.FNodes[0].list_Item, ceClass);
    ASSERT_EQ(s.FKeyWords.size(), 2u);
    EXPECT_EQ(s.FKeyWords[0].Name, u"Reserved");
    EXPECT_EQ(s.FKeyWords[0].KeyWords.Words(), (std::vector<std::u16string>{u"if", u"while"}));
    EXPECT_EQ(s.FKeyWords[1].Name, u"2"); // a group without a name gets its number
}

TEST(ConvertToNew, EmptyFileGivesNoOutputAndMissingFileFails) {
    TTempDir dir;
    TMemIniFileW syx, companion;
    TIniWriter a(syx), b(companion);
    TZvSyntax syntax;
    ASSERT_TRUE(syntax.ConvertToNew(U16(WriteFile(dir.Path() / "e.txt", "")), a, b));
    EXPECT_TRUE(syx.ReadSections().empty());
    EXPECT_TRUE(companion.ReadSections().empty());
    EXPECT_FALSE(syntax.ConvertToNew(U16(dir.Path() / "none.txt"), a, b));
}

} // namespace
} // namespace zv
