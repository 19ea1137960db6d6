// The background thread: it sweeps a document to complete states, pausing is a handshake
// that lets edits run while it works, and the tick schedule runs each task when due and
// defers it while requests keep coming. Run under ThreadSanitizer in the tsan build.
#include "ScanTestSupport.h"

#include "syntax/BackgroundThread.h"

#include <algorithm>
#include <mutex>
#include <random>

namespace zv::test {
namespace {

using namespace std::chrono_literals;

constexpr TBackgroundTiming kFast{0ms, 1ms, 1ms, 1ms};

// Counts what the thread reports, through the plain-function host the editor widget uses.
struct TCountingHost {
    TCountingHost() {
        Callbacks.OnRowsScanned = [this](int first, int last) {
            std::lock_guard lock(Mutex);
            ++Changed;
            MaxBatch = std::max(MaxBatch, last - first + 1);
            if (int(Covered.size()) <= last)
                Covered.resize(last + 1);
            std::fill(Covered.begin() + first, Covered.begin() + last + 1, true);
        };
        Callbacks.OnTask = [this](TBackgroundTask task, bool) {
            if (task == TBackgroundTask::FullScan)
                ++FullScans;
        };
    }
    // True when rows [0, count) were all reported.
    bool AllReported(int count) {
        std::lock_guard lock(Mutex);
        return int(Covered.size()) >= count &&
               std::all_of(Covered.begin(), Covered.begin() + count, [](bool b) { return b; });
    }
    TBackgroundCallbacks Callbacks;
    std::mutex Mutex;
    std::vector<bool> Covered; // guarded by Mutex
    int Changed = 0;           // guarded by Mutex
    int MaxBatch = 0;          // guarded by Mutex
    std::atomic<int> FullScans{0};
};

std::u16string Program(int rows) {
    std::u16string text;
    for (int i = 0; i < rows; ++i)
        text += i % 7 == 0 ? u"/* a\n" : i % 7 == 3 ? u"b */ int x = \"s\";\n" : u"f(1); // c\n";
    return text;
}

TEST(BackgroundThread, SweepsTheDocumentAndReportsIt) {
    TScanDoc d("c", Program(3000));
    TCountingHost host;
    TBackgroundThread thread(*d.Scanner, host.Callbacks, kFast);
    thread.SuspendThread(false); // the first resume starts it
    ASSERT_TRUE(thread.WaitComplete(20s));
    d.ExpectStatesFresh("swept");
    EXPECT_TRUE(host.AllReported(d.Store.Count())); // every row reached the window
    {
        std::lock_guard lock(host.Mutex);
        EXPECT_GE(host.Changed, 1);
        EXPECT_LE(host.MaxBatch, TLineScanner::kSweepReportRows); // batched, in bounded pieces
    }
    thread.RequestFullScan(0);
    ASSERT_TRUE(thread.WaitComplete(20s));
    // The rows may be complete before the tick that hands the full scan's task over.
    const auto limit = std::chrono::steady_clock::now() + 20s;
    while (host.FullScans.load() == 0 && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(1ms);
    thread.StopBackgroundThread(true);
    EXPECT_GE(host.FullScans.load(), 1);
    d.ExpectStatesFresh("rescanned");
}

TEST(BackgroundThread, PauseHoldsTheThreadOffTheRows) {
    TScanDoc d("c", Program(2000));
    TCountingHost host;
    TBackgroundThread thread(*d.Scanner, host.Callbacks, kFast);
    thread.SuspendThread(true);
    thread.SuspendThread(false); // still paused once: the pauses nest
    thread.SuspendThread(true);
    const int valid = d.Scanner->States().ValidRows();
    std::this_thread::sleep_for(30ms);
    EXPECT_EQ(d.Scanner->States().ValidRows(), valid);
    thread.SuspendThread(false);
    thread.SuspendThread(false);
    EXPECT_TRUE(thread.WaitComplete(20s));
    thread.StopBackgroundThread(true);
    thread.StopBackgroundThread(true); // idempotent
}

TEST(BackgroundThread, AFullScanStoppedByAnEditIsAskedForAgain) {
    TScanDoc d("c", Program(60000));
    std::atomic<int> fullScans{0}, incomplete{0};
    TBackgroundCallbacks host;
    host.OnTask = [&](TBackgroundTask task, bool) {
        if (task != TBackgroundTask::FullScan)
            return;
        ++fullScans;
        incomplete += !d.Scanner->Complete(); // folds would be built from half a document
    };
    TBackgroundThread thread(*d.Scanner, host, kFast);
    thread.RequestFullScan(0);
    thread.SuspendThread(false);
    const auto limit = std::chrono::steady_clock::now() + 20s;
    while (d.Scanner->States().ValidRows() < 500 && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    thread.SuspendThread(true); // the row count changes in the middle of the sweep
    d.Store.Insert(100, u"int added;");
    d.Scanner->ClearLineStylesFrom(100);
    std::this_thread::sleep_for(20ms); // the thread meets the pause at its task
    thread.SuspendThread(false);
    while (fullScans.load() == 0 && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(1ms);
    thread.StopBackgroundThread(true);
    EXPECT_GE(fullScans.load(), 1) << "the full scan ran again after the edit";
    EXPECT_EQ(incomplete.load(), 0);
    d.ExpectStatesFresh("after the full scan");
}

TEST(BackgroundThread, ARescanRequestDuringASweepIsServed) {
    TScanDoc d("c", Program(60000));
    std::atomic<bool> requested{false};
    std::atomic<int> fullScansAfter{0}, incomplete{0};
    TBackgroundCallbacks host;
    host.OnTask = [&](TBackgroundTask task, bool) {
        if (task != TBackgroundTask::FullScan || !requested.load())
            return;
        ++fullScansAfter;
        incomplete += !d.Scanner->Complete();
    };
    TBackgroundThread thread(*d.Scanner, host, kFast);
    thread.SuspendThread(false);
    const auto limit = std::chrono::steady_clock::now() + 20s;
    while (d.Scanner->States().ValidRows() < 1000 && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    // Row 100 changes (its end state becomes an open comment) while the thread is far below
    // it, and the request to rescan comes only after the thread has resumed its sweep.
    thread.SuspendThread(true);
    d.Store.InsertAt(100, u"/* ", 1);
    thread.SuspendThread(false);
    const bool duringSweep = d.Scanner->States().ValidRows() < d.Store.Count();
    requested = true;
    thread.RequestFullScan(100);
    ASSERT_TRUE(thread.WaitComplete(30s));
    while (fullScansAfter.load() == 0 && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(1ms);
    thread.StopBackgroundThread(true);
    EXPECT_TRUE(duringSweep) << "the request did not arrive during the sweep";
    EXPECT_GE(fullScansAfter.load(), 1) << "the request was served by a full scan";
    EXPECT_EQ(incomplete.load(), 0);
    d.ExpectStatesFresh("after the request");
}

// The generation counter: a state computed before an invalidation is dropped, and stores
// from the watermark on extend it again.
TEST(LineStates, AStateReadBeforeAnInvalidationIsNeverStoredAfterIt) {
    TLineStates states;
    states.Reset(10);
    TStyle s;
    ClearStyle(s, true);
    for (int row = 0; row < 10; ++row)
        ASSERT_TRUE(states.Store(row, s, states.Generation()));
    ASSERT_EQ(states.ValidRows(), 10);
    const std::uint64_t before = states.Generation();
    states.ClearFrom(4, 10); // the request arrives while row 4 is being scanned
    EXPECT_EQ(states.ValidRows(), 4);
    s.Properties.Set(spInComment, true);
    EXPECT_FALSE(states.Store(4, s, before)) << "computed before the request";
    EXPECT_EQ(states.ValidRows(), 4);
    TStyle stored;
    EXPECT_FALSE(states.Get(4, stored));
    EXPECT_FALSE(stored.Properties.Get(spInComment));
    EXPECT_TRUE(states.Store(4, s, states.Generation()));
    EXPECT_EQ(states.ValidRows(), 5);
    EXPECT_TRUE(states.Store(7, s, states.Generation())); // kept, but not below the watermark
    EXPECT_EQ(states.ValidRows(), 5);
}

TEST(BackgroundSchedule, APauseRaisesOnlyTheCountersOfTheLaterTasks) {
    TBackgroundSchedule s;
    for (int i = 0; i < 40; ++i)
        s.Paused();
    EXPECT_EQ(s.CodeCounter, 40);
    EXPECT_EQ(s.SpellCounter, 40);
    EXPECT_EQ(s.TodoCounter, 40);
    EXPECT_EQ(s.FoldCounter, 0);
    EXPECT_EQ(s.FoldHighlightCounter, 10);
    s.Idle();
    EXPECT_EQ(s.FoldCounter, 1);
}

TEST(BackgroundSchedule, TasksComeDueAtTheirTick) {
    TBackgroundSchedule s;
    TBackgroundRequests r;
    r.UpdateFolding = r.UpdateSpelling = true;
    std::vector<std::pair<int, TBackgroundTask>> seen;
    for (int tick = 0; tick < 70; ++tick)
        if (const TBackgroundTask t = s.Tick(r); t != TBackgroundTask::None)
            seen.emplace_back(tick, t);
    auto first = [&](TBackgroundTask task) {
        for (const auto& [tick, t] : seen)
            if (t == task)
                return tick;
        return -1;
    };
    // 20 ms ticks: folds at 0.62 s, spelling at 1.02 s, to-do list at 1.12 s.
    EXPECT_EQ(first(TBackgroundTask::Folds), 31);
    EXPECT_EQ(first(TBackgroundTask::Spelling), 51);
    EXPECT_EQ(first(TBackgroundTask::Todo), 56);
    EXPECT_EQ(first(TBackgroundTask::FoldHighlight), 11); // its counter starts at 10
    EXPECT_EQ(first(TBackgroundTask::CodeExplorer), -1);  // no focus, no request
    EXPECT_FALSE(r.UpdateFolding || r.UpdateSpelling);
}

TEST(BackgroundSchedule, ATypingStreamDefersFoldsAndAFullScanComesFirst) {
    TBackgroundSchedule s;
    TBackgroundRequests r;
    r.UpdateFolding = true;
    for (int tick = 0; tick < 200; ++tick) {
        s.FoldingRequested(); // each keystroke
        EXPECT_NE(s.Tick(r), TBackgroundTask::Folds) << tick;
    }
    r.UpdateSyntax = true;
    r.Kind = TBackgroundRequests::dkHtml;
    EXPECT_EQ(s.Tick(r), TBackgroundTask::FullScan);
    EXPECT_EQ(s.TagCounterMax, 84);
    EXPECT_TRUE(s.CodeExplorerFull);
}

} // namespace
} // namespace zv::test
