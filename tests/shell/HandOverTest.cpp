// Hand-over frames: codec round trip, partial and hostile input, and a real exchange over
// a Unix-domain socket between a sender thread and a listening window.
#include "shell/HandOver.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <future>
#include <random>
#include <thread>

namespace {

TEST(HandOverFrame, RoundTripAnyTextAndPrefixes) {
    std::mt19937 rng(7);
    for (int round = 0; round < 200; ++round) {
        std::u16string text(rng() % 40, u'\0');
        for (auto& c : text)
            c = static_cast<char16_t>(rng() % 0x10000);
        const uint64_t kind = round % 2 ? uint64_t{zv::kHandOverParams} : 0xFFFFFFFFFFull + round;
        const auto frame = zv::EncodeHandOverFrame(kind, text);
        ASSERT_EQ(frame.size(), 12 + text.size() * 2);
        uint64_t gotKind = 0;
        std::u16string got;
        for (size_t cut = 0; cut < frame.size(); ++cut)
            ASSERT_EQ(zv::DecodeHandOverFrame(frame.data(), cut, gotKind, got), 0);
        ASSERT_EQ(zv::DecodeHandOverFrame(frame.data(), frame.size(), gotKind, got),
                  static_cast<long>(frame.size()));
        EXPECT_EQ(gotKind, kind);
        EXPECT_EQ(got, text);
    }
}

TEST(HandOverFrame, OddOrHugeLengthIsInvalid) {
    auto frame = zv::EncodeHandOverFrame(1001, u"ab");
    frame[8] = 3;
    uint64_t kind;
    std::u16string text;
    EXPECT_EQ(zv::DecodeHandOverFrame(frame.data(), frame.size(), kind, text), -1);
    frame[8] = 0;
    frame[11] = 0x7F;
    EXPECT_EQ(zv::DecodeHandOverFrame(frame.data(), frame.size(), kind, text), -1);
}

TEST(HandOverSocket, SenderGetsReplyAndReceiverTheText) {
    zvtest::TheApp<QCoreApplication>();
    const uint64_t handle = zv::NewWindowHandle();
    zv::THandOverServer server(handle);
    ASSERT_TRUE(server.IsListening());
    QSignalSpy spy(&server, &zv::THandOverServer::received);
    const QString text = QString::fromUtf8("/tmp/ä b.txt|/R|");
    auto sent = std::async(std::launch::async, [&] {
        return zv::SendHandOver(handle, zv::kHandOverParams, text, 5000);
    });
    for (int i = 0;
         i < 500 && sent.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready; ++i)
        QTest::qWait(5);
    ASSERT_TRUE(sent.get());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy[0][0].toULongLong(), zv::kHandOverParams);
    EXPECT_EQ(spy[0][1].toString(), text);
}

TEST(HandOverSocket, NoListenerFailsQuickly) {
    zvtest::TheApp<QCoreApplication>();
    EXPECT_FALSE(zv::SendHandOver(zv::NewWindowHandle(), zv::kHandOverParams, "x", 500));
}

} // namespace
