#include "cli/LogRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testing/CapturedLog.h"

namespace trimora {
namespace {

namespace log = foundation::log;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LogRecord, KeepsEveryLineUntilItIsTaken) {
    LogRecord record;
    log::debug("one %d", 1);
    log::info("two");
    EXPECT_THAT(record.take(), ElementsAre("one 1", "two"));
    EXPECT_THAT(record.take(), IsEmpty());
}

TEST(LogRecord, PassesOnWhatWasShownBeforeAndLeavesAllAsItWas) {
    const testing::CapturedLog shown;
    const log::Level before = log::setThreshold(log::Level::warning);
    {
        const LogRecord record;
        log::info("not shown");
        log::warning("shown");
    }
    EXPECT_EQ(log::setThreshold(before), log::Level::warning);
    EXPECT_THAT(shown.texts(log::Level::info), IsEmpty());
    EXPECT_THAT(shown.texts(log::Level::warning), ElementsAre("shown"));
}

}  // namespace
}  // namespace trimora
