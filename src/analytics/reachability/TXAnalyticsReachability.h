#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "analytics/reachability/ReachabilitySource.h"
#include "foundation/Queues.h"

namespace trimora::analytics {

/// Posted on the main queue at every change of reachability; the object is the monitor.
inline constexpr const char* kTelemetrixReachabilityChangedNotification =
    "kTelemetrixReachabilityChangedNotification";

/// Tells whether something on the network can be reached, and when that changes.
///
/// Made by the named constructors below, owned by whoever made it. Queries ask the host afresh each
/// time and may come from any thread. startNotifier() and stopNotifier() belong to one thread; between
/// them each change calls reachableBlock or unreachableBlock on the queue "com.pingwell.reachability"
/// and then posts the notification on the main queue.
class TXAnalyticsReachability : public std::enable_shared_from_this<TXAnalyticsReachability> {
 public:
    using Block = std::function<void(TXAnalyticsReachability&)>;

    /// What `currentReachabilityStatus()` answers. A desktop never answers `cellular`.
    enum Status : int { notReachable = 0, cellular = 1, wiFi = 2 };

    /// Null where the host name or address makes no sense.
    [[nodiscard]] static std::shared_ptr<TXAnalyticsReachability> reachabilityWithHostName(
        const std::string& hostName);
    [[nodiscard]] static std::shared_ptr<TXAnalyticsReachability> reachabilityWithHostname(
        const std::string& hostName);
    [[nodiscard]] static std::shared_ptr<TXAnalyticsReachability> reachabilityWithAddress(
        const std::string& address);
    /// Any way to the internet.
    [[nodiscard]] static std::shared_ptr<TXAnalyticsReachability> reachabilityForInternetConnection();
    /// The local link: neighbours that need no router.
    [[nodiscard]] static std::shared_ptr<TXAnalyticsReachability> reachabilityForLocalWiFi();

    /// A monitor of what `ref` watches.
    [[nodiscard]] static std::shared_ptr<TXAnalyticsReachability> initWithReachabilityRef(
        std::unique_ptr<ReachabilityRef> ref);

    ~TXAnalyticsReachability();

    /// Begins to tell of changes; false, with nothing left behind, where the host cannot.
    bool startNotifier();
    void stopNotifier();

    [[nodiscard]] bool isReachable() const;
    [[nodiscard]] bool isReachableViaWWAN() const { return false; }
    [[nodiscard]] bool isReachableViaWiFi() const;
    [[nodiscard]] bool isConnectionRequired() const { return connectionRequired(); }
    [[nodiscard]] bool connectionRequired() const;
    [[nodiscard]] bool isConnectionOnDemand() const;
    [[nodiscard]] bool isInterventionRequired() const;
    [[nodiscard]] Status currentReachabilityStatus() const;

    /// The host's flags (namespace reachability), 0 where they cannot be told.
    [[nodiscard]] std::uint32_t reachabilityFlags() const;

    /// "Cellular", "WiFi" or "No Connection". Cellular is what the status is called whose number equals
    /// that of `reachableOnWWAN`.
    [[nodiscard]] std::string currentReachabilityString() const;

    /// Ten characters for the log, such as "XR -------": an X, then one for each flag, its letter or a
    /// dash: R reachable, c transient connection, t connection required, i on traffic, C intervention
    /// required, D on demand, l local address, d direct.
    [[nodiscard]] std::string currentReachabilityFlags() const;

    /// "<class: handle>".
    [[nodiscard]] std::string description() const;

    /// Reachable, unless that would take a connection that is still to be made.
    [[nodiscard]] bool isReachableWithFlags(std::uint32_t flags) const;

    [[nodiscard]] const ReachabilityRef* reachabilityRef() const { return ref_.get(); }
    /// Null unless the notifier runs.
    [[nodiscard]] foundation::SerialQueue* reachabilitySerialQueue() const { return queue_.get(); }

    [[nodiscard]] bool reachableOnWWAN() const { return reachableOnWWAN_; }
    void setReachableOnWWAN(bool reachable) { reachableOnWWAN_ = reachable; }
    /// Set before startNotifier().
    void setReachableBlock(Block block) { reachableBlock_ = std::move(block); }
    void setUnreachableBlock(Block block) { unreachableBlock_ = std::move(block); }
    /// Something kept for the owner.
    [[nodiscard]] const std::any& reachabilityObject() const { return reachabilityObject_; }
    void setReachabilityObject(std::any object) { reachabilityObject_ = std::move(object); }

 private:
    explicit TXAnalyticsReachability(std::unique_ptr<ReachabilityRef> ref) : ref_(std::move(ref)) {}
    void reachabilityChanged(std::uint32_t flags);
    [[nodiscard]] bool has(std::uint32_t flag) const { return (reachabilityFlags() & flag) != 0; }

    std::unique_ptr<ReachabilityRef> ref_;
    std::unique_ptr<foundation::SerialQueue> queue_;
    bool reachableOnWWAN_ = true;
    Block reachableBlock_;
    Block unreachableBlock_;
    std::any reachabilityObject_;
};

}  // namespace trimora::analytics
