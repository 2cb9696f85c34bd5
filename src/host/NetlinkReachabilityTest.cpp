#include "host/NetlinkReachability.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "foundation/ThreadQueues.h"

namespace trimora::host {
namespace {

using namespace analytics::reachability;

/// What a watch tells, for a test that waits for it.
class Heard {
 public:
    void add(std::uint32_t flags) {
        const std::scoped_lock lock(mutex_);
        all_.push_back(flags);
        more_.notify_all();
    }
    /// Waits for the n-th change; gives up after a time in which a working machine has long spoken.
    std::optional<std::uint32_t> change(std::size_t number) {
        std::unique_lock lock(mutex_);
        const bool came =
            more_.wait_for(lock, std::chrono::seconds(20), [&] { return all_.size() >= number; });
        return came ? std::optional(all_[number - 1]) : std::nullopt;
    }
    std::size_t count() {
        const std::scoped_lock lock(mutex_);
        return all_.size();
    }

 private:
    std::mutex mutex_;
    std::condition_variable more_;
    std::vector<std::uint32_t> all_;
};

/// Runs the test on a thread in a network of its own, which begins without any route.
void inOwnNetwork(const std::function<void()>& test) {
    bool allowed = true;
    std::thread thread([&] {
        allowed = ::unshare(CLONE_NEWNET) == 0;
        if (allowed)
            test();
    });
    thread.join();
    if (!allowed) {
        std::printf("not permitted to make a network namespace\n");
        GTEST_SKIP() << "not permitted to make a network namespace";
    }
}

void ip(const std::string& arguments) {
    ASSERT_EQ(std::system(("ip " + arguments).c_str()), 0) << arguments;
}

/// A cable with both ends in this machine.
void giveLink() {
    ip("link set lo up");
    ip("link add link0 type veth peer name link1");
    ip("link set link1 up");
    ip("link set link0 up");
    ip("address add 203.0.113.5/24 dev link0");
}

void giveRoute() {
    ip("route add default via 203.0.113.1 dev link0");
}

TEST(NetlinkReachability, InternetComesAndGoesWithItsRoute) {
    inOwnNetwork([] {
        NetlinkReachability source;
        const auto internet = source.createWithAddress("0.0.0.0");
        EXPECT_EQ(internet->flags(), 0U);
        Heard heard;
        foundation::ThreadQueue queue("com.pingwell.reachability");
        ASSERT_TRUE(internet->setCallback([&](std::uint32_t flags) {
            EXPECT_TRUE(queue.isCurrent());
            heard.add(flags);
        }));
        ASSERT_TRUE(internet->setDispatchQueue(&queue));
        giveLink();
        giveRoute();
        EXPECT_EQ(heard.change(1), kReachable);
        ip("route del default");
        EXPECT_EQ(heard.change(2), 0U);
        ip("-6 route add default dev link0");
        EXPECT_EQ(heard.change(3), kReachable | kIsDirect);
        ip("link set link0 down");
        EXPECT_EQ(heard.change(4), 0U);
        ip("link set link0 up");
        ASSERT_TRUE(internet->setDispatchQueue(nullptr));
        giveRoute();
        queue.sync([] {});
        EXPECT_EQ(heard.count(), 4U);
        EXPECT_EQ(internet->flags(), kReachable);
    });
}

TEST(NetlinkReachability, AddressesAreLocalDirectOrBehindARouter) {
    inOwnNetwork([] {
        NetlinkReachability source;
        giveLink();
        giveRoute();
        EXPECT_EQ(source.createWithAddress("127.0.0.1")->flags(), kReachable | kIsLocalAddress | kIsDirect);
        EXPECT_EQ(source.createWithAddress("::1")->flags(), kReachable | kIsLocalAddress | kIsDirect);
        EXPECT_EQ(source.createWithAddress("203.0.113.77")->flags(), kReachable | kIsDirect);
        EXPECT_EQ(source.createWithAddress("192.0.2.1")->flags(), kReachable);
        ip("route add 192.0.2.0/25 dev link0");
        EXPECT_EQ(source.createWithAddress("192.0.2.1")->flags(), kReachable | kIsDirect);
        ip("route add unreachable 192.0.2.128/25");
        EXPECT_EQ(source.createWithAddress("192.0.2.200")->flags(), 0U);
        ip("route add blackhole 198.18.0.0/15");
        EXPECT_EQ(source.createWithAddress("198.18.0.1")->flags(), 0U);
        EXPECT_EQ(source.createWithName("example.org")->flags(), kReachable);
        EXPECT_EQ(source.createWithName("192.0.2.200")->flags(), 0U);
    });
}

TEST(NetlinkReachability, NonsenseIsNoTarget) {
    NetlinkReachability source;
    EXPECT_EQ(source.createWithAddress("no address"), nullptr);
    EXPECT_EQ(source.createWithAddress(""), nullptr);
    EXPECT_EQ(source.createWithName(""), nullptr);
}

TEST(NetlinkReachability, WatchEndsWithItsRef) {
    NetlinkReachability source;
    foundation::ThreadQueue queue("com.pingwell.reachability");
    auto ref = source.createWithAddress("0.0.0.0");
    ASSERT_TRUE(ref->setCallback([](std::uint32_t) {}));
    ASSERT_TRUE(ref->setDispatchQueue(&queue));
    ASSERT_TRUE(ref->setDispatchQueue(&queue));
    ref.reset();
    SUCCEED();
}

}  // namespace
}  // namespace trimora::host
