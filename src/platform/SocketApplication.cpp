#include "platform/SocketApplication.h"

#include <QDataStream>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <utility>

#include "files/PrivateFolder.h"
#include "foundation/Log.h"

namespace trimora::platform {

using foundation::Error;
using foundation::Result;
using std::filesystem::path;

namespace {

constexpr auto kFormat = QDataStream::Qt_6_4;
constexpr qint64 kLongestRequest = 1 << 20;  // bytes; far more than a command line holds
constexpr char kTaken = '+';                 // the whole answer

QString named(const path& file) {
    return QFile::decodeName(file.c_str());
}

QByteArray packed(const LaunchRequest& request) {
    QList<QByteArray> files;
    for (const path& file : request.files)
        files << QByteArray(file.c_str());
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(kFormat);
    out << QByteArray::fromStdString(request.action) << QByteArray::fromStdString(request.activationToken)
        << files;
    return bytes;
}

/// The request that has arrived at the socket; nothing while some of it is still on its way.
std::optional<LaunchRequest> unpacked(QLocalSocket& peer) {
    QByteArray action;
    QByteArray token;
    QList<QByteArray> files;
    QDataStream in(&peer);
    in.setVersion(kFormat);
    in.startTransaction();
    in >> action >> token >> files;
    if (!in.commitTransaction())
        return std::nullopt;
    LaunchRequest request{{}, action.toStdString(), token.toStdString()};
    for (const QByteArray& file : files)
        request.files.emplace_back(file.toStdString());
    return request;
}

}  // namespace

SocketApplication::SocketApplication(path folder, Launched launched)
    : folder_(std::move(folder)), launched_(std::move(launched)) {
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { acceptAll(); });
}

SocketApplication::Claim SocketApplication::claim() {
    const auto privately = files::PrivateFolder::create(folder_);
    if (!privately) {
        foundation::log::warning("no folder for the socket: %s", privately.error().message.c_str());
        return Claim::impossible;
    }
    auto lock = files::FolderLock::tryAcquire(folder_ / "instance.lock");
    if (!lock && lock.error().code == files::FolderLock::kTaken)
        return Claim::taken;
    const Result<void> done = lock ? listen() : Result<void>(lock.error());
    if (!done) {
        foundation::log::warning("later starts cannot reach this one: %s", done.error().message.c_str());
        return Claim::impossible;
    }
    lock_ = std::move(*lock);
    return Claim::first;
}

Result<void> SocketApplication::listen() {
    QLocalServer::removeServer(named(socket()));
    if (!server_.listen(named(socket())))
        return Error{server_.errorString().toStdString()};
    QFile::setPermissions(named(socket()), QFile::ReadOwner | QFile::WriteOwner);
    return {};
}

void SocketApplication::acceptAll() {
    while (QLocalSocket* const peer = server_.nextPendingConnection()) {
        QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
        QObject::connect(peer, &QLocalSocket::readyRead, peer, [this, peer] { read(*peer); });
        read(*peer);
    }
}

void SocketApplication::read(QLocalSocket& peer) {
    if (peer.bytesAvailable() > kLongestRequest)
        return peer.abort();
    const auto request = unpacked(peer);
    if (!request)
        return;
    peer.write(&kTaken, 1);
    peer.flush();
    launched_(*request);
}

Result<void> SocketApplication::handOver(const LaunchRequest& request, std::chrono::milliseconds patience) {
    const QDeadlineTimer deadline(patience);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket peer;
    peer.connectToServer(named(socket()));
    if (!peer.waitForConnected(left()))
        return Error{peer.errorString().toStdString()};
    peer.write(packed(request));
    while (peer.bytesToWrite() > 0 && peer.waitForBytesWritten(left())) {
    }
    char answer = 0;
    while (peer.bytesAvailable() == 0 && peer.waitForReadyRead(left())) {
    }
    if (peer.read(&answer, 1) == 1 && answer == kTaken)
        return {};
    return Error{peer.errorString().toStdString()};
}

}  // namespace trimora::platform
