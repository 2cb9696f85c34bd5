#pragma once

#include <atomic>

/// Entry points that older applications call. Telemetrix::startSession() does all that they once did,
/// so starting and stopping here does nothing.
namespace trimora::analytics {

class TLAnalytics {
 public:
    [[nodiscard]] static TLAnalytics& shared();
    void start() {}
    void startWithoutAppStateTracking() {}

 private:
    TLAnalytics() = default;
};

class TLEventAnalytics {
 public:
    [[nodiscard]] static TLEventAnalytics& shared();
    void start() {}
    void startWithoutAppStateTracking() {}

 private:
    TLEventAnalytics() = default;
};

/// Keeps one boolean for its owner; nothing in the library reads it.
class TLUnityStatistic {
 public:
    [[nodiscard]] static TLUnityStatistic& shared();
    void start() {}
    void stop() {}
    [[nodiscard]] bool isStarted() const { return isStarted_; }
    void setIsStarted(bool started) { isStarted_ = started; }

 private:
    TLUnityStatistic() = default;
    std::atomic<bool> isStarted_ = false;
};

}  // namespace trimora::analytics
