// Model-based tests: seeded random edit scripts (typing, Enter, Backspace, Delete, paste,
// selection delete, drag move, whole-line delete and duplicate) run on the control and on a
// plain model; after each edit the texts agree, undoing everything gives the original bytes
// back, and redoing everything gives the edited bytes.
#include "EditModel.h"
#include "MemoFixture.h"

#include "common/Utf.h"

#include <gtest/gtest.h>

#include <random>

namespace zv::test {
namespace {

// Pieces with surrogate pairs, combining marks and emoji modifiers: clusters of 1 to 4 units.
const std::u16string kPieces[] = {u"a",       u"b",          u" ",
                                  u"\t",      u"x1",         u"\u00e9",
                                  u"e\u0301", u"\U0001F600", u"\U0001F44D\U0001F3FD",
                                  u"(",       u"\"",         u"\u4e2d"};

std::u16string RandomText(std::mt19937& rng, int maxLen, bool lineEnds) {
    std::u16string s;
    const int n = std::uniform_int_distribution<int>(0, maxLen)(rng);
    for (int i = 0; i < n; ++i) {
        const int pick = std::uniform_int_distribution<int>(0, lineEnds ? 15 : 11)(rng);
        if (pick < 12)
            s += kPieces[pick];
        else
            s += pick == 12 ? u"\n" : pick == 13 ? u"\r\n" : pick == 14 ? u"\r" : u"  ";
    }
    return s;
}

class TScript {
public:
    TScript(unsigned seed) : rng(seed) {
        std::u16string start;
        const int lines = std::uniform_int_distribution<int>(0, 6)(rng);
        for (int i = 0; i < lines; ++i)
            start += (i ? u"\n" : u"") + RandomText(rng, 12, false);
        fx = std::make_unique<TMemoFixture>(Utf16ToUtf8(start));
        model = std::make_unique<TEditModel>(fx->Text());
        fx->memo.FTabAsSpaces = false;
        fx->memo.FAutoIndent = std::uniform_int_distribution<int>(0, 1)(rng) == 1;
        original = fx->Bytes();
    }

    int Rand(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }

    // A position on a cluster boundary, sometimes past the row's end.
    TZvPos RandomPos(bool virtualToo) {
        const int y = Rand(0, static_cast<int>(model->Lines.size()) - 1);
        const auto& row = model->Lines[y];
        int x = 0;
        const int target = Rand(0, static_cast<int>(row.size()) + (virtualToo ? 4 : 0));
        while (x < target && x < static_cast<int>(row.size()))
            x = TEditModel::NextCluster(row, x);
        return {target > static_cast<int>(row.size()) ? target : x, y};
    }

    void PlaceCaret() {
        TZvMemo& m = fx->memo;
        const int roll = Rand(0, 9);
        if (roll < 5)
            return; // keep the caret: typing runs merge
        const TZvPos p = RandomPos(true);
        m.SetTextCursor(p.X, p.Y);
        if (roll == 9) { // a selection inside the text
            const TZvPos q = RandomPos(false);
            m.SetSelection(q, {std::min(p.X, static_cast<int>(model->Lines[p.Y].size())), p.Y});
        }
    }

    void Step() {
        PlaceCaret();
        TZvMemo& m = fx->memo;
        const TZvPos caret = m.Caret();
        TZvPos s, e;
        m.OrderedSelection(s, e);
        switch (Rand(0, 10)) {
        case 0:
        case 1: {
            const std::u16string piece = kPieces[Rand(0, 11)];
            for (char16_t c : piece) {
                m.OrderedSelection(s, e);
                model->Type(m.Caret(), s, e, c);
                m.InsertChar(c);
            }
            break;
        }
        case 2:
            model->Enter(caret, s, e, m.FAutoIndent);
            m.EnterPress();
            break;
        case 3:
            model->Backspace(caret, s, e);
            m.Backspace();
            break;
        case 4:
            model->Delete(caret, s, e);
            m.DeleteChar();
            break;
        case 5: {
            const std::u16string text = RandomText(rng, 8, true);
            model->Paste(caret, s, e, text);
            m.InsertText(text);
            break;
        }
        case 6: {
            const TZvPos a = RandomPos(false), b = RandomPos(false);
            m.SetSelection(a, b);
            model->DeleteRange(std::min(a, b), std::max(a, b));
            m.DeleteSelection();
            break;
        }
        case 8:
            model->DeleteLine(caret.Y);
            m.DeleteCurrentLine();
            break;
        case 9:
            if (s != e)
                model->DuplicateLines(s.Y, e.Y);
            else
                model->DuplicateLines(caret.Y, caret.Y);
            m.DuplicateCurrentLine();
            break;
        default: {
            const TZvPos a = RandomPos(false), b = RandomPos(false), drop = RandomPos(false);
            m.SetSelection(a, b);
            const std::u16string moved = m.GetSelection();
            model->Move(std::min(a, b), std::max(a, b), drop);
            m.DropText(drop.X, drop.Y, moved, true);
            break;
        }
        }
    }

