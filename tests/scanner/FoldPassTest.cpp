// The fold pass against plain models: random C programs (both brace styles, else branches,
// braces in strings and comments, comment blocks) whose folds are known by construction,
// random Python programs folded by indention, and the fold words of other shipped syntaxes.
// Folding all and unfolding all restores every row.
#include "FoldSupport.h"

#include "ZvMemoControl/ZvMemo.h"

#include <algorithm>
#include <random>
#include <set>
#include <tuple>

namespace zv::test {
namespace {

using TFold = std::tuple<int, int, int, int>; // first, last, level, list item

std::set<TFold> PassFolds(const std::string& syntax, std::u16string_view text) {
    TScanDoc doc(syntax, text);
    EXPECT_TRUE(doc.Loaded);
    doc.SweepAll();
    TFoldTemp temp;
    EXPECT_TRUE(RunFoldPass(*doc.Scanner, {}, temp, false));
    std::set<TFold> out;
    for (const TFoldRange& r : temp.Folds)
        out.emplace(r.First, r.Last, r.Level, r.Item);
    return out;
}

// Writes a random C program and the folds its braces and comments make.
struct TCWriter {
    std::mt19937 Rng;
    std::u16string Text;
    int Row = 0;
    std::set<TFold> Folds;

    void Line(int depth, std::u16string_view s) {
        Text.append(std::u16string(static_cast<std::size_t>(depth) * 4, u' ')).append(s) += u'\n';
        ++Row;
    }
    void Statements(int depth) {
        for (int n = 1 + int(Rng() % 3); n > 0; --n) {
            switch (Rng() % 4) {
            case 0:
                Line(depth, u"s = \"{ not a brace\";");
                break;
            case 1:
                Line(depth, u"f(x); /* } */");
                break;
            default:
                Line(depth, u"x++;");
            }
        }
    }
    void Comment(int depth) {
        const int first = Row;
        if (Rng() % 2) {
            Line(depth, u"/* {");
            Line(depth, u"   } */");
        } else {
            Line(depth, u"// one {");
            Line(depth, u"// two");
        }
        Folds.emplace(first, Row - 1, depth + 1, ceNone);
    }
    // A block at `depth` (level depth + 1); returns nothing, records its fold.
    void Block(int depth, bool named) {
        const bool allman = Rng() % 3 == 0;
        const int head = Row;
        const auto item = named ? ceStruct : ceNone;
        if (allman) {
            Line(depth, named ? u"struct s" : u"while (x)");
            Line(depth, u"{");
        } else {
            Line(depth, named ? u"struct s {" : u"while (x) {");
        }
        Body(depth + 1);
        if (!named && Rng() % 3 == 0) { // an else branch: "} else {" opens the next fold
            Folds.emplace(head, Row - 1, depth + 1, item);
            const int elseHead = Row;
            Line(depth, u"} else {");
            Body(depth + 1);
            Line(depth, u"}");
            Folds.emplace(elseHead, Row - 1, depth + 1, ceNone);
            return;
        }
        Line(depth, named ? u"};" : u"}");
        Folds.emplace(head, Row - 1, depth + 1, item);
    }
    void Body(int depth) {
        Statements(depth);
        if (depth < 5 && Rng() % 3 != 0)
            Block(depth, false);
        if (Rng() % 4 == 0)
            Comment(depth);
        Statements(depth);
    }
};

TEST(FoldPass, CBracesCommentsAndStringsFoldAsTheirPlainModel) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        TCWriter w;
        w.Rng.seed(seed);
        for (int n = 0; n < 4; ++n) {
            w.Block(0, w.Rng() % 4 == 0);
            if (w.Rng() % 2)
                w.Comment(0);
        }
        w.Line(0, u"int end;");
        ASSERT_EQ(PassFolds("c", w.Text), w.Folds) << "seed " << seed << "\n"
                                                   << Utf16ToUtf8(w.Text);
    }
}

