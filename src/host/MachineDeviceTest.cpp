#include "host/MachineDevice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "testing/TemporaryFolder.h"

namespace trimora::host {
namespace {

class MachineDeviceTest : public ::testing::Test {
 protected:
    ~MachineDeviceTest() override {
        for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "TZ"})
            ::unsetenv(variable);
        ::tzset();
    }
    void put(const char* file, const std::string& contents) const {
        std::filesystem::create_directories((root.path() / file).parent_path());
        std::ofstream(root.path() / file) << contents;
    }
    [[nodiscard]] MachineDevice device(const std::string& application = "org.trimora.Trimora") const {
        return {application, "Trimora/1.2 (Linux)", root.path()};
    }
    testing::TemporaryFolder root;
};

TEST_F(MachineDeviceTest, IdentifierIsThatOfMachineAndApplicationTogether) {
    const std::string machine = "0123456789abcdef0123456789abcdef";
    put("etc/machine-id", machine + "\n");
    const std::string id = device().uniqueIdentifier().value();
    EXPECT_THAT(id, ::testing::MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}"));
    // printf org.trimora.Trimora | openssl dgst -sha256 -hmac 0123456789abcdef0123456789abcdef
    EXPECT_EQ(id, "725f6ef8-850b-7771-6e17-6d80668ea865");
    EXPECT_NE(device("org.other").uniqueIdentifier(), id);
    put("etc/machine-id", "1123456789abcdef0123456789abcdef\n");
    EXPECT_NE(device().uniqueIdentifier(), id);
}

TEST_F(MachineDeviceTest, WhatTheMachineDoesNotSayIsAbsent) {
    EXPECT_EQ(device().uniqueIdentifier(), std::nullopt);
    EXPECT_EQ(device().hardwareModel(), std::nullopt);
    EXPECT_EQ(device().operatingSystemVersion(), std::nullopt);
    EXPECT_EQ(device().advertisingIdentifier(), std::nullopt);
    put("etc/machine-id", "\n");
    EXPECT_EQ(device().uniqueIdentifier(), std::nullopt);
}

TEST_F(MachineDeviceTest, ModelAndSystemComeFromTheirFiles) {
    put("sys/devices/virtual/dmi/id/product_name", "Desk 1\n");
    put("etc/os-release", "NAME=\"Debian\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n");
    EXPECT_EQ(device().hardwareModel(), "Desk 1");
    EXPECT_EQ(device().operatingSystemVersion(), "Debian GNU/Linux 12 (bookworm)");
    put("etc/os-release", "PRETTY_NAME=Plain\n");
    EXPECT_EQ(device().operatingSystemVersion(), "Plain");
    EXPECT_EQ(device().userAgent(), "Trimora/1.2 (Linux)");
}

TEST_F(MachineDeviceTest, LocaleIsTheFirstThatTheEnvironmentNames) {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        ::unsetenv(variable);
    EXPECT_EQ(device().localeIdentifier(), "en_US");
    ::setenv("LANG", "de_AT.UTF-8@euro", 1);
    EXPECT_EQ(device().localeIdentifier(), "de_AT");
    ::setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_EQ(device().localeIdentifier(), "en_US");
}

TEST_F(MachineDeviceTest, TimeZoneIsNamedByTheEnvironmentOrTheMachine) {
    ::unsetenv("TZ");
    EXPECT_EQ(device().timeZone().name, "UTC");
    std::filesystem::create_directories(root.path() / "etc");
    std::filesystem::create_symlink("/usr/share/zoneinfo/Asia/Kolkata", root.path() / "etc/localtime");
    EXPECT_EQ(device().timeZone().name, "Asia/Kolkata");
    ::setenv("TZ", "IST-5:30", 1);
    ::tzset();
    EXPECT_EQ(device().timeZone().name, "IST-5:30");
    EXPECT_EQ(device().timeZone().secondsFromGMT, 5 * 3600 + 1800);
    ::setenv("TZ", ":/usr/share/zoneinfo/Europe/Paris", 1);
    EXPECT_EQ(device().timeZone().name, "Europe/Paris");
}

}  // namespace
}  // namespace trimora::host
