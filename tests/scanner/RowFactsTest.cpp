// The per-row facts of a full scan, checked against models outside the scanner: brace pairs
// found through the facts against a plain lexer's walk of the text, to-do rows against grep,
// indents against GNU expand.
#include "ScanTestSupport.h"

#include "support/ZvTestSupport.h"
#include "syntax/BraceMatch.h"

#include <map>
#include <random>
#include <set>
#include <sstream>

namespace zv::test {
namespace {

// Rows of C with braces in code, strings, character literals and comments (one-row and
// several-row block comments), and with to-do words in and out of comments. The code braces
// nest properly, so pairs lie up to the whole text apart. No string holds a comment opener,
// so a line-wise grep sees the comments the scanner sees.
std::string RandomC(std::mt19937& rng, int rows) {
    static const char* const kCode[] = {
        "f(a[i], {});",    "x = (y + z[2]);", "g(\"({[\");",   "c = '(';",      "s = \"\\\")\";",
        "h(); // ) }",     "/* ( { */ k();",  "TODO = 1;",     "t = \"TODO\";", "// TODO fix",
        "a(); // NOTE: b", "// later TODO",   "/* TODO */ m;", "/*NOTE*/ n;",   "// TODOS",
        "q = \"/ *\";",    "int i;",
    };
    static const char* const kIndent[] = {"", "  ", "\t", " \t ", "\t\t  ", "        "};
    std::ostringstream out;
    std::uniform_int_distribution<int> pick(0, int(std::size(kCode)) - 1);
    std::uniform_int_distribution<int> indent(0, int(std::size(kIndent)) - 1);
    std::uniform_int_distribution<int> percent(0, 99);
    std::string open; // the code braces still open, innermost last
    out << "{\n";     // one pair around everything
    for (int row = 1; row + 1 < rows; ++row) {
        out << kIndent[indent(rng)];
        const int p = percent(rng);
        if (p < 3) { // a block comment over several rows, braces inside
            out << "/* ( {\n * ] TODO inside\n\n * ) */ " << kCode[pick(rng)] << "\n";
            row += 3;
            continue;
        }
        if (p < 5) {
            out << "\n"; // an empty row
            continue;
        }
        if (p < 30 || (p < 55 && open.empty())) {
            const char c = "({["[percent(rng) % 3];
            open += c;
            out << "if (x) " << c << " ";
        } else if (p < 55) {
            out << ") } ]"[2 * std::string_view("({[").find(open.back())] << " ";
            open.pop_back();
        }
        out << kCode[pick(rng)] << "\n";
    }
    while (!open.empty()) {
        out << ") } ]"[2 * std::string_view("({[").find(open.back())] << "\n";
        open.pop_back();
    }
    out << "}\n";
    return out.str();
}

struct TModelBrace {
    int Row, Column;
    char C;
};

// The code braces of C text by a plain lexer: strings and character literals with escapes,
// line comments and block comments, nothing else.
std::vector<TModelBrace> ModelBraces(const std::string& text) {
    std::vector<TModelBrace> out;
    bool block = false;
    int row = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line); ++row) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            const char c = line[i];
            if (block) {
                if (line.compare(i, 2, "*/") == 0)
                    block = false, ++i;
            } else if (line.compare(i, 2, "/*") == 0) {
                block = true, ++i;
            } else if (line.compare(i, 2, "//") == 0) {
                break;
            } else if (c == '"' || c == '\'') {
                for (++i; i < line.size() && line[i] != c; ++i)
                    if (line[i] == '\\')
                        ++i;
            } else if (std::string_view("(){}[]").find(c) != std::string_view::npos) {
                out.push_back({row, int(i), c});
            }
        }
    }
    return out;
}

// The partner of braces[at] by counting, one counter for its kind; -1 when none.
int ModelPartner(const std::vector<TModelBrace>& braces, int at) {
    const std::string_view kinds = "(){}[]";
    const auto kind = [&](char c) { return kinds.find(c) / 2; };
    const bool opens = kinds.find(braces[at].C) % 2 == 0;
    const int dir = opens ? 1 : -1;
    int depth = 0;
    for (int i = at + dir; i >= 0 && i < int(braces.size()); i += dir) {
        if (kind(braces[i].C) != kind(braces[at].C))
            continue;
        if ((kinds.find(braces[i].C) % 2 == 0) == opens)
            ++depth;
        else if (depth-- == 0)
            return i;
    }
    return -1;
}

