// Editing at several places: seeded random caret lists and column blocks. A multi-caret edit
// must equal the same edit made at each caret from the last to the first in the plain model;
// a column edit must equal the rectangle's model; one undo gives the original bytes and
// carets back, redo the edited ones. Column copy and "add next occurrence" are checked
// against awk and sed.
#include "EditModel.h"
#include "MemoFixture.h"

#include "common/Utf.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace zv::test {
namespace {

// The model's lines of `text`: split at CR LF, CR and LF, always at least one.
std::vector<std::u16string> ModelLines(std::u16string_view text) {
    std::vector<std::u16string> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != u'\r' && text[i] != u'\n')
            lines.back() += text[i];
        else if (!(text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n'))
            lines.emplace_back();
    return lines;
}

int Pick(std::mt19937& rng, int from, int to) {
    return std::uniform_int_distribution<int>(from, to)(rng);
}

std::string RandomDocument(std::mt19937& rng) {
    static const char* const kWords[] = {"ab", "  ", "xyz", "q", "    ", "foo", "1"};
    std::string text;
    const int lines = Pick(rng, 1, 8);
    for (int i = 0; i < lines; ++i) {
        const int words = Pick(rng, 0, 5);
        for (int w = 0; w < words; ++w)
            text += kWords[Pick(rng, 0, 6)];
        if (i + 1 < lines || Pick(rng, 0, 1))
            text += "\n";
    }
    return text;
}

// Disjoint carets in document order: each takes one point (a caret) or two (a selection
// ending at its caret) out of distinct random points of the text.
std::vector<TMultiCursorPos> RandomCarets(std::mt19937& rng, const TZvCustomMemo& memo,
                                          bool virtualSpace) {
    std::set<TZvPos> points;
    const int wanted = Pick(rng, 2, 8);
    for (int i = 0; i < wanted * 3 && static_cast<int>(points.size()) < wanted; ++i) {
        const int row = Pick(rng, 0, memo.RowCount() - 1);
        points.insert({Pick(rng, 0, memo.RowLength(row)), row});
    }
    std::vector<TZvPos> sorted(points.begin(), points.end());
    std::vector<TMultiCursorPos> list;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        TZvPos start = sorted[i], end = start;
        const bool select = i + 1 < sorted.size() && Pick(rng, 0, 2) == 0;
        if (select)
            end = sorted[++i];
        else if (virtualSpace && Pick(rng, 0, 3) == 0 &&
                 (i + 1 == sorted.size() || sorted[i + 1].Y != start.Y))
            start = end = {memo.RowLength(start.Y) + Pick(rng, 1, 3), start.Y}; // past the end
        TMultiCursorPos entry;
        entry.aSelStartX = start.X;
        entry.aSelStartY = start.Y;
        entry.aSelEndX = entry.aCurX = end.X;
        entry.aSelEndY = entry.aCurY = end.Y;
        entry.aSelectMode = select;
        list.push_back(entry);
    }
    return list;
}

// A control whose clipboard is a plain one of the test's.
struct TClipFixture : TMemoFixture {
    explicit TClipFixture(const std::string& utf8) : TMemoFixture(utf8) {
        TEditorServices services;
        services.Clipboard = &clipboard;
        memo.SetServices(services);
    }
    TMemoryClipboard clipboard;
};

bool SameCarets(const std::vector<TMultiCursorPos>& a, const std::vector<TMultiCursorPos>& b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].Caret() != b[i].Caret() || a[i].First() != b[i].First() ||
            a[i].Last() != b[i].Last())
            return false;
    return true;
}

