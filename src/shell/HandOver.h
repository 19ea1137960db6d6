// Hand-over messages between instances: a copy-data frame sent to a registered window's
// Unix-domain socket, answered with 2001.
#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <string>
#include <vector>

class QLocalServer;
class QLocalSocket;

namespace zv {

// Data kinds of the copy-data message.
enum : uint64_t { kHandOverParams = 1001, kHandOverPaste = 1009, kHandOverZenWindow = 1010 };
inline constexpr uint32_t kHandOverReply = 2001;

// Frame: kind (u64 LE), byte length (u32 LE), UTF-16LE text without terminator.
std::vector<uint8_t> EncodeHandOverFrame(uint64_t kind, const std::u16string& text);

// Parses one whole frame at the start of data; returns the bytes consumed, 0 if incomplete.
// A length that is odd or above kMaxHandOverBytes makes the frame invalid (returns -1).
long DecodeHandOverFrame(const uint8_t* data, size_t size, uint64_t& kind, std::u16string& text);
inline constexpr uint32_t kMaxHandOverBytes = 64u << 20;

// The socket path of a registered window.
std::string HandOverSocketPath(uint64_t windowHandle);

// A new window handle, unique on this machine: the process id and a counter.
uint64_t NewWindowHandle();

// Sends one frame to a window and waits for the reply; true when 2001 came back.
// Blocks at most timeoutMs (a receiver busy in a modal dialog still answers: its event
// loop runs).
bool SendHandOver(uint64_t windowHandle, uint64_t kind, const QString& text, int timeoutMs = 30000);

// Listens on the socket of one window; emits received() for each frame after replying.
class THandOverServer : public QObject {
    Q_OBJECT
public:
    explicit THandOverServer(uint64_t windowHandle, QObject* parent = nullptr);
    ~THandOverServer() override;
    bool IsListening() const;
    uint64_t WindowHandle() const { return FWindowHandle; }

signals:
    void received(quint64 kind, const QString& text);

private:
    void Accept();
    void ReadFrom(QLocalSocket* socket);

    uint64_t FWindowHandle;
    QLocalServer* FServer;
};

} // namespace zv
