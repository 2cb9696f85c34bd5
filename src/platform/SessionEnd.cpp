#include "platform/SessionEnd.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "files/SystemError.h"

namespace trimora::platform {

using foundation::Result;

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

// All that the handler may touch: where it writes, and what the signals meant before.
volatile std::sig_atomic_t pipeToLoop = -1;
std::array<struct sigaction, kSignals.size()> before;

void tellLoop(int signal) {
    const int number = errno;
    const char byte = static_cast<char>(signal);
    [[maybe_unused]] const auto written = ::write(pipeToLoop, &byte, 1);
    errno = number;
}

void takeSignals() {
    struct sigaction action {};
    action.sa_handler = tellLoop;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], &action, &before[i]);
        if (before[i].sa_handler == SIG_IGN)  // as nohup wants it
            ::sigaction(kSignals[i], &before[i], nullptr);
    }
}

void giveSignalsBack() {
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &before[i], nullptr);
}

}  // namespace

Result<std::unique_ptr<SessionEnd>> SessionEnd::create(std::function<void()> end) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return files::systemError("signals cannot be heard", errno);
    return std::unique_ptr<SessionEnd>(
        new SessionEnd(files::FileDescriptor(ends[0]), files::FileDescriptor(ends[1]), std::move(end)));
}

SessionEnd::SessionEnd(files::FileDescriptor readEnd, files::FileDescriptor writeEnd,
                       std::function<void()> end)
    : readEnd_(std::move(readEnd)),
      writeEnd_(std::move(writeEnd)),
      end_(std::move(end)),
      notifier_(readEnd_.number(), QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { endOnce(); });
    pipeToLoop = writeEnd_.number();
    takeSignals();
}

SessionEnd::~SessionEnd() {
    giveSignalsBack();
}

void SessionEnd::endOnce() {
    notifier_.setEnabled(false);
    if (const auto end = std::exchange(end_, nullptr))
        end();
}

}  // namespace trimora::platform
