// The receiving side of hand-overs: a window's listener, which no peer can stop or exhaust.
#include "shell/HandOver.h"

#include "common/Trace.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <memory>
#include <sys/stat.h>

namespace zv {
namespace {

// The inode of the socket file at path, 0 when there is none.
uint64_t SocketInode(const QString& path) {
    struct stat st {};
    const QByteArray name = path.toLocal8Bit();
    return ::lstat(name.constData(), &st) == 0 && S_ISSOCK(st.st_mode) ? st.st_ino : 0;
}

void Drop(QLocalSocket* socket) {
    socket->abort();
    socket->deleteLater();
}

} // namespace

THandOverServer::THandOverServer(uint64_t windowHandle, QObject* parent)
    : QObject(parent), FWindowHandle(windowHandle), FServer(new QLocalServer(this)) {
    FServer->setSocketOptions(QLocalServer::UserAccessOption);
    connect(FServer, &QLocalServer::newConnection, this, &THandOverServer::Accept);
    Listen();
    FWatch.setInterval(kWatchMs);
    connect(&FWatch, &QTimer::timeout, this, &THandOverServer::Watch);
    FWatch.start();
}

THandOverServer::~THandOverServer() {
    FWatch.stop();
    delete FServer; // closes the listener and its connections, and removes the socket file
}

bool THandOverServer::IsListening() const {
    return FServer->isListening();
}

void THandOverServer::Listen() {
    FServer->close();
    // The path again: it makes the instance folder anew if someone removed it.
    FPath = QString::fromStdString(HandOverSocketPath(FWindowHandle));
    QLocalServer::removeServer(FPath); // a stale socket of a crashed process with our id
    const bool wasListening = FSocketInode != 0;
    FSocketInode = FServer->listen(FPath) ? SocketInode(FPath) : 0;
    if (FSocketInode == 0 && (wasListening || !FWatch.isActive())) // said once, not each tick
        Trace("THandOverServer::Listen() - cannot listen: " + FServer->errorString().toStdString());
}

void THandOverServer::Watch() {
    if (FServer->isListening() && FSocketInode != 0 && SocketInode(FPath) == FSocketInode)
        return;
    if (FSocketInode != 0)
        Trace("THandOverServer::Watch() - socket gone, listening again");
    Listen();
}

void THandOverServer::Accept() {
    while (QLocalSocket* socket = FServer->nextPendingConnection()) {
        if (FOpen >= kMaxConnections)
            Drop(socket); // enough peers are being served; a sender tries again
        else
            Serve(socket);
    }
}

void THandOverServer::Serve(QLocalSocket* socket) {
    ++FOpen;
    connect(socket, &QObject::destroyed, this, [this] { --FOpen; });
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    auto stream = std::make_shared<THandOverStream>();
    auto* frameTimer = new QTimer(socket);
    frameTimer->setSingleShot(true);
    frameTimer->start(kFrameMs);
    connect(socket, &QLocalSocket::readyRead, this,
            [this, socket, stream, frameTimer] { ReadFrom(socket, *stream, *frameTimer); });
    connect(frameTimer, &QTimer::timeout, this, [this, socket, stream, frameTimer] {
        // A busy event loop may have held back the bytes: judge only after reading them.
        if (ReadFrom(socket, *stream, *frameTimer) && !frameTimer->isActive())
            Drop(socket);
    });
    if (socket->bytesAvailable() > 0)
        ReadFrom(socket, *stream, *frameTimer);
}

bool THandOverServer::ReadFrom(QLocalSocket* socket, THandOverStream& stream, QTimer& frameTimer) {
    const QByteArray bytes = socket->readAll();
    stream.Append(bytes.constData(), static_cast<size_t>(bytes.size()));
    uint64_t kind = 0;
    std::u16string text;
    int next = 0;
    while ((next = stream.Next(kind, text)) == 1) {
        if (socket->state() == QLocalSocket::ConnectedState) {
            const auto reply = EncodeHandOverReply(kHandOverReply);
            socket->write(reinterpret_cast<const char*>(reply.data()),
                          static_cast<qint64>(reply.size()));
            socket->flush();
        }
        frameTimer.start(kFrameMs); // the next frame has its own time
        emit received(kind, QString::fromStdU16String(text));
    }
    if (next < 0) {
        Drop(socket);
        return false;
    }
    return true;
}

} // namespace zv
