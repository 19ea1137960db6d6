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

// GNU sort's key for `key` with the whole line as field 1 (the separator \001 never occurs).
std::string GnuKey(const TSortKey& key) {
    std::string k = " -k1." + std::to_string(key.Start);
    if (key.End > 0)
        k += ",1." + std::to_string(key.End);
    return k + (key.Numeric ? "n" : "") + (key.IgnoreCase ? "f" : "") + (key.Descending ? "r" : "");
}

TEST(SortCommandTest, FourKeysWithTheirOwnOptionsMatchGnuSortKeys) {
    if (!HaveProgram("sort") || !HaveProgram("uniq"))
        GTEST_SKIP() << "no sort or uniq";
    std::mt19937 rng(47);
    const std::vector<std::string> pieces = {"a", "A", "b", "B", "1", "2", "9", "-", ".", " ", "x"};
    const auto pick = [&rng](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(rng);
    };
    for (int round = 0; round < 25; ++round) {
        const std::string text = RandomLines(rng, pieces, 300, 9);
        std::vector<TSortKey> keys(static_cast<std::size_t>(pick(2, 4)));
        std::string command = "LC_ALL=C sort -s -t \"$(printf \\\\001)\"";
        for (TSortKey& key : keys) {
            key.Start = pick(1, 7);
            key.End = pick(0, 2) ? key.Start + pick(0, 3) : 0;
            key.Numeric = pick(0, 2) == 0;
            key.IgnoreCase = !key.Numeric && pick(0, 1);
            key.Descending = pick(0, 1);
            command += GnuKey(key);
        }
        SCOPED_TRACE(command);
        EXPECT_EQ(After(text, [&](TZvMemo& m) { m.acnAdvancedSort(keys, false); }),
                  Tool(command + " \"$1\"", text));
        // Only lines whose key a neighbour shares stay: uniq -D compares the same columns.
        std::vector<TSortKey> one(1);
        one[0].Start = pick(1, 4);
        one[0].End = one[0].Start + pick(0, 2);
        one[0].IgnoreCase = pick(0, 1);
        one[0].OnlyKeepKeyDuplicates = true;
        const std::string uniq = " | uniq -D -s " + std::to_string(one[0].Start - 1) + " -w " +
                                 std::to_string(one[0].End - one[0].Start + 1) +
                                 (one[0].IgnoreCase ? " -i" : "");
        EXPECT_EQ(
            After(text, [&](TZvMemo& m) { m.acnAdvancedSort(one, false); }),
            Tool("LC_ALL=C sort -s -t \"$(printf \\\\001)\"" + GnuKey(one[0]) + " \"$1\"" + uniq,
                 text));
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

TEST(CleanCommandTest, RemovedCharactersMatchTrAndSed) {
    std::mt19937 rng(43);
    // Zero-width space, non-joiner, joiner, word joiner and U+FEFF, among look-alikes that
    // stay (U+200E, U+2061, U+FEFE); the text starts with "x" so U+FEFF is never a signature.
    const std::vector<std::string> pieces = {"a",
                                             "b",
                                             " ",
                                             "\xc3\xa9",
                                             "\xf0\x9f\x98\x80",
                                             "\xf0\x9f\x98\x81",
                                             "\xe2\x80\x8b",
                                             "\xe2\x80\x8c",
                                             "\xe2\x80\x8d",
                                             "\xe2\x81\xa0",
                                             "\xef\xbb\xbf",
                                             "\xe2\x80\x8e",
                                             "\xe2\x81\xa1",
                                             "\xef\xbb\xbe",
                                             "\t"};
    for (int round = 0; round < 3; ++round) {
        const std::string text = "x" + RandomLines(rng, pieces, 300, 8);
        EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnRemoveCharactersFromText(u"a\t"); }),
                  Tool("tr -d \"a\\t\" < \"$1\"", text));
        // An astral character goes whole; its neighbour sharing the high surrogate stays.
        EXPECT_EQ(
            After(text, [](TZvMemo& m) { m.acnRemoveCharactersFromText(u"\u00e9\U0001F600"); }),
            Tool("LC_ALL=C sed -e \"s/\\xc3\\xa9//g\" -e \"s/\\xf0\\x9f\\x98\\x80//g\" \"$1\"",
                 text));
        const std::string zeroWidth =
            "LC_ALL=C sed -e \"s/\\xe2\\x80[\\x8b\\x8c\\x8d]//g\" "
            "-e \"s/\\xe2\\x81\\xa0//g\" -e \"s/\\xef\\xbb\\xbf//g\" \"$1\"";
        TMemoFixture f(text);
        const std::string cleaned = Tool(zeroWidth, text);
        EXPECT_EQ(f.memo.CheckForZeroWidthSpaces(), cleaned != text);
        EXPECT_EQ(f.memo.acnRemoveZeroWidthSpaces(), cleaned != text);
        EXPECT_EQ(f.Bytes(), cleaned);
        EXPECT_FALSE(f.memo.CheckForZeroWidthSpaces());
    }
}

