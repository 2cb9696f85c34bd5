#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "analytics/info/LocationSource.h"

namespace trimora::analytics {

/// Where the machine was last seen, in the form in which it is sent: numbers as "%f", and nothing ("")
/// for what is 0 or unknown. A copy; it does not change.
struct TXAnalyticsLocationInfo {
    std::string latitude;
    std::string longitude;
    std::string horizontalAccuracy;
    std::string verticalAccuracy;
    std::string altitude;
    std::string countryCode;  ///< ISO code
    std::string countryName;  ///< in English

    /// All seven, as "self.latitude=<value>" and so on, for the log.
    [[nodiscard]] std::string description() const;
};

/// Follows where the machine is, as far as the person allowed it. One for the process; any thread.
class TXAnalyticsLocation final : public LocationDelegate {
 public:
    [[nodiscard]] static TXAnalyticsLocation& location();

    virtual ~TXAnalyticsLocation();

    [[nodiscard]] TXAnalyticsLocationInfo locationInfo() const;

    /// Begins to follow where the person has allowed it or has not been asked; else does nothing.
    void startMonitoringIfHavePermission();
    void startMonitoring();

    /// Becomes the one whom the location service tells.
    void setUpLocationManager();

    void locationManager_didUpdateLocations(const std::vector<Location>& locations) override;
    void locationManager_didFailWithError(const foundation::Error& error) override;

 private:
    TXAnalyticsLocation() = default;
    void keepPlacemarks(const foundation::Result<std::vector<Placemark>>& placemarks);

    mutable std::mutex mutex_;
    Location last_;
    std::string countryCode_;
    std::string countryName_;
};

}  // namespace trimora::analytics
