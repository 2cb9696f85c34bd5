#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "analytics/event/Dictionary.h"

namespace trimora::analytics {

/// What the machine and the application are: the data of "app_info", "geo_info" and "device_info", the
/// id that goes with every post, and whether this is the first launch of the installed application.
///
/// Class functions only, over the ports of the Wiring. Nothing fails: what is not known is "" or the
/// constant named. Some answers never change and are asked for once. Any thread.
class TXStaticAnalyticsInfo {
 public:
    /// "app_name", "package", "version", "platform" ("osx").
    [[nodiscard]] static Dictionary appInfo();

    /// "latitude", "longitude", "accuracy", "country_code", "country_name": texts, "" where unknown.
    [[nodiscard]] static Dictionary geoInfo();

    /// The machine: the texts "uniq_id", "user_agent", "model", "manufacture" ("Apple Inc."), "os"
    /// ("MACOSX"), "os_version", "locale" (as "en-US"), "timezone_offset", "timezone_id", "system_time"
    /// (Unix seconds), "carrier_name" (""), "gaid", and the numbers "connection_type", "orientation"
    /// (2), "type" (2).
    [[nodiscard]] static Dictionary deviceInfo();

    /// Tells this machine from others; "hackintosh" where the host has no such id. Kept for the process.
    [[nodiscard]] static std::string deviceUniqueId();
    [[nodiscard]] static std::string userAgent();        ///< kept for the process
    [[nodiscard]] static std::string deviceModel();      ///< or "Unknown Apple Computer Model"; kept
    [[nodiscard]] static std::string deviceOSName();     ///< "MACOSX"
    [[nodiscard]] static std::string deviceOSVersion();  ///< kept for the process
    [[nodiscard]] static std::string deviceCarrierName();
    /// 1 with Wi-Fi (any network of a desktop), 0 with a cellular one, -1 without.
    [[nodiscard]] static int deviceInetconnectionType();
    [[nodiscard]] static int deviceOrientation();
    [[nodiscard]] static int deviceType();
    [[nodiscard]] static std::string advertisingIdentifier();

    /// Whole hours east of GMT, written "+%.2lu:00". Minutes are dropped, and an hour or more to the
    /// west comes out as the unsigned reading of the negative number, without a sign: the service has
    /// always been sent these texts and tells zones by them.
    [[nodiscard]] static std::string timezoneOffset(int secondsFromGMT);

    /// How the installed application relates to the one of the last launch.
    enum InstallStatus : int {
        newInstallation = 1,         ///< never launched, or installed anew
        changedWithSameVersion = 2,  ///< the files changed, the version did not
        changedVersion = 3,          ///< an update
        unchanged = 4,
    };
    [[nodiscard]] static InstallStatus appInstallStatus();

    /// True for newInstallation and changedWithSameVersion.
    [[nodiscard]] static bool isFirstApplicationLaunch();

    /// Remembers the installation as it is, so that it counts as unchanged from here on.
    static void applicationDidFirstLaunch();

    /// Reads the user defaults.
    [[nodiscard]] static std::optional<std::string> objectForKey(std::string_view key);
    [[nodiscard]] static std::optional<std::string> getBundleVersion();
    [[nodiscard]] static std::string getInstallationPath();
    /// Creation and modification of the installed application, in the words of the current locale.
    [[nodiscard]] static std::optional<std::string> getInstallationDateString();
    [[nodiscard]] static std::optional<std::string> getModificationDateString();
    /// The class's name.
    [[nodiscard]] static std::string installKey();
};

}  // namespace trimora::analytics