// Random paragraphs: words of a-h joined by single spaces, cut into lines at random, each
// paragraph under one indent, blank lines between.
std::string RandomParagraphs(std::mt19937& rng) {
    const auto pick = [&rng](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(rng);
    };
    std::string text;
    for (int p = pick(1, 5); p > 0; --p) {
        const std::string indent =
            pick(0, 2) ? "" : std::string(static_cast<std::size_t>(pick(1, 4)), ' ');
        for (int l = pick(1, 6); l > 0; --l) {
            text += indent;
            for (int w = pick(1, 12); w > 0; --w) {
                for (int c = pick(1, w == 1 && pick(0, 9) == 0 ? 40 : 9); c > 0; --c)
                    text += static_cast<char>('a' + pick(0, 7));
                text += w > 1 ? " " : "\n";
            }
        }
        text += p > 1 ? "\n" : "";
    }
    return text;
}

// Each paragraph's lines joined by one space, one paragraph a line.
std::string ParagraphWords(const std::string& command, const std::string& text) {
    return Tool(command + " | awk \"/^ *\\$/ { if (p != \\\"\\\") print p; p = \\\"\\\"; next } "
                          "{ sub(/^ +/, \\\"\\\"); p = p == \\\"\\\" ? \\$0 : p \\\" \\\" \\$0 } "
                          "END { if (p != \\\"\\\") print p }\"",
                text);
}

TEST(ReformatCommandTest, RefillIsGreedyLikeTextwrapAndKeepsFmtsWordsAndParagraphs) {
    if (!HaveProgram("fmt") || !HaveProgram("python3"))
        GTEST_SKIP() << "no fmt or python3";
    TTempDir dir("zv-wrap");
    WriteAll(dir / "wrap.py", R"(import re, sys, textwrap
text = open(sys.argv[2]).read().strip("\n")
filled = []
for p in re.split(r"\n\n", text):
    indent = re.match(r" *", p).group()
    filled.append(textwrap.fill(" ".join(p.split()), int(sys.argv[1]), initial_indent=indent,
                                subsequent_indent=indent, break_long_words=False,
                                break_on_hyphens=False))
print("\n\n".join(filled))
)");
    std::mt19937 rng(53);
    for (int round = 0; round < 12; ++round) {
        const std::string text = RandomParagraphs(rng);
        const int margin = std::uniform_int_distribution<int>(12, 60)(rng);
        const std::string width = std::to_string(margin);
        SCOPED_TRACE(text + " at " + width);
        const std::string refilled = After(text, [margin](TZvMemo& m) {
            m.FRightMargin = margin;
            m.acnReformatBlock();
        });
        // Greedy filling, as Python's textwrap does it under the paragraph's indent.
        EXPECT_EQ(refilled,
                  Tool("python3 " + (dir / "wrap.py").string() + " " + width + " \"$1\"", text));
        // fmt fills for even lines rather than few: the same words in the same paragraphs,
        // and never fewer lines than the greedy fill.
        const std::string fmt = Tool("fmt -w " + width + " \"$1\"", text);
        EXPECT_EQ(ParagraphWords("cat", refilled), ParagraphWords("fmt -w " + width, text));
        EXPECT_LE(std::count(refilled.begin(), refilled.end(), '\n'),
                  std::count(fmt.begin(), fmt.end(), '\n'));
    }
}

