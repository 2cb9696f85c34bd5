#include "platform/QtSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "testing/TemporaryFolder.h"

namespace trimora::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

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

TEST(QtSettingsTest, NothingIsWrittenWhileWhatTheChangeCameWithIsShown) {
    const testing::TemporaryFolder folder;
    const auto file = folder.path() / "Trimora.ini";
    {
        QtSettings settings(file, std::chrono::hours(1));
        settings.setText("saveFolder", "/p");
        QCoreApplication::processEvents();
        EXPECT_FALSE(std::filesystem::exists(file));
    }
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(QtSettingsTest, EveryChangeIsWrittenAfterAMoment) {
    const testing::TemporaryFolder folder;
    const auto file = folder.path() / "Trimora.ini";
    QtSettings settings(file, std::chrono::milliseconds(1));
    for (const std::string value : {"/first", "/second"}) {
        settings.setText("saveFolder", value);
        while (contentsOf(file).find(value) == std::string::npos)  // or until the test's time is up
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
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