    std::mt19937 rng;
    std::unique_ptr<TMemoFixture> fx;
    std::unique_ptr<TEditModel> model;
    std::string original;
};

void SwitchEveryInputAidOn(TZvMemo& m) {
    m.FAutoIndent = m.FTabAsSpaces = m.FOverwrite = m.FSmartBackspace = m.FSmartTab = true;
    m.FAutoCloseBracesText = m.FSmartPaste = m.FOverwritePasteMode = true;
    m.FEncloseSelectionWithParenthesis = m.FEncloseSelectionWithQuotes = true;
}

TEST(EditModel, RandomScriptsMatchThePlainModelAndUndoRedoExactly) {
    constexpr int kScripts = 2000;
    for (unsigned seed = 1; seed <= kScripts; ++seed) {
        TScript script(seed);
        const int steps = script.Rand(1, 40);
        for (int i = 0; i < steps; ++i) {
            script.Step();
            ASSERT_EQ(script.fx->Text(), script.model->Text()) << "seed " << seed << " step " << i;
        }
        const std::string edited = script.fx->Bytes();
        TZvMemo& m = script.fx->memo;
        SwitchEveryInputAidOn(m); // undo and redo must replay the text as it was, unaided
        for (int guard = 0; m.CanUndo() && guard < 1000; ++guard)
            m.Undo();
        ASSERT_EQ(script.fx->Bytes(), script.original) << "undo all, seed " << seed;
        ASSERT_FALSE(m.Modified()) << "seed " << seed;
        for (int guard = 0; m.CanRedo() && guard < 1000; ++guard)
            m.Redo();
        ASSERT_EQ(script.fx->Bytes(), edited) << "redo all, seed " << seed;
        ASSERT_EQ(m.Modified(), edited != script.original) << "seed " << seed;
    }
}

// The modified state says exactly whether the text (with its line ends) differs from the
// text at the last save, through edits, undo past the save point, redo past it, saves in
// the middle of the history and edits that put back what was there.
TEST(EditModel, ModifiedTellsWhetherTheTextDiffersFromTheSavedText) {
    constexpr int kScripts = 1500;
    int returnsToSaved = 0;
    for (unsigned seed = 1; seed <= kScripts; ++seed) {
        TScript script(seed);
        TZvMemo& m = script.fx->memo;
        std::u16string saved = script.fx->Text();
        const int steps = script.Rand(1, 60);
        for (int i = 0; i < steps; ++i) {
            const int roll = script.Rand(0, 19);
            if (roll < 11) {
                script.Step();
            } else if (roll < 15) {
                for (int n = script.Rand(1, 3); n > 0; --n)
                    m.Undo();
            } else if (roll < 18) {
                for (int n = script.Rand(1, 3); n > 0; --n)
                    m.Redo();
            } else if (roll == 18) {
                m.Saved();
                saved = script.fx->Text();
            } else { // type a character and take it back: the text is the same again
                const char16_t c = kPieces[script.Rand(0, 11)].front();
                m.ClearSelection();
                m.InsertChar(c);
                m.Backspace();
            }
            if (roll >= 11 && roll < 18) // undo and redo leave the plain model behind
                script.model = std::make_unique<TEditModel>(script.fx->Text());
            const std::u16string now = script.fx->Text();
            returnsToSaved += i > 0 && now == saved && m.UndoList().Count() > 0;
            ASSERT_EQ(m.Modified(), now != saved) << "seed " << seed << " step " << i;
        }
    }
    // The scripts came back to the saved text often, not only by undoing everything.
    EXPECT_GT(returnsToSaved, kScripts / 4);
}

// Lines longer than 4096 units load as a row and continuation rows. Edits across the cuts
// take the continuations along in their records: undo gives the loaded bytes back (no line
// end appears where a row was cut), redo the edited ones, and the edit itself matches the
// same edit on the plain string at the logical offsets the rows stand for.
TEST(EditModel, EditsAcrossCutLongLinesUndoToTheExactBytes) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 rng(seed);
        const auto rand = [&](int lo, int hi) {
            return std::uniform_int_distribution<int>(lo, hi)(rng);
        };
        std::string start;
        for (int line = rand(1, 4); line > 0; --line) {
            const int len = line == 1 || rand(0, 1) ? rand(4097, 13000) : rand(0, 30);
            for (int i = 0; i < len; ++i)
                start += static_cast<char>('a' + (i * 7 + line) % 26);
            start += "\n";
        }
        TMemoFixture fx(start);
        ASSERT_GE(fx.lines.Count(), 3) << "seed " << seed; // a cut line and the last row
        ASSERT_EQ(fx.Bytes(), start) << "seed " << seed;
        std::u16string text = Utf8ToUtf16(start);
        // Row position to offset in the plain text: continuation rows add no line end.
        const auto offset = [&](TZvPos p) {
            std::size_t at = 0;
            for (int row = 0; row < p.Y; ++row)
                at += fx.lines.Get(row).size() + (fx.lines.IsLineWrapped(row + 1) ? 0 : 1);
            return at + static_cast<std::size_t>(p.X);
        };
        const auto randomPos = [&] {
            const int y = rand(0, fx.lines.Count() - 1);
            return TZvPos{rand(0, static_cast<int>(fx.lines.Get(y).size())), y};
        };
        for (int step = rand(1, 6); step > 0; --step) {
            TZvPos a = randomPos(), b = randomPos();
            if (b < a)
                std::swap(a, b);
            const std::u16string paste = rand(0, 1) ? u"" : u"new\nrow";
            const std::size_t from = offset(a), to = offset(b);
            fx.memo.SetSelection(a, b);
            if (paste.empty())
                fx.memo.DeleteSelection();
            else
                fx.memo.InsertText(paste);
            text.replace(from, to - from, paste);
            ASSERT_TRUE(Utf8ToUtf16(fx.Bytes()) == text) << "seed " << seed; // no huge dumps
        }
        const std::string edited = fx.Bytes();
        while (fx.memo.CanUndo())
            fx.memo.Undo();
        ASSERT_EQ(fx.Bytes(), start) << "seed " << seed;
        ASSERT_FALSE(fx.memo.Modified()) << "seed " << seed;
        while (fx.memo.CanRedo())
            fx.memo.Redo();
        ASSERT_EQ(fx.Bytes(), edited) << "seed " << seed;
        ASSERT_EQ(fx.memo.Modified(), edited != start) << "seed " << seed;
    }
}

} // namespace
} // namespace zv::test