// Keys at several carets start from the end nearer the row array's gap (from the last caret
// up, the carets are shifted afterwards); from the first caret down, each caret is shifted
// before its edit. Both must leave the same text and carets over runs of keys, pastes and
// joins, with several carets on a row.
TEST(MultiCaret, KeysAtCaretsFromTheLastUpEqualTheFirstDownInTextAndCarets) {
    for (unsigned seed = 1; seed <= 600; ++seed) {
        SCOPED_TRACE(seed);
        std::string text[2];
        std::vector<TMultiCursorPos> carets[2];
        for (int pass = 0; pass < 2; ++pass) {
            std::mt19937 rng(seed);
            TClipFixture f(RandomDocument(rng));
            const int first = Pick(rng, 0, 4);
            for (const TMultiCursorPos& c : RandomCarets(rng, f.memo, first == 0))
                f.memo.AddMultiCursorPos(c.aSelStartX, c.aSelStartY, c.aSelEndX, c.aSelEndY,
                                         c.aCurX, c.aCurY);
            f.memo.FAutoIndent = false;
            f.memo.FCaretKeysFromGap = pass == 0;
            for (int step = 0; step < 4 && f.memo.FMultiEditMode; ++step) {
                switch (step == 0 ? first : Pick(rng, 0, 4)) {
                case 0:
                    f.memo.KeyPress(u'k');
                    break;
                case 1:
                    f.memo.Backspace();
                    break;
                case 2:
                    f.memo.acnDelete();
                    break;
                case 3:
                    f.memo.EnterPress();
                    break;
                default:
                    f.clipboard.SetText(u"P\nQ", false);
                    f.memo.PasteFromClipboard();
                    break;
                }
            }
            text[pass] = f.Bytes();
            carets[pass] = f.memo.FMultiCursorList;
        }
        ASSERT_EQ(text[0], text[1]);
        ASSERT_TRUE(SameCarets(carets[0], carets[1]));
    }
}

TEST(MultiCaret, AnEditAtAllCaretsEqualsTheEditAtEachFromTheLastToTheFirstAndUndoesAsOneStep) {
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 rng(seed);
        const std::string original = RandomDocument(rng);
        TClipFixture f(original);
        const int op = Pick(rng, 0, 4);
        const std::vector<TMultiCursorPos> carets = RandomCarets(rng, f.memo, op == 0);
        f.memo.FAutoIndent = Pick(rng, 0, 1) == 1;
        for (const TMultiCursorPos& c : carets)
            f.memo.AddMultiCursorPos(c.aSelStartX, c.aSelStartY, c.aSelEndX, c.aSelEndY, c.aCurX,
                                     c.aCurY);
        ASSERT_TRUE(SameCarets(f.memo.FMultiCursorList, carets));
        const TCaretState before = f.memo.CaretState();

        TEditModel model(f.Text());
        const std::u16string pasted = u"P\nQ";
        for (auto it = carets.rbegin(); it != carets.rend(); ++it) {
            const TZvPos caret = it->Caret(), s = it->First(), e = it->Last();
            switch (op) {
            case 0:
                model.Type(caret, s, e, u'k');
                break;
            case 1:
                model.Backspace(caret, s, e);
                break;
            case 2:
                model.Delete(caret, s, e);
                break;
            case 3:
                model.Enter(caret, s, e, f.memo.FAutoIndent);
                break;
            default:
                model.Paste(caret, s, e, pasted);
                break;
            }
        }
        switch (op) {
        case 0:
            f.memo.KeyPress(u'k');
            break;
        case 1:
            f.memo.Backspace();
            break;
        case 2:
            f.memo.acnDelete();
            break;
        case 3:
            f.memo.EnterPress();
            break;
        default:
            f.clipboard.SetText(pasted, false);
            f.memo.PasteFromClipboard();
            break;
        }
        const std::string edited = f.Bytes();
        ASSERT_EQ(f.Text(), model.Text()) << "op " << op << " on\n" << original;
        EXPECT_TRUE(f.memo.FMultiEditMode);
        if (edited == original) { // nothing to do at any caret: no step either
            EXPECT_FALSE(f.memo.CanUndo());
            continue;
        }
        ASSERT_TRUE(f.memo.CanUndo());
        f.memo.Undo();
        EXPECT_EQ(f.Bytes(), original);
        EXPECT_FALSE(f.memo.CanUndo()) << "one step";
        EXPECT_TRUE(SameCarets(f.memo.FMultiCursorList, before.Carets)) << "carets come back";
        f.memo.Redo();
        EXPECT_EQ(f.Bytes(), edited);
    }
}

