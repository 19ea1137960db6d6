// The sending side of hand-overs, and where windows listen: socket paths and window handles.
#include "shell/HandOver.h"

#include "shell/RunOnce.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <unistd.h>

namespace zv {
namespace {

constexpr int kConnectRetryMs = 50;

int Remaining(const QDeadlineTimer& deadline) {
    return static_cast<int>(std::max<qint64>(0, deadline.remainingTime()));
}

// A window re-making its socket leaves no file for a moment: try again until the deadline.
bool ConnectBefore(QLocalSocket& socket, const QString& path, const QDeadlineTimer& deadline) {
    for (;;) {
        socket.connectToServer(path);
        if (socket.waitForConnected(Remaining(deadline)))
            return true;
        socket.abort();
        if (Remaining(deadline) <= kConnectRetryMs)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(kConnectRetryMs));
    }
}

} // namespace

std::string HandOverSocketPath(uint64_t windowHandle) {
    char name[40];
    std::snprintf(name, sizeof name, "/win-%016llx.sock",
                  static_cast<unsigned long long>(windowHandle));
    return InstanceFolder() + name;
}

uint64_t NewWindowHandle() {
    static std::atomic<uint32_t> counter{0};
    return (static_cast<uint64_t>(::getpid()) << 32) | ++counter;
}

bool SendHandOver(uint64_t windowHandle, uint64_t kind, const QString& text, int timeoutMs) {
    const QDeadlineTimer deadline(timeoutMs);
    QLocalSocket socket;
    if (!ConnectBefore(socket, QString::fromStdString(HandOverSocketPath(windowHandle)), deadline))
        return false;
    const auto frame = EncodeHandOverFrame(kind, text.toStdU16String());
    socket.write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
    while (socket.bytesToWrite() > 0)
        if (!socket.waitForBytesWritten(Remaining(deadline)))
            return false;
    while (socket.bytesAvailable() < 4)
        if (Remaining(deadline) == 0 || !socket.waitForReadyRead(Remaining(deadline)))
            return false;
    const QByteArray reply = socket.read(4);
    return DecodeHandOverReply(reinterpret_cast<const uint8_t*>(reply.constData())) ==
           kHandOverReply;
}

} // namespace zv
