// Editing lines that are cut into rows (lines above the forced limit, and word wrap at a
// width): seeded random scripts of typing, Enter, Backspace, Delete, paste, selection
// deletes, undo and redo, with the caret put at, just before and just after the cuts, and
// wrap switched and its width changed between the steps. After every step the logical text
// equals a plain string, saving gives its bytes, an edit that changed nothing left no undo
// record, and the document is modified exactly when the text differs from the loaded one.
// Hard wrap: typed lines cut at the right margin with real line ends, one undo step a cut.
// Word wrap of random lines: rows join to the line, fit the width and cut at breaks.
// Loading: a read slice that ends inside a pair or a CR LF splits neither.
#include "MemoFixture.h"

#include "ZvMemoControl/WrapRows.h"
#include "common/Utf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace zv::test {
namespace {

class TCutScript {
public:
    explicit TCutScript(unsigned seed) : rng(seed) {
        std::string start;
        for (int line = Rand(1, 4); line > 0; --line) {
            const int length = Rand(0, 2) ? Rand(4090, 9000) : Rand(0, 40);
            for (int i = 0; i < length; ++i)
                start += "ab cd(ef),g.h"[(i * 7 + line) % 13];
            start += line > 1 || Rand(0, 1) ? "\n" : "";
        }
        fx = std::make_unique<TMemoFixture>(start);
        fx->memo.UndoList().SetLimit(0); // every record stays: the plain texts follow them
        fx->memo.FAutoIndent = false;
        fx->memo.FTabAsSpaces = false;
        text = original = Utf8ToUtf16(start);
        states = {text};
    }

    int Rand(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
    TZvMemo& Memo() { return fx->memo; }
    TZvMemoStrings& Rows() { return fx->lines; }

    // A row position's offset in the plain text: a cut adds nothing, a line end one unit.
    int Offset(TZvPos p) {
        int at = 0;
        for (int row = 0; row < p.Y; ++row)
            at += Rows().GetLineLength(row) + (Rows().IsLineWrapped(row + 1) ? 0 : 1);
        return at + p.X;
    }

    // At a cut (either side of it), next to one, or anywhere.
    TZvPos PickPosition() {
        std::vector<int> cuts;
        for (int row = 0; row + 1 < Rows().Count(); ++row)
            if (Rows().IsLineWrapped(row + 1))
                cuts.push_back(row);
        const int rows = std::max(Rows().Count(), 1);
        if (cuts.empty() || Rand(0, 3) == 0) {
            const int y = Rand(0, rows - 1);
            return {Rand(0, Rows().GetLineLength(y)), y};
        }
        const int row = cuts[static_cast<std::size_t>(Rand(0, int(cuts.size()) - 1))];
        const int length = Rows().GetLineLength(row);
        switch (Rand(0, 3)) {
        case 0:
            return {length, row};
        case 1:
            return {std::max(length - 1, 0), row};
        case 2:
            return {0, row + 1};
        default:
            return {std::min(1, Rows().GetLineLength(row + 1)), row + 1};
        }
    }

    // The plain text's side of an edit at the caret: `removeBefore`/`removeAfter` units
    // around it unless a selection goes, then `insert`.
    void Expect(int removeBefore, int removeAfter, const std::u16string& insert) {
        TZvPos s, e;
        Memo().OrderedSelection(s, e);
        int from = Offset(s), to = Offset(e);
        if (from == to) {
            from = std::max(from - removeBefore, 0);
            to = std::min(to + removeAfter, static_cast<int>(text.size()));
        }
        text.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from), insert);
    }