TEST(MultiCaret, CaseCommentOvertypeAndNumbersAtAllCaretsEqualTheCommandAtEachFromTheLast) {
    const auto plain = [](TZvMemo& m, int op, int i) {
        switch (op) {
        case 0:
            return m.acnUpperCase();
        case 1:
            return m.acnCapitalize();
        case 2:
            return m.ToggleCommentBlock();
        case 3:
            m.FOverwrite = true;
            return m.KeyPress(u'#');
        default:
            return m.InsertText(Utf8ToUtf16(std::to_string(10 - 3 * i)));
        }
    };
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 rng(seed);
        const std::string original = RandomDocument(rng);
        TMemoFixture f(original), each(original);
        f.memo.FCommentMarks.LineA = each.memo.FCommentMarks.LineA = u"//";
        const int op = Pick(rng, 0, 4);
        const std::vector<TMultiCursorPos> carets = RandomCarets(rng, f.memo, false);
        for (const TMultiCursorPos& c : carets)
            f.memo.AddMultiCursorPos(c.aSelStartX, c.aSelStartY, c.aSelEndX, c.aSelEndY, c.aCurX,
                                     c.aCurY);
        if (op == 4)
            f.memo.MultiEditInsertNumbers(10, -3, false);
        else
            plain(f.memo, op, 0);
        // Case and comments keep every position (ASCII, no line added) but reach beyond the
        // caret (its word, its line): they go from the first caret, the rest from the last. A
        // comment goes once to each line: a caret whose first line an earlier caret toggled
        // leaves its lines alone.
        const int n = static_cast<int>(carets.size());
        int toggled = -1;
        for (int k = 0; k < n; ++k) {
            const int i = op <= 2 ? k : n - 1 - k;
            const TMultiCursorPos& c = carets[static_cast<std::size_t>(i)];
            if (op == 2 && c.First().Y <= toggled)
                continue;
            toggled = c.Last().Y;
            each.memo.SetSelection(c.First(), c.Last());
            plain(each.memo, op, i);
        }
        const std::string edited = f.Bytes();
        ASSERT_EQ(edited, each.Bytes()) << "op " << op << " on\n" << original;
        if (edited == original)
            continue;
        f.memo.Undo();
        EXPECT_EQ(f.Bytes(), original);
        EXPECT_FALSE(f.memo.CanUndo()) << "one step";
        EXPECT_TRUE(SameCarets(f.memo.FMultiCursorList, carets)) << "carets come back";
    }
}

// The rectangle's model: each row of the block, with visual columns equal to characters (no
// tabs in these texts).
struct TBlockModel {
    std::vector<std::u16string> lines;
    int top, bottom, left, right;

    static std::u16string Part(const std::u16string& row, int from, int to) {
        if (from >= static_cast<int>(row.size()))
            return {};
        return row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    }
    // Replaces the block's part of `row` by `text`, padding a short row up to the block.
    void Put(int row, const std::u16string& text) {
        while (static_cast<int>(lines.size()) <= row)
            lines.emplace_back();
        std::u16string& r = lines[static_cast<std::size_t>(row)];
        if (text.empty() && static_cast<int>(r.size()) <= left)
            return;
        if (static_cast<int>(r.size()) < left)
            r.append(static_cast<std::size_t>(left) - r.size(), u' ');
        const std::u16string tail =
            static_cast<int>(r.size()) > right ? r.substr(static_cast<std::size_t>(right)) : u"";
        r = r.substr(0, static_cast<std::size_t>(left)) + text + tail;
    }
    std::u16string Text() const {
        std::u16string s;
        for (std::size_t i = 0; i < lines.size(); ++i)
            s += (i ? u"\n" : u"") + lines[i];
        return s;
    }
};

