// The keywords of a followed log: read from their ini file in its order, each line takes the
// first keyword it holds, by plain text, folded case or regular expression.
#include "shell/TailKeywords.h"
#include "shell/ZvIniFiles.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kIni = "[ERROR]\r\nColorText=$FFFFFF\r\nColorBk=$0000FF\r\nBold=1\r\n"
                             "[warn]\r\nIgnoreCase=1\r\nColorText=$00A5FF\r\nItalic=1\r\n"
                             "[^\\d+ ms$]\r\nRegEx=1\r\nColorBk=$00FF00\r\nTransparent=1\r\n"
                             "Underline=1\r\n"
                             "[(unclosed]\r\nRegEx=1\r\nColorBk=$FF0000\r\n";

zv::TTailKeywords Keywords() {
    zv::TMemIniFileW ini;
    ini.LoadFromBytes(kIni);
    return zv::TTailKeywords(ini);
}

TEST(TailKeywords, EachLineTakesTheFirstKeywordItHoldsInFileOrder) {
    const zv::TTailKeywords keywords = Keywords();
    ASSERT_EQ(keywords.Keywords().size(), 3u) << "a bad expression is left out";
    const zv::TCharStyle* error = keywords.Match(u"12:00 ERROR disk full");
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->FBkColor, 0x0000FFu);
    EXPECT_EQ(error->FTextColor, 0xFFFFFFu);
    EXPECT_EQ(error->FStyle, zv::fsBold);
    // Both keywords: the one first in the file wins.
    EXPECT_EQ(keywords.Match(u"Warning: ERROR follows"), error);
    const zv::TCharStyle* warn = keywords.Match(u"a WARNING here");
    ASSERT_NE(warn, nullptr) << "IgnoreCase";
    EXPECT_EQ(warn->FStyle, zv::fsItalic);
    EXPECT_EQ(warn->FBkColor, zv::kNoColor);
    EXPECT_EQ(keywords.Match(u"an error in lower case"), nullptr) << "case counts by default";
    const zv::TCharStyle* timing = keywords.Match(u"250 ms");
    ASSERT_NE(timing, nullptr) << "RegEx";
    EXPECT_EQ(timing->FBkColor, zv::kNoColor) << "Transparent drops the back colour";
    EXPECT_EQ(timing->FStyle, zv::fsUnderline);
    EXPECT_EQ(keywords.Match(u"took 250 ms"), nullptr) << "anchored expression";
    EXPECT_EQ(keywords.Match(u""), nullptr);
    EXPECT_EQ(keywords.Match(u"(unclosed"), nullptr);
}

TEST(TailKeywords, TheFileUnderTheRootIsReadAndAMissingOneGivesNone) {
    zvtest::TTempDir root("zv-tailkw");
    EXPECT_TRUE(zv::MemoGetFollowTailOptions(root.Path())->Empty());
    std::filesystem::create_directories(root / "Data");
    zvtest::WriteAll(root / "Data" / "TailKeywords.ini", kIni);
    const auto keywords = zv::MemoGetFollowTailOptions(root.Path());
    EXPECT_EQ(keywords->Keywords().size(), 3u);
    EXPECT_NE(keywords->Match(u"ERROR"), nullptr);
}

} // namespace
