#include "host/NetlinkReachability.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <thread>
#include <utility>
#include <vector>

#include "files/FileDescriptor.h"
#include "foundation/SignalStack.h"
#include "host/NetlinkRoute.h"

namespace trimora::host {

using analytics::ReachabilityRef;

namespace {

/// Addresses kept free for documentation (RFC 5737, RFC 3849): the way to them is the way to everybody.
constexpr std::array kAnybody = {"198.51.100.1", "2001:db8::1"};

class NetlinkRef final : public ReachabilityRef {
 public:
    explicit NetlinkRef(std::vector<NetworkAddress> targets) : targets_(std::move(targets)) {}
    ~NetlinkRef() override { stop(); }

    /// The first target that can be reached decides.
    [[nodiscard]] std::optional<std::uint32_t> flags() const override {
        std::optional<std::uint32_t> found;
        for (const NetworkAddress& target : targets_) {
            const auto flags = routeFlags(target);
            if (flags && *flags != 0)
                return flags;
            found = found ? found : flags;
        }
        return found;
    }

    [[nodiscard]] bool setCallback(Callback callback) override {
        callback_ = std::move(callback);
        return true;
    }

    [[nodiscard]] bool setDispatchQueue(foundation::TaskQueue* queue) override {
        stop();
        return queue == nullptr || start(*queue);
    }

 private:
    bool start(foundation::TaskQueue& queue) {
        changes_ = openRouteChanges();
        stopping_ = files::FileDescriptor(::eventfd(0, EFD_CLOEXEC));
        if (!changes_ || !stopping_)
            return false;
        // Asked after the socket is open, so that no change falls between the two.
        thread_ = std::thread([this, &queue, before = flags()] { watch(queue, before); });
        return true;
    }

    void stop() {
        if (thread_.joinable()) {
            const std::uint64_t one = 1;
            (void)!::write(stopping_.number(), &one, sizeof one);
            thread_.join();
        }
        changes_.reset();
        stopping_.reset();
    }

    void watch(foundation::TaskQueue& queue, std::optional<std::uint32_t> before) {
        const foundation::SignalStack stack;
        ::pthread_setname_np(::pthread_self(), "reachability");
        std::array<pollfd, 2> waiting = {pollfd{changes_.number(), POLLIN, 0},
                                         pollfd{stopping_.number(), POLLIN, 0}};
        for (;;) {
            if (::poll(waiting.data(), waiting.size(), -1) < 0)
                continue;  // interrupted
            if (waiting[1].revents != 0)
                return;
            discardRouteChanges(changes_);
            const auto now = flags();
            if (now == before)
                continue;
            before = now;
            queue.async([callback = callback_, told = now.value_or(0)] {
                if (callback)
                    callback(told);
            });
        }
    }

    std::vector<NetworkAddress> targets_;
    Callback callback_;
    files::FileDescriptor changes_;
    files::FileDescriptor stopping_;
    std::thread thread_;
};

std::unique_ptr<ReachabilityRef> anybody() {
    std::vector<NetworkAddress> targets;
    targets.reserve(std::size(kAnybody));
    for (const char* address : kAnybody)
        targets.push_back(*NetworkAddress::parse(address));
    return std::make_unique<NetlinkRef>(std::move(targets));
}

}  // namespace

std::unique_ptr<ReachabilityRef> NetlinkReachability::createWithName(const std::string& hostName) {
    if (hostName.empty())
        return nullptr;
    return NetworkAddress::parse(hostName) ? createWithAddress(hostName) : anybody();
}

std::unique_ptr<ReachabilityRef> NetlinkReachability::createWithAddress(const std::string& address) {
    if (address == "0.0.0.0")
        return anybody();
    auto parsed = NetworkAddress::parse(address);
    if (!parsed)
        return nullptr;
    return std::make_unique<NetlinkRef>(std::vector{*std::move(parsed)});
}

}  // namespace trimora::host
