#pragma once

#include <chrono>
#include <ctime>

namespace trimora::reliability {

/// What the calling thread has spent on a processor since it began.
inline std::chrono::nanoseconds processorTimeOfThisThread() {
    std::timespec spent{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return std::chrono::seconds(spent.tv_sec) + std::chrono::nanoseconds(spent.tv_nsec);
}

}  // namespace trimora::reliability