    void Place() {
        const TZvPos p = PickPosition();
        Memo().SetTextCursor(p.X, p.Y);
        if (Rand(0, 5) == 0)
            Memo().SetSelection(PickPosition(), p);
        else if (RowsAreCut(Memo().DocState()) && Rand(0, 3) == 0) {
            // Right arrow: over a cut it moves to the next row (no space past a row's end)
            const int before = Offset(Memo().Caret());
            const bool atCut =
                Memo().Caret().X == Rows().GetLineLength(p.Y) && Rows().IsLineWrapped(p.Y + 1);
            const TZvPos from = Memo().Caret();
            Memo().MoveCursor(1, 0, 0);
            const bool atEnd = before == static_cast<int>(text.size());
            ASSERT_EQ(Offset(Memo().Caret()), before + (atCut || atEnd ? 0 : 1))
                << from.X << "," << from.Y << " to " << Memo().Caret().X << "," << Memo().Caret().Y
                << " of " << Rows().Count() << " rows";
            ASSERT_LE(Memo().Caret().X, Rows().GetLineLength(Memo().Caret().Y));
        }
    }

    void Edit() {
        TZvPos s, e;
        Memo().OrderedSelection(s, e);
        lastOp = "at " + std::to_string(Memo().Caret().X) + "," + std::to_string(Memo().Caret().Y) +
                 " sel " + std::to_string(s.X) + "," + std::to_string(s.Y) + "-" +
                 std::to_string(e.X) + "," + std::to_string(e.Y);
        const int recordsBefore = Memo().UndoList().Count() - Memo().UndoList().FPos;
        const std::u16string before = text;
        const int op = Rand(0, 6);
        const bool inserts = op <= 2 || op == 5; // may put back what it replaced
        switch (op) {
        case 0:
        case 1: {
            const char16_t c = u"xy ;("[Rand(0, 4)];
            Expect(0, 0, std::u16string(1, c));
            Memo().InsertChar(c);
            break;
        }
        case 2:
            lastOp += " enter";
            Expect(0, 0, u"\n");
            Memo().EnterPress();
            break;
        case 3:
            lastOp += " backspace";
            Expect(1, 0, u"");
            Memo().Backspace();
            break;
        case 4:
            lastOp += " delete";
            Expect(0, 1, u"");
            Memo().DeleteChar();
            break;
        case 5: {
            const std::u16string paste = Rand(0, 1) ? u"p\nq" : std::u16string(Rand(1, 5000), u'z');
            Expect(0, 0, paste);
            Memo().InsertText(paste);
            break;
        }
        default: {
            Memo().SetSelection(PickPosition(), PickPosition());
            Expect(0, 0, u"");
            Memo().DeleteSelection();
            break;
        }
        }
        const int records = Memo().UndoList().Count() - Memo().UndoList().FPos;
        states.resize(static_cast<std::size_t>(recordsBefore) + 1);
        if (records > recordsBefore && (text != before || inserts))
            states.push_back(text);
        else if (text == before)
            ASSERT_EQ(records, recordsBefore)
                << "an edit that changed nothing was recorded: " << lastOp;
        else
            states.back() = text; // typing merged into the last record
    }

    void Step() {
        const int roll = Rand(0, 19);
        if (roll == 0) {
            Memo().SetWordWrap(Rand(0, 1) == 1, Rand(14, 90));
            lastOp = "wrap";
        } else if (roll <= 2 && Memo().CanUndo()) {
            Memo().Undo();
            lastOp = "undo";
            text = states[static_cast<std::size_t>(Memo().UndoList().Count() -
                                                   Memo().UndoList().FPos)];
        } else if (roll == 3 && Memo().CanRedo()) {
            Memo().Redo();
            lastOp = "redo";
            text = states[static_cast<std::size_t>(Memo().UndoList().Count() -
                                                   Memo().UndoList().FPos)];
        } else {
            Place();
            Edit();
        }
    }

    void Check(int step) {
        const std::u16string saved = Utf8ToUtf16(fx->Bytes());
        const auto differs = std::mismatch(saved.begin(), saved.end(), text.begin(), text.end());
        ASSERT_TRUE(saved == text)
            << "step " << step << " after " << lastOp << ": at " << differs.first - saved.begin()
            << " of " << saved.size() << " and " << text.size(); // no huge dumps
        ASSERT_EQ(Memo().Modified(), text != original) << "step " << step;
        const int limit = WordWrapInForce(Memo().DocState()) ? Memo().DocState().FWrapColumns
                                                             : Memo().DocState().FForcewrapLength;
        for (int row = 0; row < Rows().Count(); ++row)
            ASSERT_LE(Rows().GetLineLength(row), limit) << "row " << row << " step " << step;
    }

