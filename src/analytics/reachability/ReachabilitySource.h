#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "foundation/Queues.h"

namespace trimora::analytics {

/// How a target can be reached, as bits. None of them means that it cannot be.
namespace reachability {
/// The way leads through a connection that comes and goes, such as one that is dialled.
inline constexpr std::uint32_t kTransientConnection = 1U << 0;
/// There is a way with the network as it is set up now.
inline constexpr std::uint32_t kReachable = 1U << 1;
/// There is a way, but a connection has to be made first.
inline constexpr std::uint32_t kConnectionRequired = 1U << 2;
/// Such a connection is made by itself when something is sent.
inline constexpr std::uint32_t kConnectionOnTraffic = 1U << 3;
/// Such a connection takes a person, to give a password for instance.
inline constexpr std::uint32_t kInterventionRequired = 1U << 4;
/// Such a connection is made when a program asks for it.
inline constexpr std::uint32_t kConnectionOnDemand = 1U << 5;
/// The target is this machine itself.
inline constexpr std::uint32_t kIsLocalAddress = 1U << 16;
/// The target is a neighbour: no router lies between.
inline constexpr std::uint32_t kIsDirect = 1U << 17;
}  // namespace reachability

/// Watches one target for its owner. Destroying it ends the watch: no callback runs afterwards, except
/// that one already handed to the queue may. One thread at a time.
class ReachabilityRef {
 public:
    using Callback = std::function<void(std::uint32_t flags)>;

    virtual ~ReachabilityRef() = default;
    ReachabilityRef(const ReachabilityRef&) = delete;
    ReachabilityRef& operator=(const ReachabilityRef&) = delete;

    /// How the target can be reached now; nothing where that cannot be told.
    [[nodiscard]] virtual std::optional<std::uint32_t> flags() const = 0;

    /// Whom to call when the flags change; an empty callback for nobody. False where it cannot be done.
    [[nodiscard]] virtual bool setCallback(Callback callback) = 0;

    /// Where the callback runs; null for nowhere, which ends the watch. False where it cannot be done.
    [[nodiscard]] virtual bool setDispatchQueue(foundation::TaskQueue* queue) = 0;

 protected:
    ReachabilityRef() = default;
};

/// The host's knowledge of its networks.
class ReachabilitySource {
 public:
    virtual ~ReachabilitySource() = default;
    ReachabilitySource(const ReachabilitySource&) = delete;
    ReachabilitySource& operator=(const ReachabilitySource&) = delete;

    /// The way to a named host. Null where the name makes no sense.
    [[nodiscard]] virtual std::unique_ptr<ReachabilityRef> createWithName(const std::string& hostName) = 0;

    /// The way to a numeric IPv4 or IPv6 address; "0.0.0.0" means any way to the internet. Null where
    /// the address makes no sense.
    [[nodiscard]] virtual std::unique_ptr<ReachabilityRef> createWithAddress(const std::string& address) = 0;

 protected:
    ReachabilitySource() = default;
};

}  // namespace trimora::analytics
