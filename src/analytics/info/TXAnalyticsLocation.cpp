#include "analytics/info/TXAnalyticsLocation.h"

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/ProcessWide.h"

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

std::string numberOrNothing(double value) {
    return value == 0 ? std::string() : formatted("%f", value);
}

}  // namespace

std::string TXAnalyticsLocationInfo::description() const {
    return "self.latitude=" + latitude + " self.longitude=" + longitude +
           " self.horizontalAccuracy=" + horizontalAccuracy + " self.verticalAccuracy=" + verticalAccuracy +
           " self.altitude=" + altitude + " self.countryCode=" + countryCode +
           " self.countryName=" + countryName;
}

TXAnalyticsLocation& TXAnalyticsLocation::location() {
    static ProcessWide<TXAnalyticsLocation> shared;
    return shared.get([] { return new TXAnalyticsLocation; });
}

TXAnalyticsLocation::~TXAnalyticsLocation() {
    wiring().location.setDelegate(nullptr);
}

TXAnalyticsLocationInfo TXAnalyticsLocation::locationInfo() const {
    const std::scoped_lock lock(mutex_);
    return {numberOrNothing(last_.latitude),
            numberOrNothing(last_.longitude),
            numberOrNothing(last_.horizontalAccuracy),
            numberOrNothing(last_.verticalAccuracy),
            numberOrNothing(last_.altitude),
            countryCode_,
            countryName_};
}

void TXAnalyticsLocation::startMonitoringIfHavePermission() {
    const auto status = wiring().location.authorizationStatus();
    if (status == LocationSource::Authorization::notDetermined ||
        status == LocationSource::Authorization::authorized)
        startMonitoring();
}

void TXAnalyticsLocation::startMonitoring() {
    setUpLocationManager();
    wiring().location.startUpdatingLocation();
}

void TXAnalyticsLocation::setUpLocationManager() {
    wiring().location.setDelegate(this);
}

void TXAnalyticsLocation::locationManager_didUpdateLocations(const std::vector<Location>& locations) {
    if (locations.empty())
        return;
    bool countryIsKnown = false;
    {
        const std::scoped_lock lock(mutex_);
        last_ = locations.back();
        countryIsKnown = !countryCode_.empty() && !countryName_.empty();
    }
    if (!countryIsKnown)
        wiring().location.reverseGeocodeLocation(
            locations.back(), [this](const auto& placemarks) { keepPlacemarks(placemarks); });
}

void TXAnalyticsLocation::locationManager_didFailWithError(const Error& /*error*/) {
    // What was known stays known; the service tells again when it can.
}

void TXAnalyticsLocation::keepPlacemarks(const Result<std::vector<Placemark>>& placemarks) {
    if (!placemarks) {
        logLine("Geocoder error " + placemarks.error().message);
        return;
    }
    if (placemarks->empty())
        return;
    const std::string& code = placemarks->front().isoCountryCode;
    std::string name = wiring().location.englishCountryName(code);
    const std::scoped_lock lock(mutex_);
    countryCode_ = code;
    countryName_ = std::move(name);
}

}  // namespace trimora::analytics
