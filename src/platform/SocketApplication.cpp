#include "platform/SocketApplication.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDataStream>
#include <QDeadlineTimer>
#include <QIODevice>
#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "files/PrivateFolder.h"
#include "files/SystemError.h"
#include "foundation/Log.h"
#include "platform/LocalSocket.h"

namespace trimora::platform {

using files::FileDescriptor;
using foundation::Error;
using foundation::Result;
using std::filesystem::path;

namespace {

constexpr auto kFormat = QDataStream::Qt_6_4;
constexpr qsizetype kLongestRequest = 1 << 20;  // bytes; far more than a command line holds
constexpr char kTaken = '+';                    // the whole answer

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

/// The request that has arrived; nothing while some of it is still on its way.
std::optional<LaunchRequest> unpacked(const QByteArray& bytes) {
    QByteArray action;
    QByteArray token;
    QList<QByteArray> files;
    QDataStream in(bytes);
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

/// Takes what has come. False once the other side has closed, or nothing can be read any more.
bool take(const FileDescriptor& socket, QByteArray& bytes) {
    std::array<char, 4096> some{};
    for (;;) {
        const auto count = ::recv(socket.number(), some.data(), some.size(), 0);
        if (count > 0)
            bytes.append(some.data(), count);
        else if (count == 0 || errno != EINTR)
            return count < 0 && errno == EAGAIN;
    }
}

/// Waits until the socket can be read or written, as `events` says; false where that is not in time.
bool isReady(const FileDescriptor& socket, short events, const QDeadlineTimer& deadline) {
    pollfd watched{socket.number(), events, 0};
    int ready = 0;
    do {
        ready = ::poll(&watched, 1, static_cast<int>(deadline.remainingTime()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

bool sendAll(const FileDescriptor& socket, const QByteArray& bytes, const QDeadlineTimer& deadline) {
    qsizetype sent = 0;
    while (sent < bytes.size() && isReady(socket, POLLOUT, deadline)) {
        const auto count = ::send(socket.number(), bytes.constData() + sent,
                                  static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count < 0 && errno != EAGAIN && errno != EINTR)
            break;
        sent += std::max<qsizetype>(count, 0);
    }
    return sent == bytes.size();
}

}  // namespace

SocketApplication::SocketApplication(path folder, Launched launched)
    : folder_(std::move(folder)), launched_(std::move(launched)) {}

SocketApplication::~SocketApplication() {
    if (listener_)
        ::unlink(socket().c_str());
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
    auto listener = listenAt(socket());
    if (!listener)
        return listener.error();
    listener_ = std::move(*listener);
    arrivals_.emplace(listener_.number(), QSocketNotifier::Read);
    QObject::connect(&*arrivals_, &QSocketNotifier::activated, &context_, [this] { acceptAll(); });
    return {};
}

void SocketApplication::acceptAll() {
    for (FileDescriptor socket = acceptAt(listener_); socket; socket = acceptAt(listener_)) {
        const auto peer = peers_.emplace(peers_.end(), std::move(socket));
        QObject::connect(&peer->arrivals, &QSocketNotifier::activated, &context_,
                         [this, peer] { read(peer); });
    }
}

void SocketApplication::read(std::list<Peer>::iterator peer) {
    const bool isOpen = take(peer->socket, peer->bytes);
    const auto request = unpacked(peer->bytes);
    if (!isOpen || request || peer->bytes.size() > kLongestRequest)
        peer->arrivals.setEnabled(false);
    if (request)
        ::send(peer->socket.number(), &kTaken, 1, MSG_NOSIGNAL);
    if (!peer->arrivals.isEnabled())
        drop(peer);
    if (request)
        launched_(*request);
}

/// Not at once: this is called by the peer's own notifier.
void SocketApplication::drop(std::list<Peer>::iterator peer) {
    QMetaObject::invokeMethod(
        &context_, [this, peer] { peers_.erase(peer); }, Qt::QueuedConnection);
}

Result<void> SocketApplication::handOver(const LaunchRequest& request, std::chrono::milliseconds patience) {
    const QDeadlineTimer deadline(patience);
    const auto peer = connectTo(socket());
    if (!peer)
        return peer.error();
    QByteArray answer;
    if (sendAll(*peer, packed(request), deadline) && isReady(*peer, POLLIN, deadline))
        take(*peer, answer);
    if (answer.startsWith(kTaken))
        return {};
    return Error{"it takes no request"};
}

}  // namespace trimora::platform
