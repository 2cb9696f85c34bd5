#include "cli/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trimora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Words = std::vector<const char*>;

TEST(CommandLine, FilesAreOpened) {
    EXPECT_TRUE(CommandLine::parse({})->files.empty());
    const auto line = CommandLine::parse(Words{"a.png", "--", "--odd.png"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->mode, CommandLine::Mode::edit);
    EXPECT_THAT(line->files, ElementsAre("a.png", "--odd.png"));
}

TEST(CommandLine, ADemoTakesAFolderAndOnePicture) {
    const auto line = CommandLine::parse(Words{"--demo", "out", "a.png"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->mode, CommandLine::Mode::demo);
    EXPECT_EQ(line->demoFolder, "out");
    EXPECT_THAT(line->files, ElementsAre("a.png"));
    EXPECT_FALSE(CommandLine::parse(Words{"--demo", "out"}));
    EXPECT_FALSE(CommandLine::parse(Words{"--demo", "out", "a.png", "b.png"}));
}

TEST(CommandLine, NewIsForAnEditor) {
    const auto line = CommandLine::parse(Words{"--new"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->mode, CommandLine::Mode::edit);
    EXPECT_TRUE(line->isNew);
    EXPECT_FALSE(CommandLine::parse(Words{"a.png"})->isNew);
}

TEST(CommandLine, WhatAPersonDoesInTheEditorCanBeRecorded) {
    const auto line = CommandLine::parse(Words{"--record", "s.jsonl", "a.png"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->mode, CommandLine::Mode::edit);
    EXPECT_EQ(line->record, "s.jsonl");
    EXPECT_THAT(line->files, ElementsAre("a.png"));
    EXPECT_FALSE(CommandLine::parse(Words{"--record"}));
    EXPECT_FALSE(CommandLine::parse(Words{"--gallery", "--record", "s.jsonl"}));
}

TEST(CommandLine, TheGalleryIsAModeOfItsOwn) {
    EXPECT_EQ(CommandLine::parse(Words{"--gallery"})->mode, CommandLine::Mode::gallery);
}

TEST(CommandLine, HelpAndVersionWinOverTheRest) {
    EXPECT_EQ(CommandLine::parse(Words{"a.png", "--help", "--unknown"})->mode, CommandLine::Mode::help);
    EXPECT_EQ(CommandLine::parse(Words{"--version"})->mode, CommandLine::Mode::version);
}

TEST(CommandLine, WhatIsNotKnownIsNamed) {
    const auto unknown = CommandLine::parse(Words{"--colour"});
    ASSERT_FALSE(unknown);
    EXPECT_THAT(unknown.error().message, HasSubstr("--colour"));
    EXPECT_FALSE(CommandLine::parse(Words{"--demo"}));
}

}  // namespace
}  // namespace trimora
