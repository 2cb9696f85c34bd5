#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>

#include "foundation/Result.h"
#include "script/Steps.h"

namespace trimora {

/// An edit script that is being written: the steps as they come, and the time between them.
///
/// Every line is in the file as soon as its step is there, so what is recorded outlives a crash. Main thread
/// only.
class Recording {
 public:
    /// Begins the file anew. Returns an error where it cannot be written.
    [[nodiscard]] static foundation::Result<Recording> create(const std::filesystem::path& file);

    /// Writes a step, after the time since the one before.
    void add(const script::Step& step);

    /// Between these two, no time is written: a panel is open, and its answer is to be there in a replay
    /// before the clock moves on. What has passed is written before the next step after that.
    void holdTime() { ++holds_; }
    void releaseTime() { --holds_; }

 private:
    using Instant = std::chrono::steady_clock::time_point;

    explicit Recording(std::ofstream stream) : stream_(std::move(stream)) {}
    void write(const script::Step& step);

    std::ofstream stream_;
    Instant last_ = std::chrono::steady_clock::now();
    int holds_ = 0;
};

}  // namespace trimora
