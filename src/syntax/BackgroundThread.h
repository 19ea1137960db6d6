// TBackgroundThread: one per editor. Every tick (20 ms) it sweeps the rows whose state is
// missing and runs the background task the schedule says is due.
//
// How an editor drives it (main thread):
//   - every change of the store, a one-row edit included, is bracketed by SuspendThread(true)
//     and SuspendThread(false). SuspendThread(true) is a handshake: it returns only when the
//     thread has stopped reading rows (at most one row scan later), and the thread reads
//     nothing until the matching SuspendThread(false). The store's row writes take no lock,
//     so this is what keeps the thread off a row being written.
//   - after the change and before the resume: TLineScanner::ClearLineStylesFrom(first row
//     touched), then InvalidateLine(row) for a one-row edit, which says what to repaint now;
//     RequestFullScan(row) after a load or a syntax change.
//   - the sweep reports the rows it stored through IBackgroundHost::RowsScanned, from the
//     thread: post them to the main thread and repaint the visible ones.
// Bookkeeping flags shared with the main thread are guarded by one mutex; the row states are
// kept in TLineStates (their own lock), apart from the bits of the row attributes.
#pragma once

#include "syntax/BackgroundSchedule.h"
#include "syntax/LineScanner.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace zv {

// What the thread asks of its editor. Every call comes on the background thread, between
// rows, while the thread holds its read permission: an implementation must not wait for the
// main thread (a blocking call would deadlock against SuspendThread(true)); it posts the work
// to the main thread instead.
class IBackgroundHost {
public:
    virtual ~IBackgroundHost() = default;
    virtual bool Visible() const { return true; }
    virtual bool Busy() const { return false; } // a key held down, binary mode, page busy
    // Rows [first, last] got new end states: the rows below `first` that are on screen need
    // a repaint (a state change moves colours down to the next row). Batched, not per row.
    virtual void RowsScanned(int /*first*/, int /*last*/) {}
    virtual void RunTask(TBackgroundTask /*task*/, bool /*fullScan*/) {}
};

// A host made of plain functions; an empty function is the default answer.
struct TBackgroundCallbacks : IBackgroundHost {
    std::function<bool()> IsVisible, IsBusy;
    std::function<void(int first, int last)> OnRowsScanned;
    std::function<void(TBackgroundTask task, bool fullScan)> OnTask;

    bool Visible() const override { return !IsVisible || IsVisible(); }
    bool Busy() const override { return IsBusy && IsBusy(); }
    void RowsScanned(int first, int last) override {
        if (OnRowsScanned)
            OnRowsScanned(first, last);
    }
    void RunTask(TBackgroundTask task, bool fullScan) override {
        if (OnTask)
            OnTask(task, fullScan);
    }
};

struct TBackgroundTiming {
    std::chrono::milliseconds StartDelay{500}, Tick{20}, PausedWait{100}, HiddenWait{500};
};

class TBackgroundThread {
public:
    // The scanner and the host must outlive the thread. Does not start it.
    TBackgroundThread(TLineScanner& scanner, IBackgroundHost& host, TBackgroundTiming timing = {});
    ~TBackgroundThread();
    TBackgroundThread(const TBackgroundThread&) = delete;
    TBackgroundThread& operator=(const TBackgroundThread&) = delete;

    // pause true: asks the thread to stop and waits until it no longer reads rows; pauses
    // nest. pause false: ends one pause and starts the thread when there is none.
    void SuspendThread(bool pause);
    // Ends the thread; idempotent. With wait, returns when it has ended (never from the
    // thread itself).
    void StopBackgroundThread(bool wait);
    void Stop() { StopBackgroundThread(false); }

    // Requests; any thread. Each sets the flag and zeroes the counter it defers.
    void RequestFullScan(int fromRow); // ClearLineStylesFrom + UpdateSyntax + UpdateFolding
    void Update(const TBackgroundRequests& requests);
    // Asks for a fold pass about 0.6 s from now (typing defers it).
    void RequestFolds();
    // Set while the thread must stop reading rows: long tasks test it between rows.
    const std::atomic<bool>& HaltFlag() const { return FHalt; }

    bool Running() const { return FRunning.load(); }
    bool Started() const { return FThread.joinable(); }
    // Waits (bounded by `limit`) until every row has a valid state; true when they all do.
    bool WaitComplete(std::chrono::milliseconds limit);

private:
    void Execute();
    bool WaitFor(std::chrono::milliseconds d); // false when told to end
    bool BeginReading();
    void EndReading();
    bool SweepRows(); // true when every row is valid
    void IdleTick(bool paused);
    void RunDueTask();

    TLineScanner& FScanner;
    IBackgroundHost& FHost;
    TBackgroundTiming FTiming;
    TBackgroundSchedule FSchedule; // guarded by FMutex
    std::thread FThread;
    mutable std::mutex FMutex;
    std::condition_variable FWake;     // pause, resume, stop, sweep done
    int FPauses = 0;                   // guarded by FMutex
    bool FReading = false;             // guarded by FMutex: the thread may be reading rows
    bool FTerminated = false;          // guarded by FMutex
    TBackgroundRequests FRequests;     // guarded by FMutex
    std::atomic<bool> FHalt{false};    // mirror of FPauses > 0 || FTerminated for the scan loops
    std::atomic<bool> FRunning{false}; // the thread is past its pause check this tick
};

} // namespace zv