TEST(ColumnBlock, EditsAndBlockCommandsEqualTheRectangleModelAndUndoInOneStep) {
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 rng(seed);
        std::string original = RandomDocument(rng);
        if (!original.empty() && original.back() != '\n')
            original += '\n'; // the model's rows are the text's lines
        TClipFixture f(original);
        TBlockModel model{{}, 0, 0, 0, 0};
        for (const std::u16string& line : ModelLines(f.Text()))
            model.lines.push_back(line);
        const int rows = f.memo.RowCount();
        const int a = Pick(rng, 0, rows - 1), b = Pick(rng, 0, rows - 1);
        const int c1 = Pick(rng, 0, 9), c2 = Pick(rng, 0, 9);
        model.top = std::min(a, b);
        model.bottom = std::max(a, b);
        model.left = std::min(c1, c2);
        model.right = std::max(c1, c2);
        f.memo.SetColumnMode(true);
        f.memo.SetSelection({c1, a}, {c2, b});
        if (!f.memo.HasSelection())
            continue;
        const int op = Pick(rng, 0, 8);
        const std::u16string pasted = u"PP\nQ\nRRR";
        const int width = model.right - model.left;
        switch (op) {
        case 0:
            f.memo.KeyPress(u'#');
            for (int r = model.top; r <= model.bottom; ++r)
                model.Put(r, u"#");
            break;
        case 4: // overtype: a zero-width block takes the character after it in every row
            f.memo.FOverwrite = true;
            f.memo.KeyPress(u'#');
            model.right += model.left == model.right;
            for (int r = model.top; r <= model.bottom; ++r)
                model.Put(r, u"#");
            break;
        case 5:
            f.memo.acnColumnClear();
            for (int r = model.top; r <= model.bottom; ++r)
                model.Put(r, std::u16string(static_cast<std::size_t>(width), u' '));
            break;
        case 6:
            f.memo.acnColumnFill(u"ab\ncd");
            for (int r = model.top; r <= model.bottom; ++r)
                model.Put(r, u"ab");
            break;
        case 7:
            f.memo.acnColumnInsertBefore(u"<>");
            model.right = model.left;
            for (int r = model.top; r <= model.bottom; ++r)
                model.Put(r, u"<>");
            break;
        case 8: // upper case of each row's part; a short row has none
            f.memo.acnUpperCase();
            for (int r = model.top; r <= model.bottom; ++r) {
                std::u16string part =
                    TBlockModel::Part(model.lines[std::size_t(r)], model.left, model.right);
                for (char16_t& c : part)
                    c = c >= u'a' && c <= u'z' ? char16_t(c - 32) : c;
                if (!part.empty())
                    model.Put(r, part);
            }
            break;
        case 1:
        case 2: {
            if (op == 1)
                f.memo.Backspace();
            else
                f.memo.DeleteChar();
            if (model.left == model.right) { // the character before (at) the left edge
                if (op == 1 && model.left == 0)
                    break;
                model.left += op == 1 ? -1 : 0;
                model.right = model.left + 1;
            }
            for (int r = model.top; r <= model.bottom; ++r)
                model.Put(r, u"");
            break;
        }
        default: {
            f.clipboard.SetText(pasted, false);
            f.memo.PasteFromClipboard();
            const auto lines = ModelLines(pasted);
            for (std::size_t i = 0; i < lines.size(); ++i)
                model.Put(model.top + static_cast<int>(i), lines[i]);
            break;
        }
        }
        const std::string edited = f.Bytes();
        ASSERT_EQ(f.Text(), model.Text())
            << "op " << op << " block " << model.left << ".." << model.right << " rows "
            << model.top << ".." << model.bottom << " on\n"
            << original;
        if (edited == original)
            continue;
        f.memo.Undo();
        EXPECT_EQ(f.Bytes(), original);
        EXPECT_FALSE(f.memo.CanUndo()) << "one step";
        f.memo.Redo();
        EXPECT_EQ(f.Bytes(), edited);
    }
}

TEST(ColumnBlock, CopyOfABlockMatchesAwkColumnsPaddedToTheBlockWidth) {
    const std::string text = "alpha beta\nx\n\nthe longest line of all\nmid dle\n";
    TMemoFixture f(text);
    const auto dir = std::filesystem::temp_directory_path() / "zv-column-copy";
    std::filesystem::create_directories(dir);
    zvtest::WriteAll(dir / "in.txt", text);
    for (auto [top, bottom, left, right] : {std::array{0, 4, 2, 8}, std::array{1, 3, 0, 5},
                                            std::array{3, 4, 4, 4}, std::array{0, 2, 6, 30}}) {
        f.memo.SetColumnMode(true);
        f.memo.SetSelection({right, bottom}, {left, top}); // dragged up and to the left
        const int width = right - left;
        int status = 0;
        const std::string awk = zvtest::RunOutput(
            "awk 'NR>" + std::to_string(top) + " && NR<=" + std::to_string(bottom + 1) +
                " {printf \"%-" + std::to_string(width) + "s\\n\", substr($0, " +
                std::to_string(left + 1) + ", " + std::to_string(width) + ")}' '" +
                (dir / "in.txt").string() + "'",
            status);
        ASSERT_EQ(status, 0);
        std::string block = Utf16ToUtf8(f.memo.GetColumnSelText());
        for (std::size_t at; (at = block.find("\r\n")) != std::string::npos;)
            block.replace(at, 2, "\n");
        EXPECT_EQ(block + "\n", awk) << top << ".." << bottom << " x " << left << ".." << right;
    }
    std::filesystem::remove_all(dir);
}

