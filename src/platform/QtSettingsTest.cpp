#include "platform/QtSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testing/TemporaryFolder.h"

namespace trimora::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(QtSettingsTest, WhatWasKeptIsThereInTheNextRun) {
    const testing::TemporaryFolder folder;
    const auto file = folder.path() / "Trimora.ini";
    {
        QtSettings settings(file);
        EXPECT_EQ(settings.text("saveFolder"), std::nullopt);
        EXPECT_THAT(settings.list("recentFiles"), IsEmpty());
        settings.setText("saveFolder", "/home/ann/Bücher, alt");
        settings.setList("recentFiles", {"/p/a, b.png", "/p/c=d.png"});
    }
    const QtSettings settings(file);
    EXPECT_EQ(settings.text("saveFolder"), "/home/ann/Bücher, alt");
    EXPECT_THAT(settings.list("recentFiles"), ElementsAre("/p/a, b.png", "/p/c=d.png"));
}

TEST(QtSettingsTest, AListOfOneAndAnEmptyListStayLists) {
    const testing::TemporaryFolder folder;
    const auto file = folder.path() / "Trimora.ini";
    {
        QtSettings settings(file);
        settings.setList("one", {"a"});
        settings.setList("none", {"a"});
        settings.setList("none", {});
    }
    const QtSettings settings(file);
    EXPECT_THAT(settings.list("one"), ElementsAre("a"));
    EXPECT_THAT(settings.list("none"), IsEmpty());
}

}  // namespace
}  // namespace trimora::platform
