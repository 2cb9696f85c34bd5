#include "analytics/session/ConsentGate.h"

#include "analytics/TelemetrixForTests.h"

namespace trimora::analytics {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

class ConsentGateTest : public TelemetrixTest {
 protected:
    void SetUp() override {
        transportInUse = &gate;
        transport.answer = 200;
        TelemetrixTest::SetUp();
    }
    ConsentGate gate{transport};
};

TEST_F(ConsentGateTest, NothingLeavesBeforeThePersonAgrees) {
    leaveSession("A", 1, 10);
    start();
    post(kNSWindowDidResignKeyNotification);
    advance(600);
    EXPECT_THAT(transport.requests(), IsEmpty());
    EXPECT_EQ(statusOf("A"), 1);
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: error while sending old session, will repeat in "
                                    "60.000000 reason Error "
                                    "Domain=TelemetrixConsentErrorDomain")));
}

TEST_F(ConsentGateTest, WhatWaitedIsPostedAfterThePersonAgreed) {
    leaveSession("A", 1, 10);
    start();
    gate.open();
    EXPECT_TRUE(gate.isOpen());
    advance(60);
    EXPECT_THAT(posted(), ElementsAre("A"));
}

TEST_F(ConsentGateTest, RefusalStopsRecordingAndEmptiesTheStore) {
    leaveSession("A", 1, 10);
    start();
    Telemetrix::logEvent("before");
    gate.refuse();
    settle();
    EXPECT_THAT(sessions(), IsEmpty());
    EXPECT_EQ(Telemetrix::innerId(), std::nullopt);
    Telemetrix::logEvent("after");
    advance(600);
    EXPECT_THAT(sessions(), IsEmpty());
    EXPECT_THAT(transport.requests(), IsEmpty());
}

TEST_F(ConsentGateTest, WithdrawalCallsOffWhatIsUnderWay) {
    leaveSession("A", 1, 10);
    transport.answer.reset();
    gate.open();
    start();
    EXPECT_EQ(transport.waiting(), 1);
    gate.refuse();
    settle();
    EXPECT_EQ(transport.waiting(), 0);
    EXPECT_THAT(sessions(), IsEmpty());
    EXPECT_FALSE(gate.isOpen());
}

TEST_F(ConsentGateTest, ErasingEmptiesTheStoreAndRecordingGoesOn) {
    leaveSession("A", 1, 10);
    transport.answer.reset();
    gate.open();
    start();
    const std::string before = manager().currentSession();
    Telemetrix::logEvent("before");
    gate.erase();
    Telemetrix::logEvent("after");
    settle();
    EXPECT_EQ(transport.waiting(), 0);
    ASSERT_THAT(sessions(), SizeIs(1));
    EXPECT_NE(manager().currentSession(), before);
    EXPECT_THAT(currentNames(), ElementsAre("after."));
    advance(5);
    EXPECT_THAT(currentNames(), ElementsAre("after.", "session_end"));
    EXPECT_THAT(log.texts(), Not(Contains(HasSubstr("inconsistency"))));
}

TEST_F(ConsentGateTest, ErasingWhatIsNotRecordedBeginsNothing) {
    leaveSession("A", 1, 10);
    gate.erase();
    settle();
    EXPECT_THAT(sessions(), IsEmpty());
}

}  // namespace
}  // namespace trimora::analytics
