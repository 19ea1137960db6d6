// Hand-over frames: their layout, hostile input, frames cut anyhow from a stream, and real
// exchanges over Unix-domain sockets: a sender thread and a listening window, peers that
// stall or flood, a window that never answers.
#include "shell/HandOver.h"
#include "RawPeer.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <future>
#include <random>
#include <sys/resource.h>
#include <thread>

namespace {

constexpr int kBoundMs = 15000; // generous bound of every wait: the machine may be busy

// Runs events until done() holds; false after timeoutMs.
bool WaitUntil(const std::function<bool()>& done, int timeoutMs = kBoundMs) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QTest::qWait(5);
    }
    return true;
}

// Sends from another thread (the window answers on this one, while events run).
bool SendWhileServing(uint64_t handle, const QString& text) {
    auto sent = std::async(std::launch::async, [&] {
        return zv::SendHandOver(handle, zv::kHandOverParams, text, kBoundMs);
    });
    WaitUntil(
        [&] { return sent.wait_for(std::chrono::milliseconds(0)) == std::future_status::ready; });
    return sent.get();
}

struct TFrame {
    uint64_t kind;
    std::u16string text;
};

std::vector<TFrame> RandomFrames(std::mt19937& rng) {
    std::vector<TFrame> frames(1 + rng() % 6);
    const uint64_t kinds[] = {zv::kHandOverParams, zv::kHandOverPaste, zv::kHandOverZenWindow,
                              0xFFFFFFFFFFFFFFFFull};
    for (auto& frame : frames) {
        frame.kind = kinds[rng() % 4];
        frame.text.resize(rng() % 30);
        for (auto& c : frame.text)
            c = static_cast<char16_t>(rng() % 0x10000);
    }
    return frames;
}