// Simple case mapping is one code point to one; Python's full mapping agrees on letters that
// map to one letter and that no context changes (final sigma, dotted I and sharp s left out).
const std::vector<std::string> kCased = {"a",
                                         "Z",
                                         "q",
                                         "\xc3\xa9",
                                         "\xc3\x89",
                                         "\xc3\xb1",
                                         "\xc3\x91",
                                         "\xce\xb1",
                                         "\xce\xa9",
                                         "\xd0\xb6",
                                         "\xd0\x96",
                                         "\xc3\xbf",
                                         "\xf0\x90\x90\x80",
                                         "\xf0\x90\x90\xa8",
                                         " ",
                                         "-",
                                         ".",
                                         "\xf0\x9f\x98\x80",
                                         "xY",
                                         "\t"};

std::string Python(const std::string& method, const std::string& text) {
    return Tool("python3 -c \"import sys; sys.stdout.buffer.write(open(sys.argv[1], "
                "encoding=\\\"utf-8\\\", newline=\\\"\\\").read()." +
                    method + "().encode())\" \"$1\"",
                text);
}

TEST(CaseCommandTest, SelectionCaseMatchesPython) {
    if (!HaveProgram("python3"))
        GTEST_SKIP() << "no python3";
    std::mt19937 rng(13);
    const std::string text = RandomLines(rng, kCased, 300, 8);
    const auto selectAll = [](const std::function<bool(TZvMemo&)>& command) {
        return [command](TZvMemo& m) {
            m.SelectAll();
            command(m);
        };
    };
    EXPECT_EQ(After(text, selectAll(&TZvMemo::acnUpperCase)), Python("upper", text));
    EXPECT_EQ(After(text, selectAll(&TZvMemo::acnLowerCase)), Python("lower", text));
    EXPECT_EQ(After(text, selectAll(&TZvMemo::acnInvertCase)), Python("swapcase", text));
    EXPECT_EQ(After(text, selectAll(&TZvMemo::acnCapitalize)), Python("title", text));
    // Without a selection: the word at the caret only.
    TMemoFixture f("one two three\n");
    f.memo.SetTextCursor(5, 0);
    ASSERT_TRUE(f.memo.acnUpperCase());
    EXPECT_EQ(f.Bytes(), "one TWO three\n");
}

TEST(TabCommandTest, TabsAndSpacesMatchExpandAndUnexpand) {
    if (!HaveProgram("expand") || !HaveProgram("unexpand"))
        GTEST_SKIP() << "no expand or unexpand";
    std::mt19937 rng(17);
    const std::vector<std::string> pieces = {" ", " ", "  ", "\t", "a", "bc", "defg", "x"};
    for (int tab : {3, 4, 8}) {
        const std::string text = RandomLines(rng, pieces, 300, 10);
        const auto withTab = [tab](bool (TZvMemo::*command)()) {
            return [tab, command](TZvMemo& m) {
                m.DocState().FTabSize = tab;
                (m.*command)();
            };
        };
        const auto toSpaces = [tab](TZvMemo& m) {
            m.DocState().FTabSize = tab;
            m.acnConvertTabsToSpaces();
        };
        const std::string t = std::to_string(tab);
        EXPECT_EQ(After(text, toSpaces), Tool("expand -t " + t + " \"$1\"", text)) << tab;
        EXPECT_EQ(After(text, withTab(&TZvMemo::acnConvertSpacesToTabs)),
                  Tool("unexpand -t " + t + " \"$1\"", text))
            << tab;
    }
}

TEST(LineCommandTest, BlankLinesAndLineTailsMatchTheTools) {
    std::mt19937 rng(19);
    const std::vector<std::string> pieces = {"", "", "", " ", "\t", "a", "b c"};
    const std::string text = RandomLines(rng, pieces, 500, 3);
    EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnDeleteBlankLines(); }),
              Tool("grep -v -x \"[[:blank:]]*\" \"$1\" || true", text));
    EXPECT_EQ(After(text, [](TZvMemo& m) { m.acnRemoveTrailingWhiteSpaces(); }),
              Tool("sed \"s/[[:blank:]]*\\$//\" \"$1\"", text));
    // cat -s squeezes empty lines only: the text without blank-only lines.
    const std::string empties = RandomLines(rng, {"", "", "", "a", "b c"}, 500, 1);
    EXPECT_EQ(After(empties, [](TZvMemo& m) { m.acnCompressLines(true); }),
              Tool("cat -s \"$1\"", empties));
    EXPECT_EQ(After(text + "\n \n\t\n", [](TZvMemo& m) { m.acnRemoveTrailingBlankLines(); }),
              Tool("awk \"/^[[:blank:]]*\\$/ { held = held \\$0 \\\"\\n\\\"; next } "
                   "{ printf \\\"%s%s\\n\\\", held, \\$0; held = \\\"\\\" }\" \"$1\"",
                   text + "\n \n\t\n"));
}

