#include "foundation/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "testing/CapturedLog.h"

namespace trimora::foundation {
namespace {

using ::testing::ElementsAre;

TEST(Log, LinesAreFormattedAndKeepTheirLevel) {
    testing::CapturedLog captured;
    log::debug("%f %f", 1.5, 2.0);
    log::warning("NO DATA PROVIDER");
    EXPECT_THAT(captured.texts(), ElementsAre("1.500000 2.000000", "NO DATA PROVIDER"));
    EXPECT_THAT(captured.texts(log::Level::warning), ElementsAre("NO DATA PROVIDER"));
}

TEST(Log, LinesBelowTheThresholdAreDropped) {
    testing::CapturedLog captured;
    log::setThreshold(log::Level::warning);
    log::info("quiet");
    log::warning("loud");
    EXPECT_THAT(captured.texts(), ElementsAre("loud"));
}

TEST(Log, LongLinesAreKeptWhole) {
    testing::CapturedLog captured;
    const std::string text(5000, 'x');
    log::info("%s", text.c_str());
    EXPECT_THAT(captured.texts(), ElementsAre(text));
}

}  // namespace
}  // namespace trimora::foundation