std::vector<uint8_t> Concatenated(const std::vector<TFrame>& frames) {
    std::vector<uint8_t> bytes;
    for (const auto& frame : frames) {
        const auto one = zv::EncodeHandOverFrame(frame.kind, frame.text);
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    return bytes;
}

// Cuts bytes into pieces: whole, byte by byte, or at random places.
std::vector<size_t> PieceSizes(size_t total, int mode, std::mt19937& rng) {
    std::vector<size_t> sizes;
    for (size_t left = total; left > 0;) {
        const size_t piece = mode == 0   ? left
                             : mode == 1 ? 1
                                         : 1 + rng() % std::min<size_t>(left, 40);
        sizes.push_back(std::min(piece, left));
        left -= sizes.back();
    }
    return sizes;
}

TEST(HandOverStream, RandomCutsOfRandomFramesComeOutWholeAndInOrder) {
    std::mt19937 rng(20261125);
    for (int round = 0; round < 300; ++round) {
        const auto frames = RandomFrames(rng);
        const auto bytes = Concatenated(frames);
        size_t layout = 0; // a kind, a length and the text's UTF-16 units, per frame
        for (const auto& frame : frames)
            layout += 12 + 2 * frame.text.size();
        ASSERT_EQ(bytes.size(), layout);
        zv::THandOverStream stream;
        std::vector<TFrame> got;
        size_t at = 0;
        for (size_t piece : PieceSizes(bytes.size(), round % 3, rng)) {
            stream.Append(reinterpret_cast<const char*>(bytes.data() + at), piece);
            at += piece;
            TFrame frame{};
            while (stream.Next(frame.kind, frame.text) == 1)
                got.push_back(frame);
        }
        ASSERT_EQ(got.size(), frames.size()) << "round " << round;
        for (size_t i = 0; i < frames.size(); ++i) {
            EXPECT_EQ(got[i].kind, frames[i].kind);
            EXPECT_EQ(got[i].text, frames[i].text);
        }
        EXPECT_FALSE(stream.HasPartialFrame());
    }
}

// An odd length or one past any real text: the frame and everything after it are refused.
TEST(HandOverStream, AnInvalidFrameSpoilsTheRestOfTheStream) {
    for (const auto& [at, value] : {std::pair{8, 3}, std::pair{11, 0x7F}}) {
        auto bytes = zv::EncodeHandOverFrame(zv::kHandOverParams, u"ok");
        auto bad = zv::EncodeHandOverFrame(zv::kHandOverParams, u"no");
        bad[at] = static_cast<uint8_t>(value);
        uint64_t kind = 0;
        std::u16string text;
        EXPECT_EQ(zv::DecodeHandOverFrame(bad.data(), bad.size(), kind, text), -1) << at;
        bytes.insert(bytes.end(), bad.begin(), bad.end());
        const auto after = zv::EncodeHandOverFrame(zv::kHandOverParams, u"later");
        bytes.insert(bytes.end(), after.begin(), after.end());
        zv::THandOverStream stream;
        stream.Append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        ASSERT_EQ(stream.Next(kind, text), 1);
        EXPECT_EQ(text, u"ok");
        EXPECT_EQ(stream.Next(kind, text), -1) << at;
        EXPECT_EQ(stream.Next(kind, text), -1) << "nothing after it is trusted";
    }
}

// Over a real socket, whatever way the peer writes: every frame answered with 2001 and
// delivered once, in order.
TEST(HandOverSocket, FramesWrittenInAnyPiecesAreAnsweredAndDeliveredInOrder) {
    zvtest::TheApp<QCoreApplication>();
    const uint64_t handle = zv::NewWindowHandle();
    zv::THandOverServer server(handle);
    ASSERT_TRUE(server.IsListening());
    QSignalSpy spy(&server, &zv::THandOverServer::received);
    std::mt19937 rng(4711);
    for (int round = 0; round < 24; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const auto frames = RandomFrames(rng);
        const auto bytes = Concatenated(frames);
        const int fd = zvtest::ConnectRaw(zv::HandOverSocketPath(handle));
        ASSERT_GE(fd, 0);
        spy.clear();
        size_t at = 0;
        for (size_t piece : PieceSizes(bytes.size(), round % 3, rng)) {
            ASSERT_TRUE(zvtest::SendRaw(fd, bytes.data() + at, piece));
            at += piece;
            QCoreApplication::processEvents(); // let the window read this piece on its own
        }
        zvtest::TPeerInput input;
        EXPECT_TRUE(WaitUntil([&] {
            zvtest::DrainRaw(fd, input);
            return input.bytes.size() >= 4 * frames.size() &&
                   spy.count() == static_cast<int>(frames.size());
        }));
        ::close(fd);
        ASSERT_EQ(spy.count(), static_cast<int>(frames.size()));
        ASSERT_EQ(input.bytes.size(), 4 * frames.size()) << "one reply per frame";
        for (size_t i = 0; i < frames.size(); ++i) {
            EXPECT_EQ(zv::DecodeHandOverReply(reinterpret_cast<const uint8_t*>(input.bytes.data()) +
                                              4 * i),
                      zv::kHandOverReply);
            EXPECT_EQ(spy[i][0].toULongLong(), frames[i].kind);
            EXPECT_EQ(spy[i][1].toString().toStdU16String(), frames[i].text);
        }
    }
}

// A peer that sends nothing and one that sends half a frame are dropped after the frame
// time, while a real sender is answered and its text delivered beside them.
TEST(HandOverSocket, PeersThatStallAreDroppedAndOthersServed) {
    zvtest::TheApp<QCoreApplication>();
    const uint64_t handle = zv::NewWindowHandle();
    zv::THandOverServer server(handle);
    QSignalSpy spy(&server, &zv::THandOverServer::received);
    const std::string path = zv::HandOverSocketPath(handle);
    const int silent = zvtest::ConnectRaw(path);
    const int half = zvtest::ConnectRaw(path);
    ASSERT_GE(silent, 0);
    ASSERT_GE(half, 0);
    const auto frame = zv::EncodeHandOverFrame(zv::kHandOverParams, u"never finished");
    ASSERT_TRUE(zvtest::SendRaw(half, frame.data(), frame.size() / 2));
    ASSERT_TRUE(WaitUntil([&] { return server.OpenConnections() == 2; }));

    const QString served = QString::fromUtf8("/tmp/ä b.txt|/R|");
    EXPECT_TRUE(SendWhileServing(handle, served));
    zvtest::TPeerInput silentInput, halfInput;
    EXPECT_TRUE(WaitUntil(
        [&] {
            zvtest::DrainRaw(silent, silentInput);
            zvtest::DrainRaw(half, halfInput);
            return silentInput.closed && halfInput.closed;
        },
        zv::THandOverServer::kFrameMs + 5000));
    EXPECT_TRUE(silentInput.bytes.empty());
    EXPECT_TRUE(halfInput.bytes.empty()) << "half a frame gets no answer";
    EXPECT_TRUE(WaitUntil([&] { return server.OpenConnections() == 0; }));
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy[0][0].toULongLong(), zv::kHandOverParams);
    EXPECT_EQ(spy[0][1].toString(), served);
    ::close(silent);
    ::close(half);
}

