// Hand-over messages between instances: a copy-data frame sent to a registered window's
// Unix-domain socket, answered with 2001.
#pragma once

#include "shell/HandOverFrame.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <string>

class QLocalServer;
class QLocalSocket;

namespace zv {

// Data kinds of the copy-data message.
enum : uint64_t { kHandOverParams = 1001, kHandOverPaste = 1009, kHandOverZenWindow = 1010 };
inline constexpr uint32_t kHandOverReply = 2001;

// How long a sender waits for a window to take a frame and answer before it counts the
// window as silent or dead.
inline constexpr int kHandOverGiveUpMs = 2000;

// The socket path of a registered window.
std::string HandOverSocketPath(uint64_t windowHandle);

// A new window handle, unique on this machine: the process id and a counter.
uint64_t NewWindowHandle();

// Sends one frame to a window and waits for the reply; true when 2001 came back. Gives up
// after timeoutMs in all; within that time a socket missing for a moment (the window is
// listening again) or a connection closed unanswered (the window serves enough peers) is
// tried again. A receiver busy in a modal dialog still answers: its event loop runs.
bool SendHandOver(uint64_t windowHandle, uint64_t kind, const QString& text,
                  int timeoutMs = kHandOverGiveUpMs);

// Listens on the socket of one window; emits received() for each frame, in the order of
// the frames, after replying to it. Peers cannot stop it: connections beyond
// kMaxConnections are closed at once, a connection that has not completed its next frame
// within kFrameMs is dropped, and a socket file that disappears (or a listener that
// stopped) is made again within about kWatchMs.
class THandOverServer : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxConnections = 32;
    static constexpr int kFrameMs = 2000;
    static constexpr int kWatchMs = 500;

    explicit THandOverServer(uint64_t windowHandle, QObject* parent = nullptr);
    ~THandOverServer() override;
    bool IsListening() const;
    uint64_t WindowHandle() const { return FWindowHandle; }
    // Connections open at this moment (at most kMaxConnections).
    int OpenConnections() const { return FOpen; }

signals:
    void received(quint64 kind, const QString& text);

private:
    void Listen();
    void Watch();
    void Accept();
    void Serve(QLocalSocket* socket);
    // Reads what came; answers and delivers every whole frame. False if the peer was dropped.
    bool ReadFrom(QLocalSocket* socket, THandOverStream& stream, QTimer& frameTimer);

    uint64_t FWindowHandle;
    QString FPath;
    QLocalServer* FServer;
    QTimer FWatch;
    uint64_t FSocketInode = 0; // the file our listener made, to tell it from none or another
    int FOpen = 0;
};

} // namespace zv