TEST(LineCommandTest, WordCountMatchesWc) {
    std::mt19937 rng(23);
    const std::string text = RandomLines(rng, {" ", "  ", "\t", "a", "bc", "\xc3\xa9"}, 400, 6);
    TMemoFixture f(text);
    const auto count = f.memo.acnWordCount();
    EXPECT_EQ(std::to_string(count.Words) + " " + std::to_string(count.Lines),
              Tool("printf \"%s %s\" $(LC_ALL=C.UTF-8 wc -w < \"$1\") $(wc -l < \"$1\")", text));
}

TEST(LineCommandTest, JoinMoveCommentBehaveAsTheUserExpects) {
    TMemoFixture join("a\n  b\nc\n");
    ASSERT_TRUE(join.memo.acnJoinLines()); // no selection: the caret's line and the next
    EXPECT_EQ(join.Bytes(), "a b\nc\n");

    TMemoFixture move("1\n2\n3\n");
    move.memo.SetTextCursor(0, 2);
    ASSERT_TRUE(move.memo.MoveLinesUp());
    ASSERT_TRUE(move.memo.MoveLinesUp());
    EXPECT_EQ(move.Bytes(), "3\n1\n2\n");
    EXPECT_FALSE(move.memo.MoveLinesUp());

    TMemoFixture code("  x = 1;\n    y = 2;\n");
    code.memo.FCommentMarks.LineA = u"//|#";
    code.memo.SelectAll();
    ASSERT_TRUE(code.memo.ToggleCommentBlock());
    EXPECT_EQ(code.Bytes(), "  //x = 1;\n  //  y = 2;\n");
    ASSERT_TRUE(code.memo.ToggleCommentBlock());
    EXPECT_EQ(code.Bytes(), "  x = 1;\n    y = 2;\n");

    // Markup comments a selection with block marks, even with a line mark known.
    TMemoFixture page("<p>text</p>\n");
    page.memo.FCommentMarks = {u"//", u"", u"<!--", u"-->", true};
    page.memo.SetSelection({3, 0}, {7, 0});
    ASSERT_TRUE(page.memo.ToggleCommentBlock());
    EXPECT_EQ(page.Bytes(), "<p><!--text--></p>\n");
    EXPECT_EQ(page.memo.GetSelection(), u"text");
    ASSERT_TRUE(page.memo.ToggleCommentBlock());
    EXPECT_EQ(page.Bytes(), "<p>text</p>\n");
}

// Random texts with mixed line ends, blank and indented lines, tabs and repeats. CR LF mixes
// with LF or with CR, never LF with CR: a CR, an empty line and an LF would read as CR LF.
// A zero-width (or wider) column block over rows top..bottom, columns left..right.
void SelectBlock(TZvMemo& m, int top, int bottom, int left, int right) {
    m.SetColumnMode(true);
    m.SetSelection({left, top}, {right, bottom});
}

