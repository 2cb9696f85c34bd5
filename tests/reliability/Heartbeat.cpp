#include "Heartbeat.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <utility>

#include "QueuesBeside.h"
#include "ThreadTime.h"

namespace trimora::reliability {

void Heartbeat::beat() {
    const Nanoseconds waited = waitsForAProcessor();
    const auto [workedBeside, passedBeside] = QueuesBeside::spentBeside();
    const Nanoseconds work = processorTimeOfThisThread() - workedBeside;
    const Nanoseconds worked = work - std::exchange(worked_, work);
    const auto instant = std::chrono::steady_clock::now() - passedBeside;
    const Nanoseconds passed = instant - std::exchange(last_, instant);
    longest_ = std::max({longest_, passed - waited, std::min(worked, passed)});
}

std::chrono::milliseconds Heartbeat::longestSilence() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::exchange(longest_, Nanoseconds(0)));
}

/// Of all threads, since the last call.
Heartbeat::Nanoseconds Heartbeat::waitsForAProcessor() {
    Nanoseconds all{0};
    std::error_code gone;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", gone)) {
        std::ifstream numbers(task.path() / "schedstat");
        std::int64_t ran = 0;
        std::int64_t waited = 0;
        if (!(numbers >> ran >> waited))
            continue;
        const Nanoseconds sum(waited);
        const auto [known, isNew] = waited_.try_emplace(task.path().filename().string(), sum);
        all += sum - std::exchange(known->second, sum);
    }
    return all;
}

}  // namespace trimora::reliability
