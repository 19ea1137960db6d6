// Hand-over frames over QLocalSocket (Unix-domain sockets in the instance folder).
#include "shell/HandOver.h"

#include "shell/RunOnce.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QVariant>

#include <atomic>
#include <cstdio>
#include <unistd.h>

namespace zv {
namespace {

template <typename T> void PutLE(std::vector<uint8_t>& out, T value) {
    for (size_t i = 0; i < sizeof(T); ++i)
        out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

template <typename T> T GetLE(const uint8_t* p) {
    T value = 0;
    for (size_t i = 0; i < sizeof(T); ++i)
        value |= static_cast<T>(p[i]) << (8 * i);
    return value;
}

constexpr size_t kHeaderBytes = 12;

} // namespace

std::vector<uint8_t> EncodeHandOverFrame(uint64_t kind, const std::u16string& text) {
    std::vector<uint8_t> out;
    out.reserve(kHeaderBytes + text.size() * 2);
    PutLE<uint64_t>(out, kind);
    PutLE<uint32_t>(out, static_cast<uint32_t>(text.size() * 2));
    for (char16_t c : text)
        PutLE<uint16_t>(out, c);
    return out;
}

long DecodeHandOverFrame(const uint8_t* data, size_t size, uint64_t& kind, std::u16string& text) {
    if (size < kHeaderBytes)
        return 0;
    const uint32_t bytes = GetLE<uint32_t>(data + 8);
    if (bytes % 2 != 0 || bytes > kMaxHandOverBytes)
        return -1;
    if (size < kHeaderBytes + bytes)
        return 0;
    kind = GetLE<uint64_t>(data);
    text.resize(bytes / 2);
    for (size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char16_t>(GetLE<uint16_t>(data + kHeaderBytes + 2 * i));
    return static_cast<long>(kHeaderBytes + bytes);
}

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
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(HandOverSocketPath(windowHandle)));
    if (!socket.waitForConnected(timeoutMs))
        return false;
    const auto frame = EncodeHandOverFrame(kind, text.toStdU16String());
    socket.write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
    if (!socket.waitForBytesWritten(timeoutMs))
        return false;
    while (socket.bytesAvailable() < 4)
        if (!socket.waitForReadyRead(timeoutMs))
            return false;
    const QByteArray reply = socket.read(4);
    return GetLE<uint32_t>(reinterpret_cast<const uint8_t*>(reply.constData())) == kHandOverReply;
}

THandOverServer::THandOverServer(uint64_t windowHandle, QObject* parent)
    : QObject(parent), FWindowHandle(windowHandle), FServer(new QLocalServer(this)) {
    const auto path = QString::fromStdString(HandOverSocketPath(windowHandle));
    QLocalServer::removeServer(path); // a stale socket of a crashed process with our id
    FServer->setSocketOptions(QLocalServer::UserAccessOption);
    FServer->listen(path);
    connect(FServer, &QLocalServer::newConnection, this, &THandOverServer::Accept);
}

THandOverServer::~THandOverServer() {
    const auto path = FServer->fullServerName();
    FServer->close();
    QLocalServer::removeServer(path);
}

bool THandOverServer::IsListening() const {
    return FServer->isListening();
}

void THandOverServer::Accept() {
    while (QLocalSocket* socket = FServer->nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { ReadFrom(socket); });
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0)
            ReadFrom(socket);
    }
}

void THandOverServer::ReadFrom(QLocalSocket* socket) {
    QByteArray buffer = socket->property("zvPending").toByteArray() + socket->readAll();
    uint64_t kind = 0;
    std::u16string text;
    const long used = DecodeHandOverFrame(reinterpret_cast<const uint8_t*>(buffer.constData()),
                                          static_cast<size_t>(buffer.size()), kind, text);
    if (used < 0) {
        socket->abort();
        return;
    }
    if (used == 0) {
        socket->setProperty("zvPending", buffer);
        return;
    }
    socket->setProperty("zvPending", QByteArray());
    std::vector<uint8_t> reply;
    PutLE<uint32_t>(reply, kHandOverReply);
    socket->write(reinterpret_cast<const char*>(reply.data()), 4);
    socket->flush();
    emit received(kind, QString::fromStdU16String(text));
}

} // namespace zv
