// SIGTERM and SIGHUP (a logout, a shutdown, `kill`) reach the main thread as a call: no
// question can be asked then, so the caller keeps the unsaved text and ends the loop.
#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace zv {

class TTerminationWatch : public QObject {
    Q_OBJECT
public:
    // Installs the handlers; `onSignal` runs on the main thread, once per signal received.
    // One watch per process: a second one takes the signals over from the first.
    explicit TTerminationWatch(std::function<void(int signal)> onSignal, QObject* parent = nullptr);
    // Restores the default handlers.
    ~TTerminationWatch() override;

private:
    void Drain();

    std::function<void(int)> FOnSignal;
    int FPipe[2] = {-1, -1}; // written by the handler (async-signal-safe), read here
    QSocketNotifier* FNotifier = nullptr;
};

} // namespace zv
