#include "host/IniUserDefaults.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora::host {
namespace {

class IniUserDefaultsTest : public ::testing::Test {
 protected:
    [[nodiscard]] std::string contents() const {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    testing::TemporaryFolder home;
    std::filesystem::path file = home.path() / "deeper" / "telemetrix.ini";
};

TEST_F(IniUserDefaultsTest, ValuesOutliveTheObjectAndAreReadableText) {
    IniUserDefaults one(file);
    EXPECT_EQ(one.objectForKey("last_version"), std::nullopt);
    one.setObject("last_version", "12");
    one.setObject("kTLCrashLogKey", "line 1\nline \\2\r = é");
    one.synchronize();
    EXPECT_EQ(contents(), "[Telemetrix]\nkTLCrashLogKey=line 1\\nline \\\\2\\r = é\nlast_version=12\n");
    const IniUserDefaults other(file);
    EXPECT_EQ(other.objectForKey("last_version"), "12");
    EXPECT_EQ(other.objectForKey("kTLCrashLogKey"), "line 1\nline \\2\r = é");
}

TEST_F(IniUserDefaultsTest, RemovedValuesStayAway) {
    IniUserDefaults one(file);
    one.setObject("a", "1");
    one.synchronize();
    one.removeObjectForKey("a");
    EXPECT_EQ(one.objectForKey("a"), std::nullopt);
    one.synchronize();
    EXPECT_EQ(IniUserDefaults(file).objectForKey("a"), std::nullopt);
}

TEST_F(IniUserDefaultsTest, WhatAnotherProcessWroteIsKept) {
    IniUserDefaults one(file);
    IniUserDefaults other(file);
    one.setObject("a", "1");
    one.synchronize();
    other.setObject("b", "2");
    other.synchronize();
    EXPECT_EQ(other.objectForKey("a"), "1");
    EXPECT_EQ(contents(), "[Telemetrix]\na=1\nb=2\n");
}

TEST_F(IniUserDefaultsTest, LinesThatAreNoneOfOursAreSkipped) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << "; a remark\n[Telemetrix]\nnothing here\na=1=2\nb=ends with \\\n";
    const IniUserDefaults defaults(file);
    EXPECT_EQ(defaults.objectForKey("a"), "1=2");
    EXPECT_EQ(defaults.objectForKey("b"), "ends with \\");
}

TEST_F(IniUserDefaultsTest, FileThatCannotBeWrittenIsReportedAndTriedAgain) {
    const testing::CapturedLog log;
    std::filesystem::create_directories(file);
    IniUserDefaults defaults(file);
    defaults.setObject("a", "1");
    defaults.synchronize();
    EXPECT_EQ(log.texts().size(), 1U);
    EXPECT_EQ(defaults.objectForKey("a"), "1");
    std::filesystem::remove(file);
    defaults.synchronize();
    EXPECT_EQ(contents(), "[Telemetrix]\na=1\n");
}

}  // namespace
}  // namespace trimora::host
