#include "analytics/session/StoreReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "analytics/Diagnostics.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora::analytics {
namespace {

using ::testing::HasSubstr;

class StoreReportTest : public ::testing::Test {
 protected:
    void SetUp() override {
        StoreCoordinator coordinator(file, {}, clock);
        ManagedObjectContext store(coordinator);
        for (int status = 0; status < 4; ++status) {
            TXSSID session{0, "S" + std::to_string(status), status, 1767268800.5, 0};
            ASSERT_TRUE(store.save(session));
        }
        for (const char* body : {kFirst, kSecond, "not an event"}) {
            TXEvent event{0, "S1", body};
            ASSERT_TRUE(store.save(event));
        }
    }
    template <typename Print, typename... Arguments>
    std::string printed(Print print, const Arguments&... arguments) {
        StoreSettings settings;
        settings.access = StoreSettings::Access::readOnly;
        StoreCoordinator coordinator(file, settings, clock);
        ManagedObjectContext store(coordinator);
        std::ostringstream out;
        const auto done = print(store, arguments..., out);
        return done ? out.str() : "error: " + done.error().message;
    }
    static constexpr const char* kFirst =
        R"({"app_id":"a","data":"{\"k\":1}","end_timed_event":false,"event":"cut.","timestamp":1767268800123})";
    static constexpr const char* kSecond =
        R"({"app_id":"a","data":"{}","end_timed_event":true,"event":"cut.","timestamp":1767268801000})";

    testing::TemporaryFolder home;
    std::filesystem::path file = home.path() / "telemetrix.db";
    foundation::VirtualTime clock;
    testing::CapturedLog log;
};

TEST_F(StoreReportTest, SessionsAreListedWithStatusTimeAndEvents) {
    EXPECT_EQ(printed(printSessions),
              "S0  active  2026-01-01 12:00:00  0 events\n"
              "S1  done  2026-01-01 12:00:00  3 events\n"
              "S2  sending  2026-01-01 12:00:00  0 events\n"
              "S3  unknown (3)  2026-01-01 12:00:00  0 events\n");
}

TEST_F(StoreReportTest, EventsAreListedWithTimeNameAndData) {
    EXPECT_EQ(printed(printEvents, std::string("S1")),
              "2026-01-01 12:00:00.123  cut.  {\"k\":1}\n"
              "2026-01-01 12:00:01.000  cut.  {}  (end)\n"
              "not an event\n");
    EXPECT_EQ(printed(printEvents, std::string("S9")), "error: no session S9 in the store");
}

TEST_F(StoreReportTest, RequestIsWhatIsSentByteForByte) {
    EXPECT_EQ(printed(printRequest, std::string("S1")), formatted("[%s,%s,not an event]", kFirst, kSecond));
    EXPECT_EQ(printed(printRequest, std::string("S9")), "error: no session S9 in the store");
}

TEST_F(StoreReportTest, FileThatIsNoStoreIsToldAndLeftAlone) {
    std::ofstream(home.path() / "other") << "some text that is long enough to be looked at as a header......";
    file = home.path() / "other";
    EXPECT_THAT(printed(printSessions), HasSubstr("error: "));
    EXPECT_TRUE(std::filesystem::exists(home.path() / "other"));
    file = home.path() / "missing";
    EXPECT_THAT(printed(printEvents, std::string("S1")), HasSubstr("error: "));
    EXPECT_FALSE(std::filesystem::exists(home.path() / "missing"));
}

TEST_F(StoreReportTest, WholeStoreIsShownReadableOrAsItWouldBeSent) {
    const std::string rest =
        "S2  sending  2026-01-01 12:00:00  0 events\nS3  unknown (3)  2026-01-01 12:00:00  0 events\n";
    const std::string begin =
        "S0  active  2026-01-01 12:00:00  0 events\nS1  done  2026-01-01 12:00:00  3 events\n";
    EXPECT_EQ(printed(printStore, EventForm::readable), begin +
                                                            "    2026-01-01 12:00:00.123  cut.  {\"k\":1}\n"
                                                            "    2026-01-01 12:00:01.000  cut.  {}  (end)\n"
                                                            "    not an event\n" +
                                                            rest);
    {
        StoreCoordinator coordinator(file, {}, clock);
        ManagedObjectContext store(coordinator);
        TXEvent late{0, "gone", "late"};
        ASSERT_TRUE(store.save(late));
    }
    EXPECT_EQ(printed(printStore, EventForm::asStored), begin + formatted("    %s\n    %s", kFirst, kSecond) +
                                                            "\n    not an event\n" + rest +
                                                            "of no session (never sent)\n    late\n");
}

}  // namespace
}  // namespace trimora::analytics