    std::mt19937 rng;
    std::unique_ptr<TMemoFixture> fx;
    std::u16string text, original;
    std::string lastOp;                 // for the failure messages
    std::vector<std::u16string> states; // the text after each undo record, the loaded first
};

TEST(CutRows, EditsAtCutsMatchThePlainTextUndoAndSave) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        TCutScript script(seed);
        for (int step = 0; step < 150; ++step) {
            script.Step();
            script.Check(step);
            if (::testing::Test::HasFatalFailure()) {
                ADD_FAILURE() << "seed " << seed;
                return;
            }
        }
        while (script.Memo().CanUndo()) {
            script.Memo().Undo();
            const TZvUndoList& list = script.Memo().UndoList();
            ASSERT_TRUE(Utf8ToUtf16(script.fx->Bytes()) ==
                        script.states[static_cast<std::size_t>(list.Count() - list.FPos)])
                << "seed " << seed << " undo to " << list.Count() - list.FPos;
        }
        ASSERT_EQ(Utf8ToUtf16(script.fx->Bytes()), script.original) << "seed " << seed;
        ASSERT_FALSE(script.Memo().Modified()) << "seed " << seed;
    }
}

} // namespace
} // namespace zv::test

namespace zv::test {
namespace {

// Typing past the right margin with hard wrap cuts the line with real line ends behind the
// line's indent; each cut is one undo step of its own, and taking the cuts out (each line
// end with the indent behind it) gives back what was typed.
TEST(CutRows, HardWrapCutsTypedLinesAtTheMarginInOneUndoStepEach) {
    TMemoFixture fx;
    TZvMemo& m = fx.memo;
    m.DocState().FHardWrapAtRightMargin = true;
    m.FRightMargin = 20;
    m.FAutoIndent = false;
    const std::u16string typed =
        u"  The quick brown fox jumps over the lazy dog, again (and again) until "
        u"the margin has been passed several times by a fair amount of words.";
    int cuts = 0;
    for (char16_t c : typed) {
        const std::u16string before = fx.Text();
        const int rows = m.RowCount();
        m.InsertChar(c);
        if (m.RowCount() == rows)
            continue;
        ++cuts;
        const std::u16string wrapped = fx.Text();
        m.Undo(); // the cut alone
        ASSERT_EQ(fx.Text(), before + c);
        m.Redo();
        ASSERT_EQ(fx.Text(), wrapped);
    }
    EXPECT_GT(cuts, 4);
    std::u16string text = fx.Text(), joined;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n') {
            i += 2; // the indent of two blanks
            continue;
        }
        joined += text[i];
    }
    EXPECT_EQ(joined, typed);
    for (int row = 0; row < m.RowCount(); ++row)
        EXPECT_LE(m.RowLength(row), 20 + 2) << row;
}

} // namespace
} // namespace zv::test

