#pragma once

#include <atomic>

/// Entry points that older applications call. Telemetrix::startSession() does all that they once did,
/// so starting and stopping here does nothing.
namespace trimora::analytics {

/// Kept for applications that hold on to it. Any thread; lives as long as the process.
class TLAnalytics {
 public:
    /// The one object of the process, made on first use.
    [[nodiscard]] static TLAnalytics& shared();
    /// Does nothing: recording begins with Telemetrix::startSession().
    void start() {}
    /// Does nothing; the application's activity is always followed.
    void startWithoutAppStateTracking() {}

 private:
    TLAnalytics() = default;
};

/// As TLAnalytics, under a second name.
class TLEventAnalytics {
 public:
    /// The one object of the process, made on first use.
    [[nodiscard]] static TLEventAnalytics& shared();
    /// Does nothing.
    void start() {}
    /// Does nothing.
    void startWithoutAppStateTracking() {}

 private:
    TLEventAnalytics() = default;
};

/// Keeps one boolean for its owner; nothing in the library reads it.
class TLUnityStatistic {
 public:
    /// The one object of the process, made on first use.
    [[nodiscard]] static TLUnityStatistic& shared();
    /// Do nothing; isStarted() is its owner's to set.
    void start() {}
    void stop() {}
    /// False at first.
    [[nodiscard]] bool isStarted() const { return isStarted_; }
    void setIsStarted(bool started) { isStarted_ = started; }

 private:
    TLUnityStatistic() = default;
    std::atomic<bool> isStarted_ = false;
};

}  // namespace trimora::analytics
