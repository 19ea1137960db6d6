// The sending side of hand-overs, and where windows listen: socket paths and window handles.
#include "shell/HandOver.h"

#include "shell/RunOnce.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <optional>
#include <thread>
#include <unistd.h>

namespace zv {
namespace {

constexpr int kRetryMs = 50;

int Remaining(const QDeadlineTimer& deadline) {
    return static_cast<int>(std::max<qint64>(0, deadline.remainingTime()));
}

// One connection: sends the frame and reads the reply; nothing if there was no socket, the
// window closed the connection unanswered (it serves enough peers already) or time ran out.
std::optional<uint32_t> Exchange(const QString& path, const std::vector<uint8_t>& frame,
                                 const QDeadlineTimer& deadline) {
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(Remaining(deadline)))
        return std::nullopt;
    socket.write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
    while (socket.bytesToWrite() > 0)
        if (!socket.waitForBytesWritten(Remaining(deadline)))
            return std::nullopt;
    while (socket.bytesAvailable() < 4)
        if (Remaining(deadline) == 0 || !socket.waitForReadyRead(Remaining(deadline)))
            return std::nullopt;
    const QByteArray reply = socket.read(4);
    return DecodeHandOverReply(reinterpret_cast<const uint8_t*>(reply.constData()));
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
    const auto path = QString::fromStdString(HandOverSocketPath(windowHandle));
    const auto frame = EncodeHandOverFrame(kind, text.toStdU16String());
    // A window takes a frame only whole and answers it before anything else, so a connection
    // that ended unanswered delivered nothing and may be tried again.
    for (;;) {
        if (const auto reply = Exchange(path, frame, deadline))
            return *reply == kHandOverReply;
        if (Remaining(deadline) <= kRetryMs)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(kRetryMs));
    }
}

} // namespace zv