TEST(ColumnCommandTest, NumbersInABlockMatchSeqAndPrintfAndSkipBlankRowsUnlessTold) {
    std::mt19937 rng(31);
    const std::string text = RandomLines(rng, {"ab", "cd ", "x", " ", ""}, 60, 3);
    struct TCase {
        std::int64_t Start, Step;
        bool Hex, Every;
    };
    for (const TCase c : {TCase{1, 1, false, false}, TCase{-5, 7, false, true},
                          TCase{250, 3, true, false}, TCase{100, -9, false, false}}) {
        const int top = std::uniform_int_distribution<int>(0, 20)(rng);
        const int bottom = std::uniform_int_distribution<int>(top, 59)(rng);
        TMemoFixture f(text);
        int count = 0;
        for (int row = top; row <= bottom; ++row)
            count +=
                c.Every || f.memo.RowText(row).find_first_not_of(u" \t") != std::u16string::npos;
        f.memo.FNumEveryLine = c.Every;
        SelectBlock(f.memo, top, bottom, 2, 2);
        ASSERT_TRUE(f.memo.InsertNumbers(c.Start, c.Step, c.Hex));
        // seq counts, printf formats; awk right-aligns them to the widest and puts one into
        // each row of the block at column 2 (short rows padded), blank rows left out.
        const std::string last = std::to_string(c.Start + c.Step * (count - 1));
        const std::string script = "seq " + std::to_string(c.Start) + " " + std::to_string(c.Step) +
                                   " " + last + " | while read n; do printf \"" +
                                   (c.Hex ? "%X" : "%d") + R"(\n" $n; done > "$1.n"
            w=$(awk "{ if (length > w) w = length } END { print w }" "$1.n")
            awk -v w=$w -v t=)" + std::to_string(top) +
                                   " -v b=" + std::to_string(bottom + 1) +
                                   " -v every=" + std::to_string(c.Every) +
                                   R"( "NR == FNR { num[NR] = \$0; next }
                FNR > t && FNR <= b && (every || \$0 !~ /^[ \t]*\$/) {
                    printf \"%-2s%\" w \"s%s\n\", substr(\$0, 1, 2), num[++k], substr(\$0, 3); next }
                1" "$1.n" "$1")";
        EXPECT_EQ(f.Bytes(), Tool(script, text)) << c.Start << " " << c.Step;
        f.memo.Undo();
        EXPECT_EQ(f.Bytes(), text);
    }
}

TEST(ColumnCommandTest, StatisticsOfABlockMatchAwkOnTheSameCutColumns) {
    std::mt19937 rng(37);
    const std::string text = RandomLines(
        rng, {"12", "-3.5", " ", "x", ".25", "7.", "+4", "1e3", "--2", "0", "\t", "900"}, 80, 6);
    TMemoFixture f(text);
    for (int round = 0; round < 12; ++round) {
        const int top = std::uniform_int_distribution<int>(0, 79)(rng);
        const int bottom = std::uniform_int_distribution<int>(top, 79)(rng);
        const int left = std::uniform_int_distribution<int>(0, 10)(rng);
        const int right = std::uniform_int_distribution<int>(left + 1, 30)(rng);
        // Tabs make visual columns differ from cut's characters: expand first, as the block.
        f.memo.DocState().FTabSize = 8;
        SelectBlock(f.memo, top, bottom, left, right);
        const auto stats = f.memo.acnColumnStatistics();
        char ours[200];
        std::snprintf(ours, sizeof ours, "%lld %.6f %.6f %.6f %.6f",
                      static_cast<long long>(stats.Count), stats.Sum, stats.Min, stats.Max,
                      stats.Average());
        const std::string awk = "expand -t 8 \"$1\" | sed -n \"" + std::to_string(top + 1) + "," +
                                std::to_string(bottom + 1) + "p\" | cut -c " +
                                std::to_string(left + 1) + "-" + std::to_string(right) +
                                R"( | awk "{ for (i = 1; i <= NF; i++)
                if (\$i ~ /^[-+]?([0-9]+(\.[0-9]+)?|\.[0-9]+)\$/) {
                    v = \$i + 0; if (!n || v < lo) lo = v; if (!n || v > hi) hi = v; s += v; n++ } }
                END { printf \"%d %.6f %.6f %.6f %.6f\", n, s, lo, hi, n ? s / n : 0 }")";
        EXPECT_EQ(ours, Tool(awk, text)) << top << ".." << bottom << " x " << left << ".." << right;
    }
}

