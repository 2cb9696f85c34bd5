#include "foundation/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

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

TEST(Log, LineGoesToStandardErrorWhereThereIsNoSink) {
    const log::Sink outer = log::setSink({});
    ::testing::internal::CaptureStderr();
    log::error("broken %d", 7);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "trimora: error: broken 7\n");
    log::setSink(outer);
}

TEST(Log, SinkMayLogItself) {
    testing::CapturedLog captured;
    const log::Sink outer = log::setSink({});
    bool within = false;
    log::setSink([&](log::Level level, std::string_view text) {
        if (!std::exchange(within, true))
            log::info("about to write");
        outer(level, text);
    });
    log::info("line");
    log::setSink(outer);
    EXPECT_THAT(captured.texts(), ElementsAre("about to write", "line"));
}

TEST(Log, LinesOfSeveralThreadsComeOneAtATime) {
    testing::CapturedLog captured;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([i] {
                for (int line = 0; line < 100; ++line)
                    log::info("%d of %d", line, i);
            });
        }
    }
    EXPECT_EQ(captured.lines().size(), 400U);
    EXPECT_TRUE(captured.contains("99 of 3"));
}

TEST(Log, CaptureIsClearedAndGivesTheSinkBack) {
    testing::CapturedLog outer;
    {
        testing::CapturedLog inner;
        log::info("heard by both");
        inner.clear();
        EXPECT_TRUE(inner.texts().empty());
    }
    log::info("heard by the outer one");
    EXPECT_THAT(outer.texts(), ElementsAre("heard by both", "heard by the outer one"));
}

TEST(Log, EveryLevelHasAName) {
    EXPECT_EQ(log::name(log::Level::debug), "debug");
    EXPECT_EQ(log::name(log::Level::info), "info");
    EXPECT_EQ(log::name(log::Level::warning), "warning");
    EXPECT_EQ(log::name(log::Level::error), "error");
}

TEST(Log, ExpectedErrorLineDoesNotFailItsTest) {
    testing::expectErrorLines();
    testing::CapturedLog captured;
    log::error("expected");
    EXPECT_THAT(captured.texts(log::Level::error), ElementsAre("expected"));
}

}  // namespace
}  // namespace trimora::foundation
