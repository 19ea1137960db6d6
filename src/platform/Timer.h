// Timers on the main thread, for the engine (caret blinking, work after typing stops). The
// UI implements them with its event loop; tests fire them by hand.
#pragma once

#include <functional>
#include <memory>

namespace zv {

class ITimer {
public:
    virtual ~ITimer() = default;
    // (Re)starts the timer: `onTimeout` runs on the main thread every `intervalMs` until Stop.
    virtual void Start(int intervalMs) = 0;
    virtual void Stop() = 0;
    virtual bool IsActive() const = 0;
};

class ITimerFactory {
public:
    virtual ~ITimerFactory() = default;
    // A stopped timer that calls `onTimeout`; it never calls it after its destruction.
    virtual std::unique_ptr<ITimer> CreateTimer(std::function<void()> onTimeout) = 0;
};

// A timer that fires only when told (tests, headless runs).
class TManualTimer : public ITimer {
public:
    explicit TManualTimer(std::function<void()> onTimeout) : FOnTimeout(std::move(onTimeout)) {}
    void Start(int intervalMs) override {
        FInterval = intervalMs;
        FActive = true;
    }
    void Stop() override { FActive = false; }
    bool IsActive() const override { return FActive; }
    int Interval() const { return FInterval; }
    // Runs the timeout once when active.
    void Fire() {
        if (FActive && FOnTimeout)
            FOnTimeout();
    }

private:
    std::function<void()> FOnTimeout;
    int FInterval = 0;
    bool FActive = false;
};

} // namespace zv
