// Two views of one document, edited in turn through the real edit path while the document's
// scanner sweeps on its thread: the text stays that of a plain model, the other view's caret
// keeps pointing at the same character (the change record moves it), every caret stays in
// the text, and in the end every row state equals a fresh scan. Run under ThreadSanitizer in
// the tsan build.
#include "ScanTestSupport.h"

#include "ZvMemoControl/ZvMemo.h"
#include "syntax/DocumentScan.h"

#include <random>

namespace zv::test {
namespace {

using namespace std::chrono_literals;

// The model: the text with "\n" line ends, positions as offsets into it.
struct TModel {
    std::u16string Text;

    TZvPos PosOf(std::size_t offset) const {
        TZvPos p;
        for (std::size_t i = 0; i < offset; ++i) {
            if (Text[i] == u'\n') {
                ++p.Y;
                p.X = 0;
            } else {
                ++p.X;
            }
        }
        return p;
    }
    std::size_t OffsetOf(TZvPos p) const {
        std::size_t i = 0;
        for (int row = 0; row < p.Y; ++row)
            i = Text.find(u'\n', i) + 1;
        return i + static_cast<std::size_t>(p.X);
    }
};

std::u16string Joined(const TZvMemoStrings& lines) {
    std::u16string out;
    for (int row = 0; row < lines.Count(); ++row)
        out.append(lines.Get(row)).append(row + 1 < lines.Count() ? u"\n" : u"");
    return out;
}

std::u16string Program(int rows) {
    std::u16string text;
    for (int i = 0; i < rows; ++i)
        text += i % 7 == 0 ? u"/* a\n" : i % 7 == 3 ? u"b */ int x = \"s\";\n" : u"f(1); // c\n";
    return text + u"end";
}

// A shown view as the thread sees it: it sweeps only while some view shows.
struct TShownView : IScanObserver {
    bool ScanVisible() const override { return true; }
    bool ScanBusy() const override { return false; }
    void RowsScanned(int) override {}
};

TEST(DocumentViews, TwoViewsEditOneDocumentWhileItsScannerSweeps) {
    auto host = std::make_shared<TMemoStyleHost>();
    {
        TZvSyntax loader;
        ASSERT_TRUE(loader.LoadStyleFromFile(
            host.get(), Utf8ToUtf16((ShippedSyntaxFolder() / "c.syx").string()), u"c", 1, u""));
    }
    const std::u16string pieces[] = {u"",   u"x",   u"/* ",    u" */", u"\"",
                                     u"\n", u"// ", u"ab\ncd", u"{\n}"};
    TShownView shown; // outlives every scan below
    for (unsigned seed = 1; seed <= 3; ++seed) {
        std::mt19937 rng(seed);
        TModel model{Program(2000)};
        auto doc = std::make_shared<TZvTextDocument>();
        doc->Lines().SetTextStr(model.Text);
        doc->SetStyleHost(host);
        auto scan = std::make_shared<TDocumentScan>(doc->Lines(), host, TScanOptions{},
                                                    TBackgroundTiming{0ms, 1ms, 1ms, 1ms});
        doc->SetReader(scan);
        scan->AddObserver(&shown);
        scan->Start();
        TZvMemo views[2];
        for (TZvMemo& view : views)
            view.SetDocument(doc);
        std::vector<std::u16string> history{model.Text};
        std::size_t done = 1; // texts of history[0, done) are undoable or current
        for (int step = 0; step < 400; ++step) {
            TZvMemo& view = views[rng() % 2];
            TZvMemo& other = &view == &views[0] ? views[1] : views[0];
            const std::size_t size = model.Text.size();
            const std::size_t from = rng() % (size + 1), to = std::min(from + rng() % 6, size);
            const std::u16string& text = pieces[rng() % std::size(pieces)];
            // The other view's caret: often at or inside the range the edit replaces.
            std::size_t otherAt =
                rng() % 3 == 0 ? from + rng() % (to - from + 1) : rng() % (size + 1);
            const TZvPos otherPos = model.PosOf(otherAt);
            other.SetTextCursor(otherPos.X, otherPos.Y);
            const unsigned kind = rng() % 10;
            if (kind == 0 && view.CanUndo()) {
                ASSERT_TRUE(view.Undo());
                model.Text = history[--done - 1];
            } else if (kind == 1 && view.CanRedo()) {
                ASSERT_TRUE(view.Redo());
                model.Text = history[done++];
            } else {
                if (from == to && text.empty())
                    continue;
                view.SetSelection(model.PosOf(from), model.PosOf(to));
                if (text.empty())
                    ASSERT_TRUE(view.DeleteSelection());
                else
                    ASSERT_TRUE(view.InsertText(text));
                model.Text.replace(from, to - from, text);
                history.resize(done);
                history.push_back(model.Text);
                ++done;
                // A position before the edit, or where text is inserted, stays; one behind it
                // moves with the text; one inside the replaced range goes to its start.
                otherAt = otherAt <= from ? otherAt
                          : otherAt >= to ? otherAt + text.size() - (to - from)
                                          : from;
                ASSERT_EQ(model.OffsetOf(other.Caret()), otherAt)
                    << "seed " << seed << " step " << step;
            }
            ASSERT_EQ(Joined(doc->Lines()), model.Text) << "seed " << seed << " step " << step;
            for (const TZvMemo& v : views) {
                ASSERT_LT(v.Caret().Y, v.RowCount());
                ASSERT_LE(v.Caret().X, v.RowLength(v.Caret().Y));
            }
            if (step % 5 == 0) // the painter reads states on this thread meanwhile
                scan->Scanner().GetUpStyle(int(rng() % doc->Lines().Count()));
            if (step % 50 == 0)
                std::this_thread::sleep_for(2ms); // let a sweep get under way
        }
        ASSERT_TRUE(scan->Thread().WaitComplete(30s));
        scan->PauseReading();
        TStyle fresh;
        ClearStyle(fresh, true);
        TScanScratch scratch;
        for (int row = 0; row < doc->Lines().Count(); ++row) {
            TScanRequest request;
            request.Text = doc->Lines().Get(row);
            ScanRow(scan->Context(), request, fresh, scratch);
            fresh.FBooleanArray |= 1u;
            TStyle stored;
            ASSERT_TRUE(scan->Scanner().States().Get(row, stored)) << row;
            ASSERT_TRUE(stored == fresh) << "seed " << seed << " row " << row;
        }
        scan->ResumeReading();
        scan->RemoveObserver(&shown);
    }
}

} // namespace
} // namespace zv::test
