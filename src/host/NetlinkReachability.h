#pragma once

#include <memory>
#include <string>

#include "analytics/reachability/ReachabilitySource.h"

namespace trimora::host {

/// What the Linux kernel's routing tables say about ways into the network.
///
/// A target is reachable when the kernel has a working route to it; nothing is sent to find out. A
/// target without a router in between is "direct", one of this machine itself "local" too. The internet
/// ("0.0.0.0") is reachable when a route of either address family leads to addresses that belong to
/// nobody; so is a host that is given by name, which is not looked up.
///
/// A ref that has a callback and a queue has one thread, which sleeps until the kernel reports a change
/// of links, addresses or routes; the callback runs when the flags differ from those before.
class NetlinkReachability final : public analytics::ReachabilitySource {
 public:
    [[nodiscard]] std::unique_ptr<analytics::ReachabilityRef> createWithName(
        const std::string& hostName) override;
    [[nodiscard]] std::unique_ptr<analytics::ReachabilityRef> createWithAddress(
        const std::string& address) override;
};

}  // namespace trimora::host
