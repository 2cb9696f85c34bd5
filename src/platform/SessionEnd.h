#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "files/FileDescriptor.h"
#include "foundation/Result.h"

namespace trimora::platform {

/// Ends the program in good order when the session does: at SIGTERM, SIGINT (Ctrl+C) and SIGHUP.
///
/// A session manager's log-out needs nothing here. Its first word, that data be put away, may be followed
/// by the log-out's being cancelled, and the program goes on; its last word the toolkit turns into an end of
/// the event loop.
///
/// One object in a process. Made on the main thread, after the QApplication; when it goes, the signals
/// mean what they meant before. A second signal while the program is still busy with its end kills it. One
/// that the program was started to ignore, as nohup does it, stays ignored.
class SessionEnd {
 public:
    /// `end` is called once, on the main thread, from the event loop, and is expected to make the loop
    /// return soon. On failure returns an error; signals then kill as they always do.
    [[nodiscard]] static foundation::Result<std::unique_ptr<SessionEnd>> create(std::function<void()> end);

    ~SessionEnd();
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

 private:
    SessionEnd(files::FileDescriptor readEnd, files::FileDescriptor writeEnd, std::function<void()> end);
    void endOnce();

    files::FileDescriptor readEnd_;
    files::FileDescriptor writeEnd_;
    std::function<void()> end_;
    QSocketNotifier notifier_;
};

}  // namespace trimora::platform