// Writes a random Python program; each header's fold ends on the last non-blank row of its
// body.
struct TPyWriter {
    std::mt19937 Rng;
    std::u16string Text;
    int Row = 0;
    std::set<TFold> Folds;

    void Line(int depth, std::u16string_view s) {
        if (!s.empty())
            Text.append(std::u16string(static_cast<std::size_t>(depth) * 4, u' ')).append(s);
        Text += u'\n';
        ++Row;
    }
    int Body(int depth) { // returns the last non-blank row
        int last = Row;
        for (int n = 1 + int(Rng() % 3); n > 0; --n) {
            if (depth < 4 && Rng() % 3 == 0) {
                last = Header(depth);
            } else {
                Line(depth, Rng() % 2 ? u"x = '''not: a header'''" : u"call()  # comment:");
                last = Row - 1;
            }
            if (Rng() % 4 == 0)
                Line(0, u""); // a blank row inside the body
        }
        return last;
    }
    int Header(int depth) {
        const int head = Row;
        const unsigned kind = Rng() % 3;
        Line(depth, kind == 0 ? u"def f(a):" : kind == 1 ? u"class C:" : u"if a:");
        const int last = Body(depth + 1);
        Folds.emplace(head, last, depth + 1, kind == 0 ? ceMethod : kind == 1 ? ceClass : ceNone);
        return last;
    }
};

TEST(FoldPass, PythonFoldsByIndentionAsItsPlainModel) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        TPyWriter w;
        w.Rng.seed(seed);
        for (int n = 0; n < 3; ++n)
            w.Header(0);
        w.Line(0, u"main()");
        ASSERT_EQ(PassFolds("python", w.Text), w.Folds) << "seed " << seed << "\n"
                                                        << Utf16ToUtf8(w.Text);
    }
}

TEST(FoldPass, FoldWordsRegionsAndSectionsOfShippedSyntaxes) {
    const auto folds = [](const char* syntax, std::u16string_view text) {
        std::vector<std::pair<int, int>> out;
        for (const auto& [first, last, level, item] : PassFolds(syntax, text))
            out.emplace_back(first, last);
        return out;
    };
    using V = std::vector<std::pair<int, int>>;
    // Paired tags, counted outside comments.
    EXPECT_EQ(folds("html", u"<html>\n<head>\n<title>t</title>\n</head>\n<body>\n<!-- </body> "
                            u"-->\n<p>x</p>\n</body>\n</html>"),
              (V{{1, 3}, {4, 7}}));
    // Preprocessor conditionals pair by their words; a region by its own words.
    EXPECT_EQ(folds("cpp", u"#pragma region A\n#ifdef X\nint a;\n#endif\n#pragma endregion\nint "
                           u"b;"),
              (V{{0, 4}, {1, 3}}));
    EXPECT_EQ(folds("html", u"<div class=a>\n<div>\n<p>x</p>\n</div></div>\n<table>\n</table>"),
              (V{{0, 3}, {1, 3}, {4, 5}}));
    EXPECT_EQ(folds("javascript", u"//#region A\nlet a;\n// #endregion\nlet b;"), (V{{0, 2}}));
    // XML folds by indention; the closing tag stays out.
    EXPECT_EQ(folds("xml", u"<a>\n  <b>\n    <c/>\n  </b>\n</a>"), (V{{0, 3}, {1, 2}}));
    // Sections without indention run to the next head of their rank.
    EXPECT_EQ(folds("markdown", u"# A\ntext\n## B\nmore\n# C\nlast"), (V{{0, 3}, {2, 3}, {4, 5}}));
    EXPECT_EQ(folds("ini", u"[a]\nx=1\n\n[b]\ny=2"), (V{{0, 1}, {3, 4}}));
    // Nested YAML maps fold by indention.
    EXPECT_EQ(folds("yaml", u"a:\n  b:\n    c: 1\n  d: 2\ne: 3"), (V{{0, 3}, {1, 2}}));
    // A document of one row has no folds; a header without a body makes none.
    EXPECT_EQ(folds("c", u"int f() { return 0; }"), V{});
    EXPECT_EQ(folds("python", u"def f(): pass\nx = 1"), V{});
}

