#include "analytics/reachability/TXAnalyticsReachability.h"

#include "analytics/TelemetrixForTests.h"

namespace trimora::analytics {
namespace {

using namespace reachability;
using ::testing::ElementsAre;

class ReachabilityTest : public TelemetrixTest {
 protected:
    std::shared_ptr<TXAnalyticsReachability> monitor() {
        return TXAnalyticsReachability::reachabilityForInternetConnection();
    }
};

TEST_F(ReachabilityTest, ReachableFlagAloneDecidesUnlessAConnectionIsStillToBeMade) {
    const auto m = monitor();
    EXPECT_FALSE(m->isReachableWithFlags(0));
    EXPECT_TRUE(m->isReachableWithFlags(kReachable));
    EXPECT_TRUE(m->isReachableWithFlags(kReachable | kTransientConnection));
    EXPECT_TRUE(m->isReachableWithFlags(kReachable | kConnectionRequired));
    EXPECT_FALSE(m->isReachableWithFlags(kReachable | kTransientConnection | kConnectionRequired));
    EXPECT_FALSE(m->isReachableWithFlags(kTransientConnection | kIsDirect));
}

TEST_F(ReachabilityTest, StatusAndItsTextFollowTheFlags) {
    const auto m = monitor();
    EXPECT_EQ(m->currentReachabilityStatus(), 2);
    EXPECT_EQ(m->currentReachabilityString(), "WiFi");
    EXPECT_FALSE(m->isReachableViaWWAN());
    network.flags = 0;
    EXPECT_EQ(m->currentReachabilityStatus(), 0);
    EXPECT_EQ(m->currentReachabilityString(), "No Connection");
    network.flags = kReachable | kTransientConnection | kConnectionRequired;
    EXPECT_EQ(m->currentReachabilityStatus(), 0);
    EXPECT_TRUE(m->isReachableViaWiFi());
    network.flags.reset();
    EXPECT_FALSE(m->isReachable());
}

TEST_F(ReachabilityTest, CellularIsTheStatusThatEqualsReachableOnWWAN) {
    const auto m = monitor();
    EXPECT_TRUE(m->reachableOnWWAN());
    m->setReachableOnWWAN(false);
    network.flags = 0;
    EXPECT_EQ(m->currentReachabilityString(), "Cellular");
}

TEST_F(ReachabilityTest, FlagTextHasOneLetterForEachFlag) {
    const auto m = monitor();
    network.flags = 0;
    EXPECT_EQ(m->currentReachabilityFlags(), "X- -------");
    network.flags = kReachable;
    EXPECT_EQ(m->currentReachabilityFlags(), "XR -------");
    network.flags = ~0U;
    EXPECT_EQ(m->currentReachabilityFlags(), "XR ctiCDld");
    const std::pair<std::uint32_t, const char*> single[] = {{kTransientConnection, "X- c------"},
                                                            {kConnectionRequired, "X- -t-----"},
                                                            {kConnectionOnTraffic, "X- --i----"},
                                                            {kInterventionRequired, "X- ---C---"},
                                                            {kConnectionOnDemand, "X- ----D--"},
                                                            {kIsLocalAddress, "X- -----l-"},
                                                            {kIsDirect, "X- ------d"}};
    for (const auto& [flag, text] : single) {
        network.flags = flag;
        EXPECT_EQ(m->currentReachabilityFlags(), text);
    }
}

TEST_F(ReachabilityTest, ConnectionQueriesNeedAConnectionThatIsRequired) {
    const auto m = monitor();
    network.flags = kConnectionOnDemand | kInterventionRequired;
    EXPECT_FALSE(m->isConnectionRequired());
    EXPECT_FALSE(m->isConnectionOnDemand());
    EXPECT_FALSE(m->isInterventionRequired());
    network.flags = kConnectionRequired | kConnectionOnTraffic | kInterventionRequired;
    EXPECT_TRUE(m->connectionRequired());
    EXPECT_TRUE(m->isConnectionOnDemand());
    EXPECT_TRUE(m->isInterventionRequired());
    EXPECT_EQ(m->reachabilityFlags(), *network.flags);
}

TEST_F(ReachabilityTest, EachChangeCallsItsBlockOnTheQueueAndPostsOnTheMainQueue) {
    const auto m = monitor();
    std::vector<std::string> heard;
    m->setReachableBlock([&](TXAnalyticsReachability& from) {
        EXPECT_TRUE(from.reachabilitySerialQueue()->isCurrent());
        heard.emplace_back("reachable");
    });
    m->setUnreachableBlock([&](TXAnalyticsReachability&) { heard.emplace_back("unreachable"); });
    const auto observation =
        notifications.observe(kTelemetrixReachabilityChangedNotification, [&](const auto& n) {
            EXPECT_EQ(n.object, m.get());
            EXPECT_TRUE(queues.mainQueue().isCurrent());
            heard.emplace_back("posted");
        });
    ASSERT_TRUE(m->startNotifier());
    EXPECT_EQ(m->reachabilitySerialQueue()->label(), "com.pingwell.reachability");
    network.change(0);
    settle();
    network.change(kReachable);
    settle();
    EXPECT_THAT(heard, ElementsAre("unreachable", "posted", "reachable", "posted"));
    m->stopNotifier();
    network.change(0);
    settle();
    EXPECT_EQ(heard.size(), 4U);
    EXPECT_EQ(m->reachabilitySerialQueue(), nullptr);
}

TEST_F(ReachabilityTest, NotifierThatCannotBeginLeavesNothingBehind) {
    const auto m = monitor();
    network.canWatch = false;
    EXPECT_FALSE(m->startNotifier());
    network.canWatch = true;
    network.canBind = false;
    EXPECT_FALSE(m->startNotifier());
    EXPECT_EQ(m->reachabilitySerialQueue(), nullptr);
    EXPECT_FALSE(network.isWatched());
}

TEST_F(ReachabilityTest, ConstructorsWatchWhatTheyName) {
    EXPECT_TRUE(TXAnalyticsReachability::reachabilityWithHostName("example.org"));
    EXPECT_TRUE(TXAnalyticsReachability::reachabilityWithHostname("example.org"));
    EXPECT_FALSE(TXAnalyticsReachability::reachabilityWithHostName(""));
    EXPECT_TRUE(TXAnalyticsReachability::reachabilityForLocalWiFi());
    EXPECT_EQ(network.lastAddress, "169.254.0.0");
    EXPECT_TRUE(TXAnalyticsReachability::reachabilityForInternetConnection());
    EXPECT_EQ(network.lastAddress, "0.0.0.0");
    EXPECT_EQ(TXAnalyticsReachability::initWithReachabilityRef(nullptr), nullptr);
}

TEST_F(ReachabilityTest, KeepsAnObjectForItsOwnerAndDescribesItself) {
    const auto m = monitor();
    m->setReachabilityObject(std::string("mine"));
    EXPECT_EQ(std::any_cast<std::string>(m->reachabilityObject()), "mine");
    EXPECT_THAT(m->description(), ::testing::MatchesRegex("<TXAnalyticsReachability: 0x[0-9a-f]+>"));
    EXPECT_NE(m->reachabilityRef(), nullptr);
}

}  // namespace
}  // namespace trimora::analytics
