// The crash session's writer thread against edits on the main thread: texts are handed over
// as copies that share their rows with the documents, which go on changing while the thread
// encodes them. Whatever the timing, once the writes are done the folder holds every modified
// document's text as it stood at the last hand-over. Run under ThreadSanitizer in the tsan
// build.
#include "ZvMemoControl/ZvMemoRows.h"
#include "common/Utf.h"
#include "platform/Prompt.h"
#include "shell/CrashKeeper.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

TEST(CrashWriter, TextsHandedOverWhileEditingAreKeptAsTheyStood) {
    zvtest::TTempDir dir{"zv-crash-writer"};
    zv::THeadlessPrompt quiet{false};
    zv::TMainFormHelper helper{quiet};
    for (int i = 0; i < 3; ++i) {
        zv::TDocument& doc = helper.NewDocument();
        std::u16string text;
        for (int row = 0; row < 20000; ++row)
            text += u"row " + zv::Utf8ToUtf16(std::to_string(row)) + u" of document\n";
        doc.Lines().SetTextStr(text);
    }
    zv::TCrashKeeper keeper(helper, dir.Path() / "Crash");
    std::mt19937 random(11);
    const std::u16string pieces[] = {u"x", u"\n", u"long piece of typed text", u""};
    for (int step = 0; step < 200; ++step) {
        zv::TDocument& doc = *helper.Documents()[random() % 3];
        zv::TZvTextDocument& text = *doc.Text;
        const int row = static_cast<int>(random() % static_cast<unsigned>(text.Lines().Count()));
        const int length = text.Lines().GetLineLength(row);
        const zv::TZvPos at{static_cast<int>(random() % static_cast<unsigned>(length + 1)), row};
        text.Change(at, {std::min(length, at.X + 2), row},
                    zv::TEditText::FromString(pieces[random() % 4], true), nullptr, nullptr);
        if (step % 3 == 0)
            keeper.WriteNow(); // no wait: the next edits race the thread's encoding
    }
    keeper.WriteNow();
    keeper.WaitWritten();
    zv::TMainFormHelper next{quiet};
    ASSERT_EQ(zv::RestoreKeptTexts(next, keeper.Folder()), 3);
    for (int i = 0; i < 3; ++i) {
        const std::u16string kept = next.Documents()[i]->Lines().GetTextWithLinefeeds();
        const std::u16string now = helper.Documents()[i]->Lines().GetTextWithLinefeeds();
        const auto [k, n] = std::mismatch(kept.begin(), kept.end(), now.begin(), now.end());
        EXPECT_TRUE(k == kept.end() && n == now.end())
            << "document " << i << " differs at unit " << (k - kept.begin()) << ": kept \""
            << zv::Utf16ToUtf8(std::u16string(k, kept.end()).substr(0, 40)) << "\", now \""
            << zv::Utf16ToUtf8(std::u16string(n, now.end()).substr(0, 40)) << "\"";
    }
    keeper.Clear();
    EXPECT_FALSE(std::filesystem::exists(keeper.Folder()));
}

} // namespace