// Every place taken by idle peers: a sender is turned away at first and gets through once
// the idle ones have had their time.
TEST(HandOverSocket, WhenEveryPlaceIsTakenASenderGetsThroughOnceOneFrees) {
    zvtest::TheApp<QCoreApplication>();
    const uint64_t handle = zv::NewWindowHandle();
    zv::THandOverServer server(handle);
    QSignalSpy spy(&server, &zv::THandOverServer::received);
    std::vector<int> idle;
    for (int i = 0; i < zv::THandOverServer::kMaxConnections; ++i)
        idle.push_back(zvtest::ConnectRaw(zv::HandOverSocketPath(handle)));
    EXPECT_TRUE(std::none_of(idle.begin(), idle.end(), [](int fd) { return fd < 0; }));
    ASSERT_TRUE(WaitUntil(
        [&] { return server.OpenConnections() == zv::THandOverServer::kMaxConnections; }));
    EXPECT_TRUE(SendWhileServing(handle, QStringLiteral("patient|")));
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy[0][1].toString(), QStringLiteral("patient|"));
    for (int fd : idle)
        ::close(fd);
}

// Thousands of idle peers, more than the process may hold files open beside its own: the
// window serves only a few at once, closes the others, keeps its socket and answers after.
TEST(HandOverSocket, AFloodOfIdlePeersNeitherStopsNorExhaustsTheListener) {
    zvtest::TheApp<QCoreApplication>();
    constexpr size_t kPeers = 3000;
    const uint64_t handle = zv::NewWindowHandle();
    zv::THandOverServer server(handle);
    const std::string path = zv::HandOverSocketPath(handle);
    // Room for the peers and a little more: a window that kept every peer would run out.
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &saved), 0);
    const auto open = static_cast<rlim_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
    rlimit tight = saved;
    tight.rlim_cur = std::min<rlim_t>(saved.rlim_max, open + kPeers + 200);
    ASSERT_GE(tight.rlim_cur, open + kPeers + 100) << "the hard limit leaves no room";
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);

    std::vector<int> peers;
    int mostOpen = 0;
    QElapsedTimer clock;
    clock.start();
    while (peers.size() < kPeers && clock.elapsed() < 60000) {
        const int fd = zvtest::ConnectRaw(path);
        if (fd >= 0)
            peers.push_back(fd);
        if (fd < 0 || peers.size() % 64 == 0)
            QCoreApplication::processEvents(); // the queue is full, or now and then
        mostOpen = std::max(mostOpen, server.OpenConnections());
    }
    EXPECT_EQ(peers.size(), kPeers) << "the window kept accepting";
    size_t closed = 0;
    EXPECT_TRUE(WaitUntil([&] {
        closed = 0;
        for (int fd : peers) {
            zvtest::TPeerInput input;
            zvtest::DrainRaw(fd, input);
            closed += input.closed;
        }
        mostOpen = std::max(mostOpen, server.OpenConnections());
        return closed + zv::THandOverServer::kMaxConnections >= peers.size();
    })) << closed
        << " of " << peers.size() << " closed";
    EXPECT_LE(mostOpen, zv::THandOverServer::kMaxConnections);
    EXPECT_TRUE(server.IsListening());
    EXPECT_TRUE(std::filesystem::is_socket(path));
    for (int fd : peers)
        ::close(fd);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &saved), 0);
    EXPECT_TRUE(SendWhileServing(handle, QStringLiteral("after the flood|")));
}

// Someone removes the socket file: the window notices and listens again.
TEST(HandOverSocket, ASocketFileRemovedFromOutsideIsMadeAgain) {
    zvtest::TheApp<QCoreApplication>();
    const uint64_t handle = zv::NewWindowHandle();
    zv::THandOverServer server(handle);
    const std::string path = zv::HandOverSocketPath(handle);
    ASSERT_TRUE(std::filesystem::is_socket(path));
    for (int round = 0; round < 2; ++round) {
        std::filesystem::remove(path);
        EXPECT_TRUE(WaitUntil([&] { return std::filesystem::is_socket(path); }));
        EXPECT_TRUE(server.IsListening());
        EXPECT_TRUE(SendWhileServing(handle, QStringLiteral("again|")));
    }
}

// A window that takes the frame but never answers, and one whose socket is gone: the sender
// gives up within its give-up time (and a little for a busy machine) rather than 30 s.
TEST(HandOverSender, GivesASilentOrMissingWindowUp) {
    zvtest::TheApp<QCoreApplication>();
    zvtest::TSilentWindow silent;
    ASSERT_TRUE(silent.Listening());
    for (const uint64_t window : {silent.Handle(), zv::NewWindowHandle()}) {
        QElapsedTimer clock;
        clock.start();
        EXPECT_FALSE(zv::SendHandOver(window, zv::kHandOverParams, QStringLiteral("a.txt|")));
        EXPECT_LT(clock.elapsed(), zv::kHandOverGiveUpMs + 2000);
    }
}

} // namespace
