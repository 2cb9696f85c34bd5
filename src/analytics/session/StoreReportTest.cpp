#include "analytics/session/StoreReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "analytics/Diagnostics.h"
#include "analytics/session/ReportedStoreForTests.h"

namespace trimora::analytics {
namespace {

using ::testing::HasSubstr;

class StoreReportTest : public ReportedStoreTest {
 protected:
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

TEST_F(StoreReportTest, EventIsListedWithWhatItHas) {
    file = home.path() / "sparse.db";
    {
        StoreCoordinator coordinator(file, {}, clock);
        ManagedObjectContext store(coordinator);
        TXSSID session{0, "S", 1, 0};
        ASSERT_TRUE(store.save(session));
        for (const char* body : {R"({"event":"no time"})", R"({"timestamp":0})",
                                 R"({"timestamp":1,"event":7,"data":null,"end_timed_event":7})"}) {
            TXEvent event{0, "S", body};
            ASSERT_TRUE(store.save(event));
        }
    }
    EXPECT_EQ(printed(printEvents, std::string("S")),
              "{\"event\":\"no time\"}\n"
              "1970-01-01 00:00:00.000    \n"
              "1970-01-01 00:00:00.001    \n");
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
