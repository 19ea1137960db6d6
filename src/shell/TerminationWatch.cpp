// The self-pipe behind TTerminationWatch: the handler only writes the signal number.
#include "shell/TerminationWatch.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace zv {
namespace {

std::atomic<int> gWriteEnd{-1};

extern "C" void OnTerminationSignal(int signal) {
    const int saved = errno;
    const unsigned char byte = static_cast<unsigned char>(signal);
    if (const int fd = gWriteEnd.load(); fd >= 0) {
        const ssize_t n = ::write(fd, &byte, 1);
        (void)n; // a full pipe already holds a wake-up
    }
    errno = saved;
}

void SetHandler(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

} // namespace

TTerminationWatch::TTerminationWatch(std::function<void(int)> onSignal, QObject* parent)
    : QObject(parent), FOnSignal(std::move(onSignal)) {
    if (::pipe2(FPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // no watch: the default handlers stay
    gWriteEnd.store(FPipe[1]);
    FNotifier = new QSocketNotifier(FPipe[0], QSocketNotifier::Read, this);
    connect(FNotifier, &QSocketNotifier::activated, this, &TTerminationWatch::Drain);
    SetHandler(SIGTERM, OnTerminationSignal);
    SetHandler(SIGHUP, OnTerminationSignal);
}

TTerminationWatch::~TTerminationWatch() {
    if (FPipe[0] < 0)
        return;
    SetHandler(SIGTERM, SIG_DFL);
    SetHandler(SIGHUP, SIG_DFL);
    int expected = FPipe[1];
    gWriteEnd.compare_exchange_strong(expected, -1);
    ::close(FPipe[0]);
    ::close(FPipe[1]);
}

void TTerminationWatch::Drain() {
    unsigned char byte = 0;
    while (::read(FPipe[0], &byte, 1) == 1)
        if (FOnSignal)
            FOnSignal(byte);
}

} // namespace zv
