#include "cli/RunTime.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <ctime>
#include <thread>

namespace trimora {

using foundation::Clock;

namespace {

constexpr double kFrame = 1.0 / 60;  // seconds

Clock::WallTime localTime(const script::ClockStep& at) {
    std::tm parts{};
    parts.tm_year = at.year - 1900;
    parts.tm_mon = at.month - 1;
    parts.tm_mday = at.day;
    parts.tm_hour = at.hour;
    parts.tm_min = at.minute;
    parts.tm_sec = at.second;
    parts.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&parts));
}

Clock::WallTime begin(RunTime::Pace pace) {
    return pace == RunTime::Pace::really ? std::chrono::system_clock::now()
                                         : localTime({.year = 2026, .month = 1, .day = 1, .hour = 12});
}

}  // namespace

RunTime::RunTime(Pace pace) : pace_(pace), clock_(begin(pace)) {}

double RunTime::machineSeconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
}

void RunTime::turn() {
    // What the queues do reaches the toolkit, whose events reach the queues again.
    constexpr int kRounds = 3;
    for (int round = 0; round < kRounds; ++round) {
        queues_.settle();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    queues_.settle();
}

void RunTime::catchUp() {
    const double behind = machineSeconds() - clock_.seconds();
    if (pace_ == Pace::really && behind > 0)
        clock_.advance(behind, [this] { queues_.settle(); });
}

void RunTime::advance(double seconds) {
    const auto settle = [this] { queues_.settle(); };
    if (pace_ == Pace::virtually) {
        clock_.advance(seconds, settle);
        turn();
        return;
    }
    const double end = clock_.seconds() + seconds;
    while (clock_.seconds() < end) {
        const double pause = std::min(kFrame, end - clock_.seconds());
        std::this_thread::sleep_for(std::chrono::duration<double>(pause));
        clock_.advance(pause, settle);
        turn();
        if (frame_)
            frame_();
    }
}

void RunTime::setLocalTime(const script::ClockStep& at) {
    clock_.setWallTime(localTime(at));
}

}  // namespace trimora