namespace zv::test {
namespace {

constexpr std::u16string_view kBreakAfter = u" \t,.:;=)}]>";
constexpr std::u16string_view kBreakBefore = u"({[<";

// Columns of `row` drawn from its own start (tabs to stops of `tab`).
int Columns(std::u16string_view row, int tab) {
    int column = 0;
    for (char16_t c : row)
        column = c == u'\t' ? (column / tab + 1) * tab : column + 1;
    return column;
}

// Word wrap of random lines (letters, blanks, tabs, punctuation, brackets, surrogate pairs,
// comment marks) at random widths, absolute or at breaks, with indented continuations or
// not, with the syntax's comment marks or none. The rows of
// each line join to the line, and saving gives the loaded bytes; no row is wider than its
// width (the first row the width, a continuation the width less the first row's indent,
// kept to 12) unless it is one unbreakable unit; no row starts inside a surrogate pair. A row
// cut short of the next unit fitting is cut at a break, with no break between the cut and
// the width within the 20 units looked at, or before a comment mark it would have split; an
// absolute cut always fills the row.
TEST(CutRows, WrapCutsAtBreaksWithinTheWidthAndJoinsBack) {
    std::mt19937 rng(16);
    const auto rand = [&rng](int lo, int hi) {
        return std::uniform_int_distribution<int>(lo, hi)(rng);
    };
    const std::vector<std::u16string> alphabet = {
        u"a", u"b", u"c", u"d", u"e",          u"f",          u" ",  u" ",  u"\t", u",",
        u".", u":", u";", u"=", u")",          u"}",          u"]",  u">",  u"(",  u"{",
        u"[", u"<", u"-", u"_", u"\U0001F600", u"\U0001D11E", u"/*", u"*/", u"*",  u"/"};
    // Lines of words with no break at all, where only comment marks move a cut.
    const std::vector<std::u16string> unbroken = {u"a", u"b", u"c", u"/*", u"*/", u"*", u"/"};
    for (int round = 0; round < 90; ++round) {
        const std::vector<std::u16string>& units = round % 3 ? alphabet : unbroken;
        std::u16string text;
        for (int line = rand(1, 5); line > 0; --line) {
            text.append(static_cast<std::size_t>(rand(0, 6)), u' ');
            for (int i = rand(0, 300); i > 0; --i)
                text += units[static_cast<std::size_t>(rand(0, int(units.size()) - 1))];
            text += u'\n';
        }
        const std::string bytes = Utf16ToUtf8(text);
        TMemoFixture fx(bytes);
        TZvMemoState& state = fx.memo.DocState();
        state.FWrapAtAbsoluteMargin = rand(0, 1);
        state.FIndentWrappedLines = rand(0, 1);
        state.FTabSize = rand(1, 8);
        state.FWrapCommentStart = rand(0, 1) ? u"/*" : u"";
        state.FWrapCommentEnd = state.FWrapCommentStart.empty() ? u"" : u"*/";
        const int width = rand(16, 70);
        fx.memo.SetWordWrap(true, width);
        SCOPED_TRACE(testing::Message() << "round " << round << " width " << width);
        ASSERT_EQ(fx.Bytes(), bytes);

        std::u16string joined, firstRow;
        for (int row = 0; row < fx.lines.Count(); ++row) {
            const std::u16string_view s = fx.lines.Get(row);
            const bool continuation = row > 0 && fx.lines.IsLineWrapped(row);
            const bool continues = row + 1 < fx.lines.Count() && fx.lines.IsLineWrapped(row + 1);
            if (!continuation)
                firstRow = s;
            joined += (row > 0 && !continuation ? u"\n" : u"") + std::u16string(s);
            int allowed = width;
            if (continuation && state.FIndentWrappedLines) {
                const std::size_t lead =
                    std::min(firstRow.find_first_not_of(u" \t"), firstRow.size());
                allowed = std::max(
                    width - std::min(Columns(firstRow.substr(0, lead), state.FTabSize), 5), 12);
            }
            const bool pair = s.size() == 2 && s[0] >= 0xD800 && s[0] < 0xDC00;
            ASSERT_TRUE(Columns(s, state.FTabSize) <= allowed || s.size() == 1 || pair) << row;
            ASSERT_FALSE(!s.empty() && s[0] >= 0xDC00 && s[0] < 0xE000) << row;
            if (!continues)
                continue;
            const std::u16string_view next = fx.lines.Get(row + 1);
            const std::size_t unit = next[0] >= 0xD800 && next[0] < 0xDC00 ? 2 : 1;
            const bool full = Columns(std::u16string(s) + std::u16string(next.substr(0, unit)),
                                      state.FTabSize) > allowed;
            if (state.FWrapAtAbsoluteMargin) {
                ASSERT_TRUE(full) << row;
                continue;
            }
            const bool atBreak = kBreakAfter.find(s.back()) != std::u16string_view::npos ||
                                 kBreakBefore.find(next[0]) != std::u16string_view::npos;
            const std::u16string across{s.back(), next[0]};
            const bool comments = !state.FWrapCommentStart.empty();
            const bool beforeMark =
                comments && (next.starts_with(u"/*") || next.starts_with(u"*/"));
            ASSERT_FALSE(comments && (across == u"/*" || across == u"*/")) << row;
            ASSERT_TRUE(full || atBreak || beforeMark) << row;
            // The units after the cut that still fit the row hold no break it passed over.
            std::u16string longer(s);
            for (std::size_t i = 0; i < next.size() && longer.size() < s.size() + 20; ++i) {
                longer += next[i];
                if (Columns(longer, state.FTabSize) > allowed)
                    break;
                ASSERT_EQ(kBreakAfter.find(next[i]), std::u16string_view::npos)
                    << row << " passed a break at " << i;
            }
        }
        ASSERT_EQ(joined, text);
    }
}

} // namespace
} // namespace zv::test

