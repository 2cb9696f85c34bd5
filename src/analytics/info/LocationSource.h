#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/Result.h"

namespace trimora::analytics {

/// A place on earth and how well it is known. Degrees (north and east positive) and metres.
struct Location {
    double latitude = 0;
    double longitude = 0;
    double horizontalAccuracy = 0;
    double verticalAccuracy = 0;
    double altitude = 0;
};

/// What stands at a place.
struct Placemark {
    std::string isoCountryCode;  ///< two letters, such as "FR"; empty where unknown
};

/// Hears where the machine is. Called on any thread, never after LocationSource::setDelegate(nullptr)
/// has returned.
class LocationDelegate {
 public:
    virtual void locationManager_didUpdateLocations(const std::vector<Location>& locations) = 0;
    virtual void locationManager_didFailWithError(const foundation::Error& error) = 0;

 protected:
    ~LocationDelegate() = default;
};

/// The location service of the host. It must never ask the person for a permission by itself.
class LocationSource {
 public:
    /// What the person allowed.
    enum class Authorization : int { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

    using Placemarks = std::function<void(foundation::Result<std::vector<Placemark>>)>;

    virtual ~LocationSource() = default;
    LocationSource(const LocationSource&) = delete;
    LocationSource& operator=(const LocationSource&) = delete;

    [[nodiscard]] virtual Authorization authorizationStatus() const = 0;

    /// Whom to tell; null for nobody. The delegate must stay until another is set.
    virtual void setDelegate(LocationDelegate* delegate) = 0;

    virtual void startUpdatingLocation() = 0;

    /// Finds out what stands there and says so once, on any thread, unless the delegate is taken away
    /// first.
    virtual void reverseGeocodeLocation(const Location& location, Placemarks completion) = 0;

    /// The country's name in English, or nothing for an unknown code.
    [[nodiscard]] virtual std::string englishCountryName(const std::string& isoCountryCode) const = 0;

 protected:
    LocationSource() = default;
};

}  // namespace trimora::analytics