TEST(FoldPass, FoldAllThenUnfoldAllRestoresEveryRow) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        TCWriter w;
        w.Rng.seed(seed);
        for (int n = 0; n < 5; ++n)
            w.Block(0, false);
        w.Line(0, u"int end;");
        TScanDoc doc("c", w.Text);
        doc.SweepAll();
        TFoldTemp temp;
        ASSERT_TRUE(RunFoldPass(*doc.Scanner, {}, temp, false));
        UpdateFoldData(doc.Store, temp);
        const auto before = FoldRows(doc.Store);
        const std::u16string text = doc.Store.GetText();
        // Closing all leaves the heads of the outermost folds and the rows between them.
        int shown = doc.Store.Count();
        for (const auto& [first, last, level, item] : w.Folds)
            if (level == 1)
                shown -= last - first;
        ASSERT_GT(CloseAllNodes(doc.Store), 0);
        EXPECT_EQ(doc.Store.VisibleCount(), shown) << "seed " << seed;
        // A closed fold keeps its flags over a rebuild.
        UpdateFoldData(doc.Store, temp);
        EXPECT_EQ(doc.Store.VisibleCount(), shown) << "seed " << seed;
        OpenAllNodes(doc.Store);
        EXPECT_EQ(doc.Store.VisibleCount(), doc.Store.Count());
        EXPECT_EQ(FoldRows(doc.Store), before) << "seed " << seed;
        EXPECT_EQ(doc.Store.GetText(), text);
    }
}

TEST(FoldPass, ClosingHidesTheBodyAndOpeningAnOuterFoldOpensTheInnerOnes) {
    TScanDoc doc("c", u"void f() {\n    if (x) {\n        y();\n    }\n    z();\n}\nint a;");
    doc.SweepAll();
    TFoldTemp temp;
    ASSERT_TRUE(RunFoldPass(*doc.Scanner, {}, temp, false));
    UpdateFoldData(doc.Store, temp);
    ASSERT_TRUE(ToggleNode(doc.Store, 1, false));
    EXPECT_EQ(doc.Store.VisibleCount(), 5);
    EXPECT_EQ(FoldHeadAround(doc.Store, 2), 1);
    EXPECT_EQ(FoldHeadAround(doc.Store, 4), 0);
    EXPECT_EQ(FoldHeadAround(doc.Store, 6), -1);
    EXPECT_TRUE(CloseNearestNode(doc.Store, 4)); // the outer fold
    EXPECT_EQ(doc.Store.VisibleCount(), 2);
    EXPECT_TRUE(OpenNodesOnHiddenLine(doc.Store, 2)); // a search landing inside
    EXPECT_EQ(doc.Store.VisibleCount(), doc.Store.Count());
    EXPECT_FALSE(IsFoldClosed(doc.Store, 1));
    EXPECT_FALSE(ToggleNode(doc.Store, 4, false)); // no head
}

} // namespace
} // namespace zv::test

