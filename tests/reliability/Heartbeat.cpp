#include "Heartbeat.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <utility>

namespace trimora::reliability {

void Heartbeat::beat() {
    const Nanoseconds waited = longestWaitForAProcessor();
    const auto now = std::chrono::steady_clock::now();
    longest_ = std::max<Nanoseconds>(longest_, now - std::exchange(last_, now) - waited);
}

std::chrono::milliseconds Heartbeat::longestSilence() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::exchange(longest_, Nanoseconds(0)));
}

/// Since the last call.
Heartbeat::Nanoseconds Heartbeat::longestWaitForAProcessor() {
    Nanoseconds longest{0};
    std::error_code gone;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", gone)) {
        std::ifstream numbers(task.path() / "schedstat");
        std::int64_t ran = 0;
        std::int64_t waited = 0;
        if (!(numbers >> ran >> waited))
            continue;
        const Nanoseconds sum(waited);
        const auto [known, isNew] = waited_.try_emplace(task.path().filename().string(), sum);
        longest = std::max(longest, sum - std::exchange(known->second, sum));
    }
    return longest;
}

}  // namespace trimora::reliability
