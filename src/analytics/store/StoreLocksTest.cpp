#include "analytics/store/StoreLocks.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "analytics/TelemetrixForTests.h"

namespace trimora::analytics {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

/// Two holders of one lock file are to each other as two processes are.
class StoreLocksTest : public TelemetrixTest {
 protected:
    [[nodiscard]] std::shared_ptr<StoreLocks> otherProcess() const {
        const auto folder = TXAnalyticsCoreDataManager::sharedManager().dbFileURL().parent_path();
        return StoreLocks::create(folder / "telemetrix.lock").value();
    }
    void leaveSessionOf(const StoreLocks& owner, const std::string& name, int status) {
        leaveSession(name, status, 100);
        TXSSID row = context().sessionsNamed(name, PropertyValues::fetched)->front();
        row.owner = owner.owner();
        ASSERT_TRUE(context().save(row));
    }
};

TEST_F(StoreLocksTest, OwnerIsAliveAsLongAsItsLock) {
    auto one = otherProcess();
    auto other = otherProcess();
    EXPECT_NE(one->owner(), other->owner());
    EXPECT_TRUE(one->isAlive(one->owner()));
    EXPECT_TRUE(one->isAlive(other->owner()));
    const std::int64_t gone = other->owner();
    other.reset();
    EXPECT_FALSE(one->isAlive(gone));
    EXPECT_FALSE(one->isAlive(0));
    EXPECT_FALSE(one->isAlive(-1));
}

TEST_F(StoreLocksTest, OneSendsAtATimeAndItsTokensAddUp) {
    const auto one = otherProcess();
    const auto other = otherProcess();
    auto first = one->holdSending();
    auto second = one->holdSending();
    ASSERT_TRUE(first);
    EXPECT_FALSE(other->holdSending());
    first.reset();
    EXPECT_FALSE(other->holdSending());
    second.reset();
    EXPECT_TRUE(other->holdSending());
    EXPECT_TRUE(one->holdSending());
}

TEST_F(StoreLocksTest, KilledProcessHoldsNothing) {
    const auto locks = otherProcess();
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto own = otherProcess();
        const auto token = own->holdSending();
        const std::int64_t owner = own->owner();
        (void)!::write(pipe[1], &owner, sizeof owner);
        ::pause();
        std::_Exit(0);
    }
    std::int64_t owner = 0;
    ASSERT_EQ(::read(pipe[0], &owner, sizeof owner), static_cast<ssize_t>(sizeof owner));
    EXPECT_TRUE(locks->isAlive(owner));
    EXPECT_FALSE(locks->holdSending());
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_FALSE(locks->isAlive(owner));
    EXPECT_TRUE(locks->holdSending());
}

TEST_F(StoreLocksTest, LockFileThatCannotBeHadIsAnError) {
    EXPECT_FALSE(StoreLocks::create("/proc/no such folder/telemetrix.lock"));
}

TEST_F(StoreLocksTest, LiveSessionOfAnotherProcessIsNeitherMarkedNorPosted) {
    auto other = otherProcess();
    leaveSessionOf(*other, "live elsewhere", 0);
    transport.answer = 200;
    start();
    advance(600);
    EXPECT_EQ(statusOf("live elsewhere"), 0);
    EXPECT_THAT(posted(), IsEmpty());
    other.reset();  // it was killed
    post(kNSWindowDidResignKeyNotification);
    post(kNSWindowDidBecomeKeyNotification);
    EXPECT_THAT(posted(), Contains("live elsewhere"));
}

TEST_F(StoreLocksTest, WhileAnotherProcessSendsNothingIsPostedOrMarked) {
    leaveSession("A", 1, 100);
    leaveSession("in flight there", 2, 100);
    transport.answer = 200;
    auto other = otherProcess();
    auto sending = other->holdSending();
    start();
    const std::string own = manager().currentSession();
    post(kNSWindowDidResignKeyNotification);
    advance(50);
    EXPECT_THAT(posted(), IsEmpty());
    EXPECT_EQ(statusOf("in flight there"), 2);
    EXPECT_EQ(statusOf(own), 1);
    EXPECT_TRUE(log.contains("another process is sending"));
    sending.reset();
    advance(15);
    EXPECT_THAT(posted(), Contains("A"));
    EXPECT_THAT(posted(), Contains("in flight there"));
    EXPECT_THAT(posted(), Contains(own));
}

}  // namespace
}  // namespace trimora::analytics
