#include "cli/RunCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trimora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using List = std::vector<const char*>;

TEST(RunLine, NamesScriptsAndHowTheyAreRun) {
    const auto line = RunLine::parse(
        List{"--show", "a.jsonl", "--real-time", "--report", "r.json", "--home", "h", "-", "--", "-b"});
    ASSERT_TRUE(line);
    EXPECT_THAT(line->scripts, ElementsAre("a.jsonl", "-", "-b"));
    EXPECT_TRUE(line->isShown);
    EXPECT_TRUE(line->isRealTime);
    EXPECT_EQ(line->report, "r.json");
    EXPECT_EQ(line->home, "h");
}

TEST(RunLine, IsOffScreenAndInNoTimeOtherwise) {
    const auto line = RunLine::parse(List{"a.jsonl"});
    ASSERT_TRUE(line);
    EXPECT_FALSE(line->isShown || line->isRealTime || line->report || line->home);
}

TEST(RunLine, WhatMakesNoSenseIsNamed) {
    const auto unknown = RunLine::parse(List{"--fast", "a.jsonl"});
    ASSERT_FALSE(unknown);
    EXPECT_THAT(unknown.error().message, HasSubstr("--fast"));
    EXPECT_FALSE(RunLine::parse({}));
    EXPECT_FALSE(RunLine::parse(List{"a.jsonl", "--report"}));
    EXPECT_TRUE(RunLine::parse(List{"--help"})->isHelp);
}

}  // namespace
}  // namespace trimora
