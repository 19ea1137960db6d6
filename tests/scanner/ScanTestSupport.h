// Helpers of the scanner tests: a document (line store) with a shipped syntax loaded, its
// scan context and scanner, and a fresh full scan to compare stored states with.
#pragma once

#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "syntax/ColourWalk.h"
#include "syntax/SyntaxTestFiles.h"
#include "syntax/ZvSyntax.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace zv::test {

// One open document: store, syntax, context and scanner, built in that order.
struct TScanDoc {
    explicit TScanDoc(const std::string& syntax, std::u16string_view text = {},
                      TScanOptions options = {}) {
        TZvSyntax loader;
        Loaded = loader.LoadStyleFromFile(
            &Host, Utf8ToUtf16((ShippedSyntaxFolder() / (syntax + ".syx")).string()),
            Utf8ToUtf16(syntax), 1, u"");
        Store.SetTextStr(text);
        Ctx = std::make_unique<TScanContext>(Host, options);
        Scanner = std::make_unique<TLineScanner>(Store, *Ctx);
    }
    // States of every row by one pass from the top, as a fresh document would have them.
    std::vector<TStyle> FreshStates() const {
        std::vector<TStyle> out;
        TStyle state;
        ClearStyle(state, true);
        TScanScratch scratch;
        for (int row = 0; row < Store.Count(); ++row) {
            TScanRequest r;
            r.Text = Store.Get(row);
            r.NextRowIsWrapped = Ctx->Options().FWordWrap && Store.IsLineWrapped(row + 1);
            ScanRow(*Ctx, r, state, scratch);
            state.FBooleanArray |= 1u;
            out.push_back(state);
        }
        return out;
    }
    // Each row's stored state equals the fresh one, and every row has one when `complete`;
    // reports the first row that does not.
    void ExpectStatesFresh(const std::string& what, bool complete = true) const {
        const auto fresh = FreshStates();
        if (complete) {
            ASSERT_GE(Scanner->States().ValidRows(), Store.Count()) << what;
        }
        for (int row = 0; row < std::min(Scanner->States().ValidRows(), Store.Count()); ++row) {
            TStyle stored;
            ASSERT_TRUE(Scanner->States().Get(row, stored)) << what << " row " << row;
            ASSERT_TRUE(stored == fresh[row]) << what << ": row " << row << " of " << Store.Count()
                                              << ": " << Utf16ToUtf8(Store.Get(row));
        }
    }
    void SweepAll() {
        std::atomic<bool> halt{false};
        ASSERT_TRUE(Scanner->Sweep(halt));
    }
    // Kinds of the runs of a row as "kind:text" items.
    std::vector<std::string> Tokens(int row) {
        std::vector<std::string> out;
        const auto text = Store.Get(row);
        for (const TColourRun& r : RowRuns(*Scanner, row))
            if (r.Info.Kind != TTokenKind::Text)
                out.push_back(std::string(TokenKindName(r.Info.Kind)) + ":" +
                              Utf16ToUtf8(text.substr(r.Start, r.Length)));
        return out;
    }

    bool Loaded = false;
    TZvMemoStrings Store;
    TMemoStyleHost Host;
    std::unique_ptr<TScanContext> Ctx;
    std::unique_ptr<TLineScanner> Scanner;
};

} // namespace zv::test
