// Colours of a document whose long lines are cut into rows, after edits at and around the
// cuts made through the editing control (so the scanner hears of them as the editor tells
// it): once the sweep has run, every row's stored state and runs equal those of a fresh
// scanner reading the same rows from the top.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "syntax/ColourWalk.h"
#include "syntax/DocumentScan.h"
#include "syntax/SyntaxTestFiles.h"
#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>

namespace zv::test {
namespace {

const std::u16string kPieces[] = {u"/* c */", u"/*",   u"*/", u"\"s\\\"t\"", u"'q'", u"// l",
                                  u"return",  u"x=1;", u" ",  u"(",          u")",   u"\\"};

bool SameRuns(const std::vector<TColourRun>& a, const std::vector<TColourRun>& b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].Start != b[i].Start || a[i].Length != b[i].Length ||
            a[i].Info.Kind != b[i].Info.Kind)
            return false;
    return true;
}

TEST(CutRowsScan, EditsAtCutsLeaveTheColoursOfAFreshScan) {
    auto host = std::make_shared<TMemoStyleHost>();
    TZvSyntax loader;
    ASSERT_TRUE(loader.LoadStyleFromFile(
        host.get(), Utf8ToUtf16((ShippedSyntaxFolder() / "javascript.syx").string()), u"javascript",
        1, u""));
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 rng(seed);
        std::string text;
        for (int line = 0; line < 3; ++line) {
            for (int i = 0; i < (seed % 2 ? 40 : 400); ++i)
                text += Utf16ToUtf8(kPieces[rng() % std::size(kPieces)]);
            text += "\n";
        }
        TZvMemoStrings lines;
        // Short rows (every edit is near a cut), or rows longer than twice the read-ahead
        // (an edit in their middle stays local).
        lines.Memo().FForcewrapLength = seed % 2 ? 40 : 600;
        lines.LoadFromBytes(text);
        TZvMemo memo;
        memo.SetLines(&lines);
        memo.Document().SetStyleHost(host);
        auto scan = std::make_shared<TDocumentScan>(lines, host, TScanOptions{});
        memo.Document().SetReader(scan);
        const std::atomic<bool> halt{false};
        ASSERT_TRUE(lines.Memo().FForceWrap);
        for (int edit = 0; edit < 80; ++edit) {
            const int row = int(rng() % lines.Count());
            const int length = lines.GetLineLength(row);
            const int at[] = {
                0, 1, std::max(length - 1, 0), length, int(rng() % (length + 1)), length / 2};
            memo.SetTextCursor(std::min(at[rng() % 6], length), row);
            std::string op = "at " + std::to_string(memo.Caret().X) + "," + std::to_string(row);
            switch (rng() % 3) {
            case 0:
                memo.InsertChar(kPieces[rng() % std::size(kPieces)][0]);
                op += " type";
                break;
            case 1:
                memo.Backspace();
                op += " backspace";
                break;
            default:
                memo.DeleteChar();
                op += " delete";
                break;
            }
            scan->Scanner().Sweep(halt);
            TLineScanner fresh(lines, scan->Scanner().Context());
            TStyle freshState, state;
            ClearStyle(freshState, true);
            for (int r = 0; r < lines.Count(); ++r) {
                state = scan->Scanner().GetUpStyle(r - 1);
                const auto runs = RowRunsFrom(scan->Scanner(), r, state);
                const auto freshRuns = RowRunsFrom(fresh, r, freshState);
                ASSERT_TRUE(SameRuns(runs, freshRuns))
                    << "seed " << seed << " edit " << edit << " row " << r;
                bool valid = false;
                TStyle stored = scan->Scanner().GetLineStyle(r, valid);
                ASSERT_TRUE(valid) << "row " << r;
                TStyle now = freshState;
                now.FBooleanArray |= 1u; // stored records carry the valid bit
                stored.FBooleanArray |= 1u;
                ASSERT_TRUE(stored == now)
                    << "seed " << seed << " edit " << edit << " row " << r << " after " << op;
            }
        }
    }
}

} // namespace
} // namespace zv::test