namespace zv::test {
namespace {

// A control over a scanned C document with its folds built.
struct TFoldedMemo {
    explicit TFoldedMemo(std::u16string_view text) : Doc("c", text) {
        Memo.SetLines(&Doc.Store);
        Rebuild();
    }
    void Rebuild() {
        Doc.Scanner->ClearLineStylesFrom(0);
        Doc.SweepAll();
        TFoldTemp temp;
        EXPECT_TRUE(RunFoldPass(*Doc.Scanner, {}, temp, false));
        UpdateFoldData(Doc.Store, temp);
    }
    TScanDoc Doc;
    TZvMemo Memo;
};

TEST(FoldCommands, FoldAllAndUnfoldAllKeepTextRowsAndACaretThatStaysShown) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        TCWriter w;
        w.Rng.seed(seed);
        for (int n = 0; n < 4; ++n)
            w.Block(0, false);
        w.Line(0, u"int end;");
        TFoldedMemo m(w.Text);
        const int row = int(w.Rng() % unsigned(m.Doc.Store.Count()));
        m.Memo.SetTextCursor(0, row);
        // Where the caret goes: the head of the outermost fold that hides its row.
        int expected = row;
        for (const auto& [first, last, level, item] : w.Folds)
            if (level == 1 && row > first && row <= last)
                expected = first;
        const std::u16string text = m.Doc.Store.GetText();
        const int rows = m.Doc.Store.Count();
        ASSERT_TRUE(m.Memo.acnFoldAll());
        EXPECT_EQ(m.Memo.Caret().Y, expected) << "seed " << seed;
        EXPECT_FALSE(m.Doc.Store.GetHiddenLine(m.Memo.Caret().Y));
        ASSERT_TRUE(m.Memo.acnUnfoldAll());
        EXPECT_EQ(m.Memo.Caret().Y, expected);
        EXPECT_EQ(m.Doc.Store.GetText(), text);
        EXPECT_EQ(m.Doc.Store.Count(), rows);
        EXPECT_EQ(m.Doc.Store.VisibleCount(), rows);
    }
}

TEST(FoldCommands, CaretCopySearchAndEditsAroundAClosedFold) {
    const std::u16string_view text = u"int a;\nvoid f() {\n    x();\n    y();\n}\nint b;";
    TFoldedMemo m(text);
    ASSERT_TRUE(m.Memo.ToggleFoldAt(1));
    // The caret steps over the hidden rows, both ways.
    m.Memo.SetTextCursor(0, 1);
    m.Memo.MoveCursor(0, 1, 0);
    EXPECT_EQ(m.Memo.Caret().Y, 5);
    m.Memo.MoveCursor(0, -1, 0);
    EXPECT_EQ(m.Memo.Caret().Y, 1);
    // A copy across the fold holds the hidden lines.
    m.Memo.SetSelection({0, 1}, {0, 5});
    EXPECT_EQ(m.Memo.GetSelection(), u"void f() {\n    x();\n    y();\n}\n");
    EXPECT_TRUE(IsFoldClosed(m.Doc.Store, 1));
    // Typing on the head keeps the fold closed; a line end there opens it.
    m.Memo.SetTextCursor(4, 1);
    ASSERT_TRUE(m.Memo.InsertText(u"z"));
    EXPECT_TRUE(IsFoldClosed(m.Doc.Store, 1));
    m.Memo.SetTextCursor(m.Memo.RowLength(1), 1);
    ASSERT_TRUE(m.Memo.InsertText(u"\n"));
    EXPECT_FALSE(IsFoldClosed(m.Doc.Store, 1));
    EXPECT_EQ(m.Doc.Store.VisibleCount(), m.Doc.Store.Count());
    // Backspace at the start of the row below a closed fold opens it.
    m.Rebuild();
    ASSERT_TRUE(m.Memo.ToggleFoldAt(1));
    m.Memo.SetTextCursor(0, 6);
    ASSERT_TRUE(m.Memo.Backspace());
    EXPECT_EQ(m.Doc.Store.VisibleCount(), m.Doc.Store.Count());
    // A search hit or a go-to inside a closed fold shows it.
    m.Rebuild();
    ASSERT_TRUE(m.Memo.ToggleFoldAt(1));
    m.Memo.SetSelection({4, 3}, {6, 3});
    EXPECT_FALSE(m.Doc.Store.GetHiddenLine(3));
    EXPECT_EQ(m.Memo.Caret(), (TZvPos{6, 3}));
    // Fold start and end from inside the body.
    EXPECT_TRUE(m.Memo.acnGoToFoldEnd());
    EXPECT_EQ(m.Memo.Caret().Y, 5);
    EXPECT_TRUE(m.Memo.acnGoToFoldStart());
    EXPECT_EQ(m.Memo.Caret().Y, 1);
}

} // namespace
} // namespace zv::test
