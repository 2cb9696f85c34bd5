#include "analytics/reachability/TXAnalyticsReachability.h"

#include <array>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/public/TXAnalyticsQueue.h"

namespace trimora::analytics {

using Shared = std::shared_ptr<TXAnalyticsReachability>;

Shared TXAnalyticsReachability::reachabilityWithHostName(const std::string& hostName) {
    return initWithReachabilityRef(wiring().reachability.createWithName(hostName));
}

Shared TXAnalyticsReachability::reachabilityWithHostname(const std::string& hostName) {
    return reachabilityWithHostName(hostName);
}

Shared TXAnalyticsReachability::reachabilityWithAddress(const std::string& address) {
    return initWithReachabilityRef(wiring().reachability.createWithAddress(address));
}

Shared TXAnalyticsReachability::reachabilityForInternetConnection() {
    return reachabilityWithAddress("0.0.0.0");
}

Shared TXAnalyticsReachability::reachabilityForLocalWiFi() {
    return reachabilityWithAddress("169.254.0.0");
}

Shared TXAnalyticsReachability::initWithReachabilityRef(std::unique_ptr<ReachabilityRef> ref) {
    if (!ref)
        return nullptr;
    return Shared(new TXAnalyticsReachability(std::move(ref)));
}

TXAnalyticsReachability::~TXAnalyticsReachability() {
    stopNotifier();
}

bool TXAnalyticsReachability::startNotifier() {
    stopNotifier();
    queue_ = wiring().queues.makeSerialQueue("com.pingwell.reachability");
    const auto callback = [weak = weak_from_this()](std::uint32_t flags) {
        if (const auto monitor = weak.lock())
            monitor->reachabilityChanged(flags);
    };
    if (ref_->setCallback(callback) && ref_->setDispatchQueue(queue_.get()))
        return true;
    stopNotifier();
    return false;
}

void TXAnalyticsReachability::stopNotifier() {
    if (!queue_)
        return;
    (void)ref_->setDispatchQueue(nullptr);
    (void)ref_->setCallback({});
    queue_.reset();
}

void TXAnalyticsReachability::reachabilityChanged(std::uint32_t flags) {
    const Block& block = isReachableWithFlags(flags) ? reachableBlock_ : unreachableBlock_;
    if (block)
        block(*this);
    TXAnalyticsQueue::addTaskOnMainQueue([weak = weak_from_this()] {
        if (const auto monitor = weak.lock())
            wiring().notifications.post(kTelemetrixReachabilityChangedNotification, monitor.get());
    });
}

bool TXAnalyticsReachability::isReachable() const {
    return isReachableWithFlags(reachabilityFlags());
}

bool TXAnalyticsReachability::isReachableWithFlags(std::uint32_t flags) const {
    constexpr std::uint32_t kStillToConnect =
        reachability::kTransientConnection | reachability::kConnectionRequired;
    return (flags & reachability::kReachable) != 0 && (flags & kStillToConnect) != kStillToConnect;
}

bool TXAnalyticsReachability::isReachableViaWiFi() const {
    return has(reachability::kReachable);
}

bool TXAnalyticsReachability::connectionRequired() const {
    return has(reachability::kConnectionRequired);
}

bool TXAnalyticsReachability::isConnectionOnDemand() const {
    const std::uint32_t flags = reachabilityFlags();
    return (flags & reachability::kConnectionRequired) != 0 &&
           (flags & (reachability::kConnectionOnTraffic | reachability::kConnectionOnDemand)) != 0;
}

bool TXAnalyticsReachability::isInterventionRequired() const {
    const std::uint32_t flags = reachabilityFlags();
    return (flags & reachability::kConnectionRequired) != 0 &&
           (flags & reachability::kInterventionRequired) != 0;
}

TXAnalyticsReachability::Status TXAnalyticsReachability::currentReachabilityStatus() const {
    return isReachable() && isReachableViaWiFi() ? wiFi : notReachable;
}

std::uint32_t TXAnalyticsReachability::reachabilityFlags() const {
    return ref_->flags().value_or(0);
}

std::string TXAnalyticsReachability::currentReachabilityString() const {
    const Status status = currentReachabilityStatus();
    if (static_cast<int>(status) == static_cast<int>(reachableOnWWAN_))
        return "Cellular";
    return status == wiFi ? "WiFi" : "No Connection";
}

std::string TXAnalyticsReachability::currentReachabilityFlags() const {
    struct Letter {
        std::uint32_t flag;
        char letter;
    };
    constexpr std::array kLetters = {Letter{reachability::kTransientConnection, 'c'},
                                     Letter{reachability::kConnectionRequired, 't'},
                                     Letter{reachability::kConnectionOnTraffic, 'i'},
                                     Letter{reachability::kInterventionRequired, 'C'},
                                     Letter{reachability::kConnectionOnDemand, 'D'},
                                     Letter{reachability::kIsLocalAddress, 'l'},
                                     Letter{reachability::kIsDirect, 'd'}};
    const std::uint32_t flags = reachabilityFlags();
    std::string text = (flags & reachability::kReachable) != 0 ? "XR " : "X- ";
    for (const Letter& letter : kLetters)
        text += (flags & letter.flag) != 0 ? letter.letter : '-';
    return text;
}

std::string TXAnalyticsReachability::description() const {
    return formatted("<TXAnalyticsReachability: %p>", static_cast<const void*>(ref_.get()));
}

}  // namespace trimora::analytics