namespace zv::test {
namespace {

std::string Utf16LeWithBom(std::u16string_view text) {
    std::string bytes = "\xFF\xFE";
    for (char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

// Long lines read in slices of the file: a line of astral characters whose forced cut ends
// where a slice ends, with the slice ending inside a pair, and a CR LF split by a slice end.
// No row starts inside a pair; saving gives the file's bytes; a character typed at each cut
// near the slice end saves as the same insertion into the plain text, and undo gives the
// file back.
TEST(CutRows, LoadedCutsKeepSurrogatePairsAndLineEndsAcrossReadSlices) {
    const std::u16string pair = u"\U0001F600";
    for (int shift = -1; shift <= 1; ++shift) {
        // A slice is 250000 units: the row from "c" fills the limit up to that unit.
        std::u16string split(static_cast<std::size_t>(142 + shift), u'a');
        split += u"\r\n";
        for (int i = 0; i < 2048 * 60; ++i)
            split += pair;
        split += u'c';
        for (int i = 0; i < 5000; ++i)
            split += pair;
        std::u16string crlf(static_cast<std::size_t>(249999 + shift), u'x');
        crlf += u"\r\nend\r\n";
        for (const std::u16string& text : {split, crlf}) {
            const std::string bytes = Utf16LeWithBom(text);
            const auto load = [&bytes] {
                auto fx = std::make_unique<TMemoFixture>();
                fx->lines.LoadFromBytes(bytes);
                fx->memo.SetLines(&fx->lines);
                fx->memo.Saved();
                return fx;
            };
            const auto fx = load();
            ASSERT_EQ(fx->Bytes(), bytes) << shift;
            std::vector<std::pair<TZvPos, std::size_t>> cuts; // near the slice end: row end, offset
            std::size_t offset = 0;
            for (int row = 0; row < fx->lines.Count(); ++row) {
                const std::u16string_view s = fx->lines.Get(row);
                ASSERT_FALSE(!s.empty() && (s[0] & 0xFC00) == 0xDC00) << shift << " row " << row;
                offset += s.size();
                if (row + 1 == fx->lines.Count() || !fx->lines.IsLineWrapped(row + 1))
                    offset += 2;
                else if (offset + 5000 > 250000 && offset < 255000)
                    cuts.push_back({{static_cast<int>(s.size()), row}, offset});
            }
            ASSERT_FALSE(cuts.empty()) << shift;
            for (const auto& [end, at] : cuts)
                for (const TZvPos p : {end, TZvPos{0, end.Y + 1}}) { // either side of the cut
                    const auto edited = load();
                    edited->memo.SetTextCursor(p.X, p.Y);
                    edited->memo.KeyPress(u'Z');
                    std::u16string expected = text;
                    expected.insert(at, u"Z");
                    ASSERT_TRUE(edited->Bytes() == Utf16LeWithBom(expected)) << shift << " " << p.Y;
                    edited->memo.Undo();
                    ASSERT_TRUE(edited->Bytes() == bytes) << shift << " row " << p.Y;
                }
        }
    }
}

} // namespace
} // namespace zv::test