TEST(ColumnCommandTest, AlignedTextMatchesColumnTable) {
    if (!HaveProgram("column") || !HaveProgram("expand"))
        GTEST_SKIP() << "no column or expand";
    std::mt19937 rng(41);
    const std::vector<std::string> fields = {"a", "bb", "ccc d", " x", "", "Zeta ", "0"};
    const auto align = [](bool tabs, bool remove) {
        return [tabs, remove](TZvMemo& m) { m.acnColumnAlignText(u",", tabs, remove); };
    };
    for (int round = 0; round < 6; ++round) {
        // column makes a table of as many cells as the longest line: all lines alike here.
        const int cells = 2 + round % 3;
        std::string text;
        for (int line = 0; line < 40; ++line) {
            for (int cell = 0; cell < cells; ++cell)
                text += (cell ? "," : "") +
                        fields[std::uniform_int_distribution<std::size_t>(0, 6)(rng)];
            text += line == 0 ? "x\n" : "\n"; // no line all empty: column drops those
        }
        EXPECT_EQ(After(text, align(false, false)), Tool("column -t -s , -o , \"$1\"", text));
        EXPECT_EQ(After(text, align(false, true)), Tool("column -t -s , -o \" \" \"$1\"", text));
        // With tabs every separator stands at one column once expand has laid them out.
        const std::string tabbed = Tool("expand -t 4 \"$1\"", After(text, [](TZvMemo& m) {
                                            m.DocState().FTabSize = 4;
                                            m.acnColumnAlignText(u",", true, false);
                                        }));
        std::vector<std::size_t> first;
        for (std::size_t from = 0, end; (end = tabbed.find('\n', from)) != std::string::npos;
             from = end + 1) {
            std::vector<std::size_t> at;
            for (std::size_t i = from; i < end; ++i)
                if (tabbed[i] == ',')
                    at.push_back(i - from);
            if (first.empty())
                first = at;
            ASSERT_EQ(at, first) << tabbed;
        }
    }
}

std::string RandomDocument(std::mt19937& rng) {
    const std::vector<std::string> pieces = {"a",   "B",   " ",   "\t",       "  ",
                                             "// ", "<b>", "x y", "\xc3\xa9", "\xf0\x9f\x98\x80",
                                             "9",   "-1.5"};
    const char* ends[] = {"\r\n", rng() % 2 ? "\n" : "\r"};
    std::string text;
    const int lines = std::uniform_int_distribution<int>(0, 30)(rng);
    for (int i = 0; i < lines; ++i) {
        for (int n = std::uniform_int_distribution<int>(0, 5)(rng); n > 0; --n)
            text += pieces[std::uniform_int_distribution<std::size_t>(0, pieces.size() - 1)(rng)];
        if (i + 1 < lines || rng() % 2)
            text += ends[rng() % 2];
    }
    return text;
}

// The line ends of `text` in order: 'n' LF, 'r' CR, 'w' CR LF.
std::string LineEnds(const std::string& text) {
    std::string ends;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n')
            ends += 'n';
        else if (text[i] == '\r')
            ends += i + 1 < text.size() && text[i + 1] == '\n' ? (++i, 'w') : 'r';
    return ends;
}

