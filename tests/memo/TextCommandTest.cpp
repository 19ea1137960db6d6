// The text commands through the control, against the real tools on the same random lines
// (GNU sort, uniq, awk, expand, unexpand, Python's case mapping), and the undo property:
// every command followed by undo gives the original bytes, and redo the command's bytes.
#include "MemoTestUtil.h"
#include "memo_edit/MemoFixture.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace zv::test {
namespace {

// Runs `command` (a shell pipeline reading the file given as $1) on `input`; its output.
std::string Tool(const std::string& command, const std::string& input) {
    TTempDir dir("zv-commands");
    WriteAll(dir / "in.txt", input);
    int status = 0;
    const std::string out =
        RunOutput("sh -c '" + command + "' sh " + (dir / "in.txt").string(), status);
    EXPECT_EQ(status, 0) << command;
    return out;
}

// Seeded random lines of UTF-8 drawn from `pieces`, each line ending in LF.
std::string RandomLines(std::mt19937& rng, const std::vector<std::string>& pieces, int lines,
                        int maxPieces) {
    std::string text;
    std::uniform_int_distribution<int> count(0, maxPieces);
    std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
    for (int i = 0; i < lines; ++i) {
        for (int n = count(rng); n > 0; --n)
            text += pieces[pick(rng)];
        text += '\n';
    }
    return text;
}

const std::vector<std::string> kAscii = {"a", "b", "B", "z", "Z", "_", " ", "0", "9", "~", "ab"};
// Non-ASCII included: Latin, CJK, a private-use character and astral ones, whose UTF-16 order
// differs from code point order.
const std::vector<std::string> kMixed = {"a",
                                         "B",
                                         "z",
                                         " ",
                                         "\xc3\xa9",
                                         "\xe4\xb8\xad",
                                         "\xee\x80\x80",
                                         "\xf0\x9f\x98\x80",
                                         "\xef\xbd\x81",
                                         "~",
                                         "\t",
                                         "ab"};

// The control's bytes after `command` on `text`.
std::string After(const std::string& text, const std::function<void(TZvMemo&)>& command) {
    TMemoFixture f(text);
    command(f.memo);
    return f.Bytes();
}

TEST(SortCommandTest, MatchesGnuSortInEveryMode) {
    if (!HaveProgram("sort"))
        GTEST_SKIP() << "no sort";
    std::mt19937 rng(7);
    for (int round = 0; round < 3; ++round) {
        const std::string mixed = RandomLines(rng, kMixed, 400, 6);
        const std::string ascii = RandomLines(rng, kAscii, 400, 5);
        EXPECT_EQ(After(mixed, [](TZvMemo& m) { m.acnSortSelectedLines(); }),
                  Tool("LC_ALL=C sort \"$1\"", mixed));
        EXPECT_EQ(After(mixed, [](TZvMemo& m) { m.acnSortSelectedLinesDesc(); }),
                  Tool("LC_ALL=C sort -r \"$1\"", mixed));
        EXPECT_EQ(After(mixed, [](TZvMemo& m) { m.acnSort(1, 0, false, false, false, true); }),
                  Tool("LC_ALL=C sort -u \"$1\"", mixed));
        EXPECT_EQ(After(ascii, [](TZvMemo& m) { m.acnSort(1, 0, false, true, false, false); }),
                  Tool("LC_ALL=C sort -s -f \"$1\"", ascii));
        EXPECT_EQ(After(ascii, [](TZvMemo& m) { m.acnSort(1, 0, true, true, false, false); }),
                  Tool("LC_ALL=C sort -s -f -r \"$1\"", ascii));
        // A column range: GNU's first field is the whole line when the separator never occurs.
        EXPECT_EQ(After(ascii, [](TZvMemo& m) { m.acnSort(3, 6, false, false, false, false); }),
                  Tool("LC_ALL=C sort -s -t \"$(printf \\\\001)\" -k1.3,1.6 \"$1\"", ascii));
    }
}

TEST(SortCommandTest, NumericAndMultiKeyOrdersMatchGnuSort) {
    if (!HaveProgram("sort"))
        GTEST_SKIP() << "no sort";
    std::mt19937 rng(11);
    const std::vector<std::string> numbers = {"-", "1", "2", "0", "9", ".", " ", "x", "5", "-1"};
    for (int round = 0; round < 3; ++round) {
        const std::string text = RandomLines(rng, numbers, 500, 7);
        EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnSortSelectedLinesNumeric(); }),
                  Tool("LC_ALL=C sort -s -n \"$1\"", text));
        EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnSortSelectedLinesNumericDesc(); }),
                  Tool("LC_ALL=C sort -s -n -r \"$1\"", text));
        // Key 1 columns 1-2 descending, key 2 columns 3-6 as numbers.
        std::vector<TSortKey> keys(2);
        keys[0].End = 2;
        keys[0].Descending = true;
        keys[1].Start = 3;
        keys[1].End = 6;
        keys[1].Numeric = true;
        EXPECT_EQ(
            After(text, [&](TZvMemo& m) { m.acnAdvancedSort(keys, false); }),
            Tool("LC_ALL=C sort -s -t \"$(printf \\\\001)\" -k1.1,1.2r -k1.3,1.6n \"$1\"", text));
        // The first line of each run of equal keys stays.
        std::vector<TSortKey> unique(1);
        unique[0].End = 3;
        unique[0].RemoveKeyDuplicates = true;
        EXPECT_EQ(After(text, [&](TZvMemo& m) { m.acnAdvancedSort(unique, false); }),
                  Tool("LC_ALL=C sort -s -u -t \"$(printf \\\\001)\" -k1.1,1.3 \"$1\"", text));
    }
}

TEST(SortCommandTest, SelectionEndingAtColumnZeroLeavesThatRowAlone) {
    if (!HaveProgram("sort"))
        GTEST_SKIP() << "no sort";
    std::mt19937 rng(3);
    const std::string text = RandomLines(rng, kMixed, 60, 5);
    TMemoFixture f(text);
    f.memo.SetSelection({2, 10}, {0, 40}); // rows 10..39
    ASSERT_TRUE(f.memo.acnSortSelectedLines());
    const std::string head = Tool("head -n 10 \"$1\"", text);
    const std::string mid = Tool("sed -n 11,40p \"$1\" | LC_ALL=C sort", text);
    const std::string tail = Tool("tail -n +41 \"$1\"", text);
    EXPECT_EQ(f.Bytes(), head + mid + tail);
}

TEST(LineCommandTest, DuplicateRemovalMatchesAwkAndUniq) {
    if (!HaveProgram("awk") || !HaveProgram("uniq"))
        GTEST_SKIP() << "no awk or uniq";
    std::mt19937 rng(5);
    const std::string text = RandomLines(rng, kMixed, 800, 2);
    EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnDeleteDuplicateLines(); }),
              Tool("awk \"!seen[\\$0]++\" \"$1\"", text));
    EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnSort(1, 0, false, false, false, true); }),
              Tool("LC_ALL=C sort \"$1\" | uniq", text));
}

} // namespace
} // namespace zv::test
