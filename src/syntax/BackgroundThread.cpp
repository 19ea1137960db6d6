// The background thread's loop, pause handshake and requests.
#include "syntax/BackgroundThread.h"

namespace zv {
namespace {
// How long a sweep of a big document rests every few hundred rows.
constexpr std::chrono::milliseconds kSweepYield{1};
} // namespace

TBackgroundThread::TBackgroundThread(TLineScanner& scanner, IBackgroundHost& host,
                                     TBackgroundTiming timing)
    : FScanner(scanner), FHost(host), FTiming(timing) {}

TBackgroundThread::~TBackgroundThread() {
    StopBackgroundThread(true);
}

void TBackgroundThread::SuspendThread(bool pause) {
    std::unique_lock lock(FMutex);
    if (pause) {
        ++FPauses;
        FHalt.store(true);
        FWake.notify_all();
        FWake.wait(lock, [&] { return !FReading; });
        return;
    }
    if (FPauses > 0 && --FPauses == 0 && !FTerminated)
        FHalt.store(false);
    FWake.notify_all();
    if (!FThread.joinable() && !FTerminated)
        FThread = std::thread([this] { Execute(); });
}

void TBackgroundThread::StopBackgroundThread(bool wait) {
    {
        std::lock_guard lock(FMutex);
        FTerminated = true;
        FHalt.store(true);
        FWake.notify_all();
    }
    if (wait && FThread.joinable() && FThread.get_id() != std::this_thread::get_id())
        FThread.join();
}

void TBackgroundThread::RequestFullScan(int fromRow) {
    FScanner.ClearLineStylesFrom(fromRow);
    std::lock_guard lock(FMutex);
    FRequests.UpdateSyntax = FRequests.UpdateFolding = true;
    FWake.notify_all();
}

void TBackgroundThread::Update(const TBackgroundRequests& requests) {
    std::lock_guard lock(FMutex);
    TBackgroundRequests& r = FRequests;
    for (auto flag :
         {&TBackgroundRequests::UpdateSyntax, &TBackgroundRequests::UpdateFolding,
          &TBackgroundRequests::UpdateSpelling, &TBackgroundRequests::UpdateCodeExplorer,
          &TBackgroundRequests::UpdateCodeExplorerTags,
          &TBackgroundRequests::UpdateCheckTagsToHighlight})
        r.*flag = r.*flag || requests.*flag; // a pending request is never dropped
    r.HighlightBraces = requests.HighlightBraces;
    r.HighlightBracesWhenInside = requests.HighlightBracesWhenInside;
    r.HighlightWordInsideMethod = requests.HighlightWordInsideMethod;
    r.HasFocus = requests.HasFocus;
    r.Kind = requests.Kind;
    if (requests.UpdateFolding)
        FSchedule.FoldingRequested();
    if (requests.UpdateSpelling)
        FSchedule.SpellingRequested();
    if (requests.UpdateCodeExplorer)
        FSchedule.CodeExplorerRequested();
}

void TBackgroundThread::RequestFolds() {
    std::lock_guard lock(FMutex);
    FRequests.UpdateFolding = true;
    FSchedule.FoldingRequested();
}

bool TBackgroundThread::WaitComplete(std::chrono::milliseconds limit) {
    std::unique_lock lock(FMutex);
    return FWake.wait_for(lock, limit, [&] { return FScanner.Complete() && !FReading; });
}

bool TBackgroundThread::WaitFor(std::chrono::milliseconds d) {
    std::unique_lock lock(FMutex);
    FWake.wait_for(lock, d, [&] { return FTerminated; });
    return !FTerminated;
}

bool TBackgroundThread::BeginReading() {
    std::lock_guard lock(FMutex);
    if (FPauses > 0 || FTerminated)
        return false;
    FReading = true;
    return true;
}

void TBackgroundThread::EndReading() {
    std::lock_guard lock(FMutex);
    FReading = false;
    FWake.notify_all();
}

void TBackgroundThread::IdleTick(bool paused) {
    std::lock_guard lock(FMutex);
    if (paused)
        FSchedule.Paused();
    else
        FSchedule.Idle();
}

bool TBackgroundThread::SweepRows() {
    // The row count is read only with the read permission: an edit may be changing it.
    if (!BeginReading())
        return false;
    bool reading = true;
    const auto scanned = [this](int first, int last) { FHost.RowsScanned(first, last); };
    // The sweep's pauses give up the read permission, so an edit arriving then waits for
    // nothing; a pause or stop asked for meanwhile ends the pass.
    const auto yield = [this, &reading] {
        EndReading();
        reading = false;
        {
            std::unique_lock lock(FMutex);
            FWake.wait_for(lock, kSweepYield, [&] { return FPauses > 0 || FTerminated; });
        }
        reading = BeginReading();
        return reading;
    };
    const bool complete = FScanner.Complete() || FScanner.Sweep(FHalt, scanned, yield);
    if (reading)
        EndReading();
    return complete;
}

void TBackgroundThread::RunDueTask() {
    TBackgroundTask task;
    bool full;
    {
        std::lock_guard lock(FMutex);
        task = FSchedule.Tick(FRequests);
        full = FSchedule.CodeExplorerFull;
    }
    if (task == TBackgroundTask::FullScan && !SweepRows()) {
        // An edit stopped the full scan: ask for it again, so the folds and lists that
        // follow it are never built from a half-swept document.
        std::lock_guard lock(FMutex);
        FRequests.UpdateSyntax = FRequests.UpdateFolding = true;
        return;
    }
    if (task == TBackgroundTask::None)
        return;
    // The host's tasks read rows, so they run with the read permission; a pause that came
    // meanwhile puts a fold rebuild back for later.
    if (!BeginReading()) {
        if (task == TBackgroundTask::Folds || task == TBackgroundTask::FullScan) {
            std::lock_guard lock(FMutex);
            FRequests.UpdateFolding = true;
        }
        return;
    }
    FHost.RunTask(task, full);
    EndReading();
}

void TBackgroundThread::Execute() {
    if (!WaitFor(FTiming.StartDelay))
        return;
    for (;;) {
        bool paused;
        {
            std::lock_guard lock(FMutex);
            if (FTerminated)
                return;
            paused = FPauses > 0;
        }
        if (paused || FHost.Busy()) {
            FRunning.store(false);
            if (!WaitFor(FTiming.PausedWait))
                return;
            IdleTick(true);
            continue;
        }
        FRunning.store(true);
        if (!WaitFor(FTiming.Tick))
            return;
        if (!FHost.Visible()) {
            if (!WaitFor(FTiming.HiddenWait))
                return;
            IdleTick(false);
            continue;
        }
        // Rows without a state are swept on every tick, so a request made during a sweep
        // (which lowers the watermark) is served by the next pass.
        SweepRows();
        RunDueTask();
    }
}

} // namespace zv
