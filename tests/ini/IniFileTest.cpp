// The in-memory settings file: lookups, typed values, the file form and its order.
#include "IniTestSupport.h"

#include "shell/IniValues.h"
#include "shell/ZvIniFiles.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zv {
namespace {

TMemIniFileW FromUtf8(std::string_view text, TIniEncoding enc = TIniEncoding::Utf16LE) {
    TMemIniFileW ini({}, enc);
    ini.LoadFromBytes(text);
    return ini;
}

TEST(MemIniFile, FirstDuplicateWinsAndBothSurvive) {
    auto ini = FromUtf8("[A]\nk=first\nK=second\n");
    EXPECT_EQ(ini.ReadString("A", "k", ""), "first");
    ini.WriteString("A", "k", "changed");
    const auto values = ini.ReadSectionValues("A");
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(values[0], u"k=changed");
    EXPECT_EQ(values[1], u"K=second");
    ini.DeleteKey("A", "K");
    EXPECT_EQ(ini.ReadString("A", "k", ""), "second");
}

// The text forms of each type are the value tests' job; here the readers' fallbacks and
// the writers' forms.
TEST(MemIniFile, TypedValues) {
    auto ini = FromUtf8("[V]\nbad=12x\nf=0\nt=yes\nempty=\n");
    EXPECT_EQ(ini.ReadInteger("V", "bad", 7), 7);
    EXPECT_FALSE(ini.ReadBool("V", "f", true));
    EXPECT_TRUE(ini.ReadBool("V", "t", false));
    EXPECT_TRUE(ini.ReadBool("V", "empty", true));
    EXPECT_FALSE(ini.ReadBool("V", "empty", false));
    const TDateTime when = *ParseIniDateTime(u"2024-02-29T12:45:10.250Z");
    ini.WriteInteger("V", "colour", -16777201);
    ini.WriteBool("V", "b", true);
    ini.WriteDateTime("V", "d", when);
    EXPECT_EQ(ini.ReadInteger("V", "colour", 0), -16777201);
    EXPECT_EQ(ini.ReadString("V", "b", ""), "1");
    EXPECT_EQ(ini.ReadDateTime("V", "d", {}), when);
}

TEST(MemIniFile, WritesCanonicalFormInOrder) {
    auto ini = FromUtf8("junk before\n[B]\nx=1\n\n\n[A]\n;note=1\nbare\ny=2", TIniEncoding::Utf8);
    ini.WriteString("A", "z", "3");
    ini.WriteString("C", "w", "4");
    EXPECT_EQ(ini.SaveToBytes(),
              "[B]\r\nx=1\r\n\r\n[A]\r\n;note=1\r\nbare\r\ny=2\r\nz=3\r\n\r\n[C]\r\nw=4\r\n\r\n");
    EXPECT_FALSE(ini.ValueExists("A", ";note"));
}

TEST(MemIniFile, LineEndsInWrittenTextCannotSplitTheFile) {
    TMemIniFileW ini;
    ini.WriteString("Search", "FindString", "a\r\n[Customize]\nLoadInTab=0");
    ini.WriteString("New\nSection", "k", "v");
    TMemIniFileW read;
    read.LoadFromBytes(ini.SaveToBytes());
    EXPECT_EQ(read.ReadSections(), (std::vector<std::u16string>{u"Search", u"New Section"}));
    EXPECT_EQ(read.ReadString("Search", "FindString", ""), "a  [Customize] LoadInTab=0");
}

TEST(MemIniFile, WideStringReadersTreatEmptyAsMissing) {
    auto ini = FromUtf8("[Menu]\nOpen=&Open...\nBlank=\n");
    std::u16string value;
    EXPECT_TRUE(ini.ReadWideStringHint("Menu", "Open", u"x", value));
    EXPECT_EQ(value, u"Open...");
    EXPECT_FALSE(ini.ReadWideString("Menu", "Blank", u"fallback", value));
    EXPECT_EQ(value, u"fallback");
    EXPECT_FALSE(ini.ReadWideString("Menu", "Missing", u"", value));
}

TEST(ZvMemIniFile, SectionsMoveRenameSortAndReplace) {
    TZvMemIniFile ini;
    ini.SetStrings({u"[A]", u"b=2", u"a=1", u"", u"[B]", u"x=1", u"[C]", u"y=1"});
    EXPECT_TRUE(ini.MoveSectionUp("c"));
    EXPECT_FALSE(ini.MoveSectionUp("A"));
    EXPECT_TRUE(ini.MoveSectionDown("A"));
    EXPECT_FALSE(ini.MoveSectionDown("B"));
    EXPECT_EQ(ini.ReadSectionNames(), (std::vector<std::u16string>{u"C", u"A", u"B"}));
    EXPECT_FALSE(ini.RenameSection("A", "b"));
    EXPECT_TRUE(ini.RenameSection("A", "Z"));
    EXPECT_EQ(ini.ReadInteger("z", "B", 0), 2);
    EXPECT_TRUE(ini.SortSection("Z"));
    EXPECT_EQ(ini.ReadSection("Z"), (std::vector<std::u16string>{u"a", u"b"}));
    ini.SetSection("B", {u"q=9", u""});
    EXPECT_EQ(ini.GetStrings(), (std::vector<std::u16string>{u"[C]", u"y=1", u"", u"[Z]", u"a=1",
                                                             u"b=2", u"", u"[B]", u"q=9", u""}));
    ini.EraseSection("Z");
    EXPECT_FALSE(ini.SectionExists("z"));
    EXPECT_EQ(ini.ReadInteger("B", "q", 0), 9); // indexes stay right after the erase
}

TEST(ZvMemIniFile, RenameWritesElsewhereOrReadsThatFile) {
    const test::TTempDir temp;
    const auto& dir = temp.Path();
    TZvMemIniFile ini(dir / "a.ini");
    ini.WriteString("S", "k", "from a");
    ini.Rename(dir / "b.ini", false);
    ASSERT_TRUE(ini.UpdateFile());
    EXPECT_FALSE(std::filesystem::exists(dir / "a.ini"));
    TZvMemIniFile other(dir / "c.ini");
    other.Rename(dir / "b.ini", true);
    EXPECT_EQ(other.LoadStatus(), TIniLoadStatus::Loaded);
    EXPECT_EQ(other.ReadString("S", "k", ""), "from a");
    other.Clear();
    EXPECT_EQ(other.Reload(), TIniLoadStatus::Loaded);
    EXPECT_TRUE(other.SectionExists("s"));
}

TEST(HashedStringList, LookupsStayRightThroughEveryChange) {
    THashedStringList list;
    for (const char16_t* line : {u"one=1", u"Two=2", u"three", u"ONE=dup", u";one=c"})
        list.Add(line);
    EXPECT_EQ(list.IndexOfName("one"), 0);
    EXPECT_EQ(list.IndexOfName(";one"), -1);
    EXPECT_EQ(list.IndexOf(u"THREE"), 2);
    list.Delete(0);
    EXPECT_EQ(list.IndexOfName("one"), 2);
    list.Move(2, 0);
    EXPECT_EQ(list.IndexOfName("ONE"), 0);
    list.SetString(0, u"four=4");
    EXPECT_EQ(list.IndexOfName("one"), -1);
    EXPECT_EQ(list.IndexOf("four=4"), 0);
    list.Insert(0, u"one=new");
    EXPECT_EQ(list.IndexOfName("Two"), 2);
    list.Sort();
    EXPECT_EQ(list.Strings(list.IndexOfName("four")), u"four=4");
    EXPECT_EQ(list.ValueFromIndex(list.IndexOfName("one")), u"new");
}

} // namespace
} // namespace zv
