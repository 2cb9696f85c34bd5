#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <chrono>
#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <utility>

#include "files/FileDescriptor.h"
#include "files/FolderLock.h"
#include "foundation/Result.h"
#include "platform/LaunchRequest.h"

namespace trimora::platform {

/// The program where there is no session bus: the first process listens at a socket that only the
/// account itself can reach, later ones talk to it there. Main thread only.
///
/// Who is first is settled by a lock, which goes with its process; a socket that a killed process left
/// behind is therefore known as such, and replaced.
class SocketApplication {
 public:
    using Launched = std::function<void(const LaunchRequest&)>;

    /// Nothing is done on disk yet. `folder` is made where it is not there, for this account alone.
    /// `launched` comes on the main thread, from the event loop, after the asker has its answer.
    SocketApplication(std::filesystem::path folder, Launched launched);
    ~SocketApplication();
    SocketApplication(const SocketApplication&) = delete;
    SocketApplication& operator=(const SocketApplication&) = delete;

    enum class Claim {
        first,       ///< the socket is ours, and requests come
        taken,       ///< another process has it
        impossible,  ///< the folder cannot be used for this; the log says why
    };
    [[nodiscard]] Claim claim();

    /// Has the process that listens do what is asked, and waits for its answer. On failure (also where
    /// nobody listens yet or any more) returns an error. Files must be absolute.
    [[nodiscard]] foundation::Result<void> handOver(const LaunchRequest& request,
                                                    std::chrono::milliseconds patience);

    /// Where the socket is.
    [[nodiscard]] std::filesystem::path socket() const { return folder_ / "instance.socket"; }

 private:
    /// Somebody who has connected, and what has come from there so far.
    struct Peer {
        explicit Peer(files::FileDescriptor connected)
            : socket(std::move(connected)), arrivals(socket.number(), QSocketNotifier::Read) {}

        files::FileDescriptor socket;
        QSocketNotifier arrivals;
        QByteArray bytes;
    };

    [[nodiscard]] foundation::Result<void> listen();
    void acceptAll();
    void read(std::list<Peer>::iterator peer);
    void drop(std::list<Peer>::iterator peer);

    std::filesystem::path folder_;
    Launched launched_;
    std::optional<files::FolderLock> lock_;
    files::FileDescriptor listener_;
    std::optional<QSocketNotifier> arrivals_;
    std::list<Peer> peers_;
    QObject context_;  // last: what is still to come for the peers goes before them
};

}  // namespace trimora::platform
