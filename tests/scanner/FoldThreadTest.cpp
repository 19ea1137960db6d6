// Folds rebuilt by the document's background thread while the text is edited through the
// edit path: once typing stops, every row's fold data equals a fresh full pass over the same
// text, the code explorer's structure handed over with the folds equals a fresh build, and a
// closed fold stays closed over an edit elsewhere. Run under ThreadSanitizer in the tsan build.
#include "FoldSupport.h"

#include "ZvMemoControl/ZvMemo.h"
#include "syntax/CodeStructure.h"
#include "syntax/DocumentScan.h"

#include <random>

namespace zv::test {
namespace {

using namespace std::chrono_literals;

// A shown view that only notes that a pass is ready (the thread must not wait for it).
struct TFoldView : IScanObserver {
    bool ScanVisible() const override { return true; }
    bool ScanBusy() const override { return false; }
    void RowsScanned(int) override {}
    void FoldsReady() override { Ready.store(true); }
    std::atomic<bool> Ready{false};
};

// Waits until a pass over the present text reached the rows (as the widget's posted call
// does it, on this thread).
bool WaitForFolds(TDocumentScan& scan, TFoldView& view, TZvMemoStrings& lines) {
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (std::chrono::steady_clock::now() < deadline) {
        if (view.Ready.exchange(false) && scan.ApplyFolds(lines))
            return true;
        std::this_thread::sleep_for(1ms);
    }
    return false;
}

// The items of a structure as text: kind, name, rows.
std::vector<std::string> Outline(const TCodeStructure& s) {
    std::vector<std::string> out;
    for (const TStructureItem& item : s.Items)
        out.push_back(std::to_string(item.Kind) + " " + Utf16ToUtf8(item.Name) + " " +
                      std::to_string(item.Row) + "-" + std::to_string(item.EndRow));
    return out;
}

std::vector<std::string> FreshOutline(const std::string& syntax, std::u16string_view text) {
    TScanDoc doc(syntax, text);
    return Outline(*BuildCodeStructure(doc.Store, *doc.Ctx));
}

std::u16string Program(std::mt19937& rng, int blocks) {
    std::u16string text;
    for (int i = 0; i < blocks; ++i) {
        text += rng() % 2 ? u"void f()\n{\n" : u"void g() {\n";
        for (int n = int(rng() % 4); n > 0; --n)
            text += rng() % 3 ? u"    if (x) {\n        y();\n    }\n" : u"    // a\n    // b\n";
        text += u"}\n";
    }
    return text + u"int end;";
}

// The shipped C syntax, or null when it does not load.
std::shared_ptr<TMemoStyleHost> CHost() {
    auto host = std::make_shared<TMemoStyleHost>();
    TZvSyntax loader;
    if (!loader.LoadStyleFromFile(
            host.get(), Utf8ToUtf16((ShippedSyntaxFolder() / "c.syx").string()), u"c", 1, u""))
        return nullptr;
    return host;
}

// The document's scan with a fast thread, started, telling `view` of its passes; with
// `structure` each pass builds the code explorer's structure too.
std::shared_ptr<TDocumentScan> StartScan(TZvTextDocument& doc,
                                         const std::shared_ptr<TMemoStyleHost>& host,
                                         TFoldView& view, bool structure) {
    doc.SetStyleHost(host);
    auto scan = std::make_shared<TDocumentScan>(doc.Lines(), host, TScanOptions{},
                                                TBackgroundTiming{0ms, 1ms, 1ms, 1ms});
    doc.SetReader(scan);
    scan->AddObserver(&view);
    if (structure)
        scan->WantStructure();
    scan->Start();
    return scan;
}

TEST(FoldThread, FoldsAfterRandomEditsEqualAFreshPassAndAClosedFoldSurvivesAnEditElsewhere) {
    const std::shared_ptr<TMemoStyleHost> host = CHost();
    ASSERT_TRUE(host);
    const std::u16string pieces[] = {u"{\n",    u"}\n",  u"\n    x;\n",
                                     u"// c\n", u"/* ",  u" */",
                                     u"",       u"    ", u"if (a) {\n  b;\n}\n"};
    TFoldView view; // outlives every scan below
    for (unsigned seed = 1; seed <= 3; ++seed) {
        std::mt19937 rng(seed);
        auto doc = std::make_shared<TZvTextDocument>();
        doc->Lines().SetTextStr(Program(rng, 200));
        const std::shared_ptr<TDocumentScan> scan = StartScan(*doc, host, view, true);
        TZvMemo memo;
        memo.SetDocument(doc);
        for (int step = 0; step < 300; ++step) {
            const int rows = doc->Lines().Count();
            const int y = int(rng() % unsigned(rows));
            const int x = int(rng() % unsigned(doc->Lines().GetLineLength(y) + 1));
            memo.SetTextCursor(x, y);
            const std::u16string& piece = pieces[rng() % std::size(pieces)];
            if (piece.empty())
                memo.DeleteChar();
            else
                memo.InsertText(piece);
            if (step % 40 == 0) { // let a pass run, and take it over, meanwhile
                std::this_thread::sleep_for(40ms);
                if (view.Ready.exchange(false))
                    scan->ApplyFolds(doc->Lines());
            }
        }
        // A pass that ended just before an edit of the same row count never reaches the rows.
        for (int i = 0; i < 30000 && !view.Ready.load(); ++i)
            std::this_thread::sleep_for(1ms);
        memo.SetTextCursor(0, 0);
        memo.InsertText(u"// ");
        ASSERT_TRUE(WaitForFolds(*scan, view, doc->Lines())) << "seed " << seed;
        const std::u16string text = doc->Lines().GetTextWithLinefeeds();
        ASSERT_EQ(FoldRows(doc->Lines()), FreshFoldRows("c", text)) << "seed " << seed;
        ASSERT_NE(scan->Folds().Structure(), nullptr);
        EXPECT_EQ(Outline(*scan->Folds().Structure()), FreshOutline("c", text)) << "seed " << seed;

        // Close the last outermost fold, then add a block at the top.
        int head = -1;
        for (int row = 0; row < doc->Lines().Count(); ++row)
            if (IsFoldHead(doc->Lines(), row) && FoldHeadAround(doc->Lines(), row) == row &&
                (row == 0 || FoldHeadAround(doc->Lines(), row - 1) < 0))
                head = row;
        ASSERT_GE(head, 0);
        const int end = GetNodeEndFromTopLine(doc->Lines(), head);
        doc->WithReaderPaused([&] { ASSERT_TRUE(ToggleNode(doc->Lines(), head, false)); });
        memo.SetTextCursor(0, 0);
        memo.InsertText(u"void h() {\n    z();\n}\n");
        ASSERT_TRUE(WaitForFolds(*scan, view, doc->Lines()));
        EXPECT_TRUE(IsFoldClosed(doc->Lines(), head + 3));
        EXPECT_EQ(GetNodeEndFromTopLine(doc->Lines(), head + 3), end + 3);
        EXPECT_EQ(doc->Lines().VisibleCount(), doc->Lines().Count() - (end - head));
        ASSERT_TRUE(IsFoldHead(doc->Lines(), 0)); // the new block folds too
        scan->RemoveObserver(&view);
    }
}

// The hand-over writes only the rows whose folds can have changed: after every small edit,
// with its hand-over, each row equals a fresh pass, also after a fold was closed (its rows
// skipped) and opened again, and far from the edit where rows moved.
TEST(FoldThread, EachHandOverAfterASmallEditEqualsAFreshPass) {
    const std::shared_ptr<TMemoStyleHost> host = CHost();
    ASSERT_TRUE(host);
    const std::u16string pieces[] = {u"{\n", u"}\n", u"\n", u"x", u"// c\n", u"/* ", u" */", u""};
    TFoldView view;
    std::mt19937 rng(7);
    auto doc = std::make_shared<TZvTextDocument>();
    doc->Lines().SetTextStr(Program(rng, 40));
    const std::shared_ptr<TDocumentScan> scan = StartScan(*doc, host, view, false);
    TZvMemo memo;
    memo.SetDocument(doc);
    TZvMemoStrings& lines = doc->Lines();
    ASSERT_TRUE(WaitForFolds(*scan, view, lines));
    long written = 0, rows = 0; // by the hand-overs, and in the text at each
    for (int step = 0; step < 120; ++step) {
        if (step % 10 == 3) { // close a fold; its rows are skipped until it opens
            for (int row = int(rng() % unsigned(lines.Count())); row < lines.Count(); ++row)
                if (IsFoldHead(lines, row)) {
                    doc->WithReaderPaused([&] { ToggleNode(lines, row, false); });
                    break;
                }
        }
        if (step % 10 == 6)
            doc->WithReaderPaused([&] { OpenAllNodes(lines); });
        int y = int(rng() % unsigned(lines.Count()));
        while (y > 0 && lines.GetLineAttribute(y).Hidden())
            --y;
        memo.SetTextCursor(int(rng() % unsigned(lines.GetLineLength(y) + 1)), y);
        const std::u16string& piece = pieces[rng() % std::size(pieces)];
        const std::uint64_t revision = doc->Revision();
        if (piece.empty())
            memo.DeleteChar();
        else
            memo.InsertText(piece);
        if (doc->Revision() == revision)
            continue; // nothing to delete at the end: no pass comes
        ASSERT_TRUE(WaitForFolds(*scan, view, lines)) << "step " << step;
        written += scan->Folds().RowsHandedOver();
        rows += lines.Count();
        if (lines.VisibleCount() == lines.Count()) {
            ASSERT_EQ(FoldRows(lines), FreshFoldRows("c", lines.GetTextWithLinefeeds()))
                << "step " << step;
        }
    }
    EXPECT_LT(written * 4, rows); // a hand-over does not walk every row
    scan->RemoveObserver(&view);
}

} // namespace
} // namespace zv::test