TEST(TextCommandUndoTest, EveryCommandUndoesToTheOriginalBytesAndRedoes) {
    // Commands that keep the number of lines also keep each line end where it stood.
    struct TCommand {
        const char* Name;
        bool KeepsEnds;
        std::function<bool(TZvMemo&)> Run;
    };
    const std::vector<TCommand> commands = {
        {"sort", true, [](TZvMemo& m) { return m.acnSortSelectedLines(); }},
        {"sort desc unique", false,
         [](TZvMemo& m) { return m.acnSort(2, 5, true, true, false, true); }},
        {"sort numeric", true, [](TZvMemo& m) { return m.acnSortSelectedLinesNumeric(); }},
        {"duplicates", false, [](TZvMemo& m) { return m.acnDeleteDuplicateLines(); }},
        {"upper", true, [](TZvMemo& m) { return m.acnUpperCase(); }},
        {"lower", true, [](TZvMemo& m) { return m.acnLowerCase(); }},
        {"invert", true, [](TZvMemo& m) { return m.acnInvertCase(); }},
        {"capitalize", true, [](TZvMemo& m) { return m.acnCapitalize(); }},
        {"join", false, [](TZvMemo& m) { return m.acnJoinLines(); }},
        {"join all", false, [](TZvMemo& m) { return m.JoinLines(true, true, false, true); }},
        {"split", false, [](TZvMemo& m) { return m.SplitLinesAtColumn(3); }},
        {"blank lines", false, [](TZvMemo& m) { return m.acnDeleteBlankLines(); }},
        {"compress", false, [](TZvMemo& m) { return m.acnCompressLines(false); }},
        {"trailing blank lines", false, [](TZvMemo& m) { return m.acnRemoveTrailingBlankLines(); }},
        {"trailing blanks", true, [](TZvMemo& m) { return m.acnRemoveTrailingWhiteSpaces(); }},
        {"move up", true, [](TZvMemo& m) { return m.MoveLinesUp(); }},
        {"move down", true, [](TZvMemo& m) { return m.MoveLinesDown(); }},
        {"duplicate", false, [](TZvMemo& m) { return m.acnDuplicateLineTimes(2); }},
        {"delete to start", true, [](TZvMemo& m) { return m.acnDeleteToBeginOfLine(); }},
        {"delete to end", true, [](TZvMemo& m) { return m.acnDeleteToEndOfLine(); }},
        {"tabs to spaces", true, [](TZvMemo& m) { return m.acnConvertTabsToSpaces(); }},
        {"spaces to tabs", true, [](TZvMemo& m) { return m.acnConvertSpacesToTabs(); }},
        {"remove chars", true, [](TZvMemo& m) { return m.acnRemoveCharactersFromText(u"a "); }},
        {"remove astral", true,
         [](TZvMemo& m) { return m.acnRemoveCharactersFromText(u"\U0001F600"); }},
        {"comment", true, [](TZvMemo& m) { return m.CommentBlock(u"// "); }},
        {"block comment", true, [](TZvMemo& m) { return m.CommentBlock(u"/*", u"*/"); }},
        {"uncomment", true, [](TZvMemo& m) { return m.UnCommentBlock(); }},
        {"align right", true, [](TZvMemo& m) { return m.acnBlockAlignRight(); }},
        {"align centre", true, [](TZvMemo& m) { return m.acnBlockAlignCenter(); }},
        {"strip tags", true, [](TZvMemo& m) { return m.acnStripTags(); }},
        {"reformat paragraph", false, [](TZvMemo& m) { return m.acnReformatParagraph(); }},
        {"reformat block", false, [](TZvMemo& m) { return m.acnReformatBlock(); }},
        {"json", false, [](TZvMemo& m) { return m.acnJSONPrettyPrint(2); }},
        {"line breaks", true, [](TZvMemo& m) { return m.acnAddHtmlLineBreaks(); }},
        {"date", false, [](TZvMemo& m) { return m.acnInsertDateTime(); }},
        {"align", true, [](TZvMemo& m) { return m.acnColumnAlignText(u" ", false, false); }},
        {"align tabs", true, [](TZvMemo& m) { return m.acnColumnAlignText(u"a", true, true); }},
    };
    std::mt19937 rng(29);
    for (int round = 0; round < 40; ++round) {
        const std::string text = RandomDocument(rng);
        for (const auto& [name, keepsEnds, command] : commands) {
            TMemoFixture f(text);
            f.memo.FCommentMarks.LineA = u"// ";
            f.memo.FRightMargin = 12;
            const int rows = f.memo.RowCount();
            const auto pos = [&] {
                const int y = std::uniform_int_distribution<int>(0, rows - 1)(rng);
                const int x = std::uniform_int_distribution<int>(0, f.memo.RowLength(y))(rng);
                return TZvPos{x, y};
            };
            if (rng() % 2)
                f.memo.SetSelection(pos(), pos());
            else
                f.memo.SetTextCursor(pos().X, pos().Y);
            const std::string before = f.Bytes();
            ASSERT_EQ(before, text);
            const bool changed = command(f.memo);
            const std::string after = f.Bytes();
            SCOPED_TRACE(std::string(name) + " on round " + std::to_string(round));
            EXPECT_EQ(changed, after != before);
            EXPECT_EQ(f.memo.CanUndo(), changed);
            if (keepsEnds) {
                EXPECT_EQ(LineEnds(after), LineEnds(before));
            }
            if (!changed)
                continue;
            ASSERT_TRUE(f.memo.Undo());
            EXPECT_EQ(f.Bytes(), before);
            EXPECT_FALSE(f.memo.Modified());
            ASSERT_TRUE(f.memo.Redo());
            EXPECT_EQ(f.Bytes(), after);
        }
    }
}

} // namespace
} // namespace zv::test