TEST(MultiCaret, AddingEveryNextOccurrenceAndTypingEqualsSedAndClicksToggleCarets) {
    const std::string text = "foo bar foo\nxfoo\n\nfoo foo foo\nbarfoo\n";
    TMemoFixture f(text);
    f.memo.SetSelection({0, 0}, {3, 0});
    int added = 0;
    while (f.memo.acnMultiSelectionAddWord() && added < 100)
        ++added;
    EXPECT_EQ(f.memo.FMultiCursorList.size(), 7u);
    Type(f.memo, u"ba");
    f.memo.KeyPress(u'z');
    const auto dir = std::filesystem::temp_directory_path() / "zv-multi-sed";
    std::filesystem::create_directories(dir);
    zvtest::WriteAll(dir / "in.txt", text);
    EXPECT_EQ(f.Bytes(),
              zvtest::RunOutput("sed 's/foo/baz/g' '" + (dir / "in.txt").string() + "'"));
    std::filesystem::remove_all(dir);
    for (int i = 0; i < 3; ++i) // one step per key
        f.memo.Undo();
    EXPECT_EQ(f.Bytes(), text);

    // Ctrl+click: a caret is added, a second click at it takes it away again.
    f.memo.ExitMultiEditMode();
    f.memo.SetTextCursor(1, 0);
    f.memo.ToggleCaretAt({2, 1});
    f.memo.ToggleCaretAt({5, 3});
    ASSERT_EQ(f.memo.FMultiCursorList.size(), 3u);
    f.memo.ToggleCaretAt({2, 1});
    ASSERT_EQ(f.memo.FMultiCursorList.size(), 2u);
    EXPECT_TRUE(f.memo.AddCaretVertically(1));
    f.memo.KeyPress(u'!');
    EXPECT_EQ(Utf16ToUtf8(f.Text()), "f!oo bar foo\nxfoo\n\nfoo f!oo foo\nbarfo!o\n");
    f.memo.ExitMultiEditMode();
    EXPECT_FALSE(f.memo.FMultiEditMode);
}

// Runs `script` of sed over `text` (an outside oracle for the word edits).
std::string Sed(const std::string& text, const std::string& script) {
    const auto dir = std::filesystem::temp_directory_path() / "zv-sync-sed";
    std::filesystem::create_directories(dir);
    zvtest::WriteAll(dir / "in.txt", text);
    const std::string out =
        zvtest::RunOutput("sed '" + script + "' '" + (dir / "in.txt").string() + "'");
    std::filesystem::remove_all(dir);
    return out;
}

TEST(SyncEdit, AWordTypedInABlockChangesEveryWholeWordThereAsSedDoesAndUndoesPerKey) {
    const std::string text =
        "foo top foo\nfoo foo(foo) foobar\nxfoo foo_1 foo\nfoo, end foo\nfoo out\n";
    TMemoFixture f(text);
    f.memo.SetSelection({0, 1}, {12, 3}); // the block: rows 2 to 4 of sed, to the last "foo"
    f.memo.acnSyncEdit();
    ASSERT_TRUE(f.memo.FSyncEditMode);
    f.memo.SetTextCursor(7, 1); // at the end of the second "foo" of row 1
    Type(f.memo, u"XYZ");
    EXPECT_EQ(f.Bytes(), Sed(text, "2,4s/\\<foo\\>/fooXYZ/g"));
    f.memo.Backspace();
    EXPECT_EQ(f.Bytes(), Sed(text, "2,4s/\\<foo\\>/fooXY/g"));
    EXPECT_EQ(f.memo.FSyncData.WordAtCaret, u"fooXYZ");
    for (int i = 0; i < 4; ++i)
        f.memo.Undo();
    EXPECT_EQ(f.Bytes(), text);
    EXPECT_EQ(f.memo.FSyncData.xEnd, 12) << "the block's end comes back too";

    // A selected part of a word: every place of that text in the block, word or not.
    f.memo.SetSelection({4, 2}, {1, 2}); // "foo" of "xfoo", selected leftwards
    f.memo.KeyPress(u'Q');
    EXPECT_EQ(f.Bytes(), Sed(text, "2,4s/foo/Q/g"));
    f.memo.acnSyncEdit();
    EXPECT_FALSE(f.memo.FSyncEditMode);
    f.memo.KeyPress(u'!');
    EXPECT_EQ(Utf16ToUtf8(f.memo.RowText(2)).substr(0, 3), "xQ!") << "plain typing again";
}

} // namespace
} // namespace zv::test
