#include "analytics/info/TXStaticAnalyticsInfo.h"

#include "analytics/TelemetrixForTests.h"
#include "analytics/info/TXAnalyticsLocation.h"

namespace trimora::analytics {
namespace {

using Info = TXStaticAnalyticsInfo;
using ::testing::IsEmpty;

class InfoTest : public TelemetrixTest {};

TEST_F(InfoTest, AppInfoComesFromTheBundle) {
    EXPECT_EQ(Info::appInfo(), (Dictionary{{"app_name", "Trimora"},
                                           {"package", "org.trimora.Trimora"},
                                           {"version", "12"},
                                           {"platform", "osx"}}));
    bundle.info = {{"CFBundleName", "trimora"}, {"CFBundleShortVersionString", "1.2"}};
    EXPECT_EQ(
        Info::appInfo(),
        (Dictionary{{"app_name", "trimora"}, {"package", ""}, {"version", "1.2"}, {"platform", "osx"}}));
    bundle.info.clear();
    EXPECT_EQ(*Info::appInfo().find("version"), "");
}

TEST_F(InfoTest, DeviceInfoHasEveryKey) {
    const std::string seconds = std::to_string(foundation::milliseconds(time.wallTime()) / 1000);
    EXPECT_EQ(Info::deviceInfo(), (Dictionary{{"uniq_id", "device-id"},
                                              {"user_agent", "Trimora/1.2 (Linux)"},
                                              {"model", "Desk 1"},
                                              {"manufacture", "Apple Inc."},
                                              {"os", "MACOSX"},
                                              {"os_version", "12.0"},
                                              {"locale", "en-US"},
                                              {"timezone_offset", "+01:00"},
                                              {"timezone_id", "Europe/Paris"},
                                              {"system_time", seconds},
                                              {"carrier_name", ""},
                                              {"connection_type", 1},
                                              {"orientation", 2},
                                              {"type", 2},
                                              {"gaid", ""}}));
}

TEST_F(InfoTest, MissingSourcesHaveTheirStatedFallBacks) {
    device.id.reset();
    device.model.reset();
    device.version.reset();
    device.agent.reset();
    network.flags = 0;
    const Dictionary info = Info::deviceInfo();
    EXPECT_EQ(*info.find("uniq_id"), "hackintosh");
    EXPECT_EQ(*info.find("model"), "Unknown Apple Computer Model");
    EXPECT_EQ(*info.find("os_version"), "");
    EXPECT_EQ(*info.find("user_agent"), "");
    EXPECT_EQ(*info.find("connection_type"), -1);
}

TEST_F(InfoTest, WhatNeverChangesIsAskedForOnce) {
    EXPECT_EQ(Info::deviceUniqueId(), "device-id");
    device.id = "other";
    device.model = "other";
    EXPECT_EQ(Info::deviceUniqueId(), "device-id");
    EXPECT_EQ(Info::deviceModel(), "Desk 1");
}

TEST_F(InfoTest, AdvertisingIdentifierIsTheHostsWhereItHasOne) {
    device.advertising = "6D92078A-8246-4BA4-AE5B-76104861E7DC";
    EXPECT_EQ(*Info::deviceInfo().find("gaid"), "6D92078A-8246-4BA4-AE5B-76104861E7DC");
}

TEST_F(InfoTest, TimezoneOffsetKeepsItsQuirks) {
    EXPECT_EQ(Info::timezoneOffset(0), "+00:00");
    EXPECT_EQ(Info::timezoneOffset(5 * 3600 + 1800), "+05:00");
    EXPECT_EQ(Info::timezoneOffset(12 * 3600), "+12:00");
    EXPECT_EQ(Info::timezoneOffset(-1800), "+00:00");
    EXPECT_EQ(Info::timezoneOffset(-3599), "+00:00");
    EXPECT_EQ(Info::timezoneOffset(-3600), "18446744073709551615:00");
    EXPECT_EQ(Info::timezoneOffset(-5 * 3600), "18446744073709551611:00");
    EXPECT_EQ(Info::timezoneOffset(-3 * 3600 - 1800), "18446744073709551613:00");
}

TEST_F(InfoTest, FirstLaunchIsOverUntilTheCreationDateChanges) {
    EXPECT_EQ(Info::appInstallStatus(), 1);
    EXPECT_TRUE(Info::isFirstApplicationLaunch());
    Info::applicationDidFirstLaunch();
    EXPECT_EQ(Info::appInstallStatus(), 4);
    EXPECT_FALSE(Info::isFirstApplicationLaunch());
    EXPECT_GT(defaults.synchronized, 0);
    bundle.created = *bundle.created + std::chrono::hours(24);
    EXPECT_EQ(Info::appInstallStatus(), 1);
    EXPECT_TRUE(Info::isFirstApplicationLaunch());
}

TEST_F(InfoTest, ChangedFilesAreAFirstLaunchOnlyWithTheSameVersion) {
    Info::applicationDidFirstLaunch();
    bundle.modified = *bundle.modified + std::chrono::hours(24);
    EXPECT_EQ(Info::appInstallStatus(), 2);
    EXPECT_TRUE(Info::isFirstApplicationLaunch());
    bundle.info["CFBundleVersion"] = "13";
    EXPECT_EQ(Info::appInstallStatus(), 3);
    EXPECT_FALSE(Info::isFirstApplicationLaunch());
}

TEST_F(InfoTest, MissingDatesAreWarnedOfAndTheRestIsStored) {
    bundle.created.reset();
    Info::applicationDidFirstLaunch();
    EXPECT_TRUE(log.contains("Main bundle doesn't have install and modification date, something went wrong"));
    EXPECT_FALSE(Info::objectForKey("create_hash_date"));
    EXPECT_EQ(Info::objectForKey("last_hash_date"), Info::getModificationDateString());
    EXPECT_EQ(Info::objectForKey("last_version"), "12");
    EXPECT_TRUE(Info::isFirstApplicationLaunch());
}

TEST_F(InfoTest, TellsPathAndKey) {
    EXPECT_EQ(Info::getInstallationPath(), "/opt/trimora");
    EXPECT_EQ(Info::installKey(), "TXStaticAnalyticsInfo");
}

TEST_F(InfoTest, UnknownLocationIsSentAsNothing) {
    EXPECT_EQ(Info::geoInfo(), (Dictionary{{"latitude", ""},
                                           {"longitude", ""},
                                           {"accuracy", ""},
                                           {"country_code", ""},
                                           {"country_name", ""}}));
}

TEST_F(InfoTest, LocationIsFollowedOnlyWherePermittedOrNotAsked) {
    using Status = LocationSource::Authorization;
    for (const Status status : {Status::restricted, Status::denied}) {
        location.status = status;
        TXAnalyticsLocation::location().startMonitoringIfHavePermission();
    }
    EXPECT_EQ(location.started, 0);
    EXPECT_EQ(location.delegate, nullptr);
    for (const Status status : {Status::notDetermined, Status::authorized}) {
        location.status = status;
        TXAnalyticsLocation::location().startMonitoringIfHavePermission();
    }
    EXPECT_EQ(location.started, 2);
    EXPECT_NE(location.delegate, nullptr);
    quit();
    EXPECT_EQ(location.delegate, nullptr);
}

TEST_F(InfoTest, LastLocationIsSentWithItsCountry) {
    TXAnalyticsLocation::location().startMonitoring();
    location.delegate->locationManager_didUpdateLocations({{1, 2, 3, 4, 5}, {48.5, -2.25, 65, 10, 0}});
    EXPECT_EQ(Info::geoInfo(), (Dictionary{{"latitude", "48.500000"},
                                           {"longitude", "-2.250000"},
                                           {"accuracy", "65.000000"},
                                           {"country_code", "FR"},
                                           {"country_name", "France"}}));
    EXPECT_EQ(TXAnalyticsLocation::location().locationInfo().description(),
              "self.latitude=48.500000 self.longitude=-2.250000 self.horizontalAccuracy=65.000000 "
              "self.verticalAccuracy=10.000000 self.altitude= self.countryCode=FR self.countryName=France");
    location.delegate->locationManager_didUpdateLocations({{0, 1, 0, 0, 0}});
    EXPECT_EQ(location.geocoded, 1);
    EXPECT_EQ(*Info::geoInfo().find("latitude"), "");
}

TEST_F(InfoTest, CountryIsAskedForAgainUntilItIsKnown) {
    TXAnalyticsLocation::location().startMonitoring();
    location.placemarks = foundation::Error{"service is away"};
    location.delegate->locationManager_didUpdateLocations({{1, 1, 1, 1, 1}});
    EXPECT_TRUE(log.contains("Telemetrix: Geocoder error service is away"));
    location.placemarks = std::vector<Placemark>{};
    location.delegate->locationManager_didUpdateLocations({{1, 1, 1, 1, 1}});
    location.placemarks = std::vector{Placemark{"XX"}};
    location.delegate->locationManager_didUpdateLocations({{1, 1, 1, 1, 1}});
    location.delegate->locationManager_didUpdateLocations({{1, 1, 1, 1, 1}});
    EXPECT_EQ(location.geocoded, 4);
    location.delegate->locationManager_didUpdateLocations({});
    location.delegate->locationManager_didFailWithError(foundation::Error{"lost"});
    EXPECT_EQ(*Info::geoInfo().find("latitude"), "1.000000");
    EXPECT_EQ(*Info::geoInfo().find("country_code"), "XX");
    EXPECT_EQ(*Info::geoInfo().find("country_name"), "");
}

}  // namespace
}  // namespace trimora::analytics