// Every probed brace: the pair the editor finds through the row facts is the pair a plain
// lexer's counting walk finds, whether the rows were swept first or are scanned on the way.
TEST(RowFacts, BracePairsEqualAPlainWalkOfTheText) {
    for (const unsigned seed : {1u, 2u, 3u}) {
        std::mt19937 rng(seed);
        const std::string text = RandomC(rng, 6000);
        const auto braces = ModelBraces(text);
        ASSERT_GT(braces.size(), 1000u);
        for (const bool swept : {false, true}) {
            TScanDoc d("c", Utf8ToUtf16(text));
            ASSERT_TRUE(d.Loaded);
            if (swept)
                d.SweepAll();
            std::vector<int> probes{0, int(braces.size()) - 1}; // the outer pair
            std::uniform_int_distribution<int> any(0, int(braces.size()) - 1);
            for (int i = 0; i < 150; ++i)
                probes.push_back(any(rng));
            for (const int at : probes) {
                const TModelBrace& b = braces[at];
                const bool opens = std::string_view("({[").find(b.C) != std::string_view::npos;
                // An opener is found with the caret before it, a closer with the caret behind
                // it; where both stand at one caret the opener wins, in the model too.
                const int x = opens ? b.Column : b.Column + 1;
                const bool openerAtCaret = std::any_of(braces.begin(), braces.end(), [&](auto& o) {
                    return o.Row == b.Row && o.Column == x &&
                           std::string_view("({[").find(o.C) != std::string_view::npos;
                });
                if (!opens && openerAtCaret)
                    continue;
                const TBracePair pair = FindBracePair(*d.Scanner, x, b.Row, false);
                const int partner = ModelPartner(braces, at);
                ASSERT_EQ(pair.Left, (TBracePoint{b.Column, b.Row})) << "seed " << seed;
                ASSERT_EQ(pair.Matched, partner >= 0)
                    << "seed " << seed << " brace " << b.C << " at " << b.Row << ":" << b.Column;
                if (partner >= 0) {
                    ASSERT_EQ(pair.Right,
                              (TBracePoint{braces[partner].Column, braces[partner].Row}))
                        << "seed " << seed << " brace " << b.C << " at " << b.Row << ":" << b.Column
                        << (swept ? " (swept)" : "");
                }
            }
        }
    }
}

// The rows the sweep marks as to-do items are the rows grep finds with a to-do word opening
// a comment's text; every item has its number; the indents are those GNU expand gives.
TEST(RowFacts, TodoRowsEqualGrepAndIndentsEqualExpand) {
    zvtest::TTempDir temp;
    std::mt19937 rng(7);
    const std::string text = RandomC(rng, 3000);
    const auto file = temp / "a.c";
    zvtest::WriteAll(file, text);
    const std::string grep =
        zvtest::RunOutput("grep -nE '(//|/\\*)[[:space:]]*(TODO|NOTE)([^[:alnum:]_]|$)' " +
                          file.string() + " | cut -d: -f1");
    std::set<int> expected;
    std::istringstream rows(grep);
    for (std::string n; std::getline(rows, n);)
        expected.insert(std::stoi(n) - 1);
    ASSERT_GT(expected.size(), 100u);
    const std::string expanded = zvtest::RunOutput("expand -t 4 " + file.string());

    TScanDoc d("c", Utf8ToUtf16(text));
    d.SweepAll();
    std::set<int> found;
    std::istringstream lines(expanded);
    std::string line;
    for (int row = 0; row < d.Store.Count() && std::getline(lines, line); ++row) {
        TRowFacts facts;
        ASSERT_TRUE(d.Scanner->States().Facts(row, facts)) << row;
        if (facts.TodoItem()) {
            found.insert(row);
            EXPECT_GE(facts.TodoId - row, 100) << row;
            EXPECT_LE(facts.TodoId - row, 99999) << row;
        }
        const auto blanks = line.find_first_not_of(' ');
        EXPECT_EQ(facts.Indent, blanks == std::string::npos ? -1 : int(blanks)) << "row " << row;
    }
    EXPECT_EQ(found, expected);
}

} // namespace
} // namespace zv::test
