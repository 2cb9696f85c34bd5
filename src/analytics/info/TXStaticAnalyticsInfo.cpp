#include "analytics/info/TXStaticAnalyticsInfo.h"

#include <algorithm>
#include <ctime>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/ProcessWide.h"
#include "analytics/info/ApplicationBundle.h"
#include "analytics/info/DeviceSource.h"
#include "analytics/info/TXAnalyticsLocation.h"
#include "analytics/info/UserDefaults.h"
#include "analytics/reachability/TXAnalyticsReachability.h"

namespace trimora::analytics {
namespace {

constexpr int kSecondsPerHour = 3600;

constexpr const char* kCreateHashDate = "create_hash_date";
constexpr const char* kLastHashDate = "last_hash_date";
constexpr const char* kLastVersion = "last_version";

/// What is asked for once.
struct Kept {
    std::string uniqueId = wiring().device.uniqueIdentifier().value_or("hackintosh");
    std::string userAgent = wiring().device.userAgent().value_or("");
    std::string model = wiring().device.hardwareModel().value_or("Unknown Apple Computer Model");
    std::string systemVersion = wiring().device.operatingSystemVersion().value_or("");
};

const Kept& kept() {
    static ProcessWide<const Kept> shared;
    return shared.get([] { return new Kept; });
}

/// Short date, full time, as the current locale writes them.
std::optional<std::string> dateString(const std::optional<foundation::Clock::WallTime>& date) {
    if (!date)
        return std::nullopt;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(*date);
    std::tm parts = {};
    ::localtime_r(&seconds, &parts);
    char text[128];
    const std::size_t length = std::strftime(text, sizeof text, "%x, %X %Z", &parts);
    return std::string(text, length);
}

std::string currentLocale() {
    std::string identifier = wiring().device.localeIdentifier();
    std::replace(identifier.begin(), identifier.end(), '_', '-');
    return identifier;
}

}  // namespace

Dictionary TXStaticAnalyticsInfo::appInfo() {
    const ApplicationBundle& bundle = wiring().bundle;
    auto version = getBundleVersion();
    if (!version)
        version = bundle.infoValue("CFBundleShortVersionString");
    return {{"app_name", applicationName(bundle)},
            {"package", bundle.infoValue("CFBundleIdentifier").value_or("")},
            {"version", version.value_or("")},
            {"platform", "osx"}};
}

Dictionary TXStaticAnalyticsInfo::geoInfo() {
    const TXAnalyticsLocationInfo info = TXAnalyticsLocation::location().locationInfo();
    return {{"latitude", info.latitude},
            {"longitude", info.longitude},
            {"accuracy", info.horizontalAccuracy},
            {"country_code", info.countryCode},
            {"country_name", info.countryName}};
}

Dictionary TXStaticAnalyticsInfo::deviceInfo() {
    const TimeZone zone = wiring().device.timeZone();
    const auto seconds = std::chrono::system_clock::to_time_t(wiring().clock.wallTime());
    return {{"uniq_id", deviceUniqueId()},
            {"user_agent", userAgent()},
            {"model", deviceModel()},
            {"manufacture", "Apple Inc."},
            {"os", deviceOSName()},
            {"os_version", deviceOSVersion()},
            {"locale", currentLocale()},
            {"timezone_offset", timezoneOffset(zone.secondsFromGMT)},
            {"timezone_id", zone.name},
            {"system_time", formatted("%lu", static_cast<unsigned long>(seconds))},
            {"carrier_name", deviceCarrierName()},
            {"connection_type", deviceInetconnectionType()},
            {"orientation", deviceOrientation()},
            {"type", deviceType()},
            {"gaid", advertisingIdentifier()}};
}

std::string TXStaticAnalyticsInfo::deviceUniqueId() {
    return kept().uniqueId;
}

std::string TXStaticAnalyticsInfo::userAgent() {
    return kept().userAgent;
}

std::string TXStaticAnalyticsInfo::deviceModel() {
    return kept().model;
}

std::string TXStaticAnalyticsInfo::deviceOSName() {
    return "MACOSX";
}

std::string TXStaticAnalyticsInfo::deviceOSVersion() {
    return kept().systemVersion;
}

std::string TXStaticAnalyticsInfo::deviceCarrierName() {
    return "";
}

int TXStaticAnalyticsInfo::deviceInetconnectionType() {
    const auto monitor = TXAnalyticsReachability::reachabilityForInternetConnection();
    switch (monitor->currentReachabilityStatus()) {
        case TXAnalyticsReachability::wiFi:
            return 1;
        case TXAnalyticsReachability::cellular:
            return 0;
        case TXAnalyticsReachability::notReachable:
            break;
    }
    return -1;
}

int TXStaticAnalyticsInfo::deviceOrientation() {
    return 2;
}

int TXStaticAnalyticsInfo::deviceType() {
    return 2;
}

std::string TXStaticAnalyticsInfo::advertisingIdentifier() {
    return wiring().device.advertisingIdentifier().value_or("");
}

std::string TXStaticAnalyticsInfo::timezoneOffset(int secondsFromGMT) {
    const auto hours = static_cast<unsigned long>(static_cast<long>(secondsFromGMT / kSecondsPerHour));
    return formatted(secondsFromGMT > -kSecondsPerHour ? "+%.2lu:00" : "%.2lu:00", hours);
}

TXStaticAnalyticsInfo::InstallStatus TXStaticAnalyticsInfo::appInstallStatus() {
    const auto created = objectForKey(kCreateHashDate);
    if (!created || created != getInstallationDateString())
        return newInstallation;
    if (objectForKey(kLastHashDate) == getModificationDateString())
        return unchanged;
    return objectForKey(kLastVersion) == getBundleVersion() ? changedWithSameVersion : changedVersion;
}

bool TXStaticAnalyticsInfo::isFirstApplicationLaunch() {
    const InstallStatus status = appInstallStatus();
    return status == newInstallation || status == changedWithSameVersion;
}

void TXStaticAnalyticsInfo::applicationDidFirstLaunch() {
    const auto created = getInstallationDateString();
    const auto modified = getModificationDateString();
    if (!created || !modified)
        debugWarning("Main bundle doesn't have install and modification date, something went wrong");
    UserDefaults& defaults = wiring().userDefaults;
    const auto store = [&](const char* key, const std::optional<std::string>& value) {
        if (value)
            defaults.setObject(key, *value);
    };
    store(kCreateHashDate, created);
    store(kLastHashDate, modified);
    store(kLastVersion, getBundleVersion());
    defaults.synchronize();
}

std::optional<std::string> TXStaticAnalyticsInfo::objectForKey(std::string_view key) {
    return wiring().userDefaults.objectForKey(key);
}

std::optional<std::string> TXStaticAnalyticsInfo::getBundleVersion() {
    return wiring().bundle.infoValue("CFBundleVersion");
}

std::string TXStaticAnalyticsInfo::getInstallationPath() {
    return wiring().bundle.path().string();
}

std::optional<std::string> TXStaticAnalyticsInfo::getInstallationDateString() {
    return dateString(wiring().bundle.creationDate());
}

std::optional<std::string> TXStaticAnalyticsInfo::getModificationDateString() {
    return dateString(wiring().bundle.modificationDate());
}

std::string TXStaticAnalyticsInfo::installKey() {
    return "TXStaticAnalyticsInfo";
}

}  // namespace trimora::analytics
