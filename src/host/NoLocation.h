#pragma once

#include "analytics/info/LocationSource.h"

namespace trimora::host {

/// The location service of a program that has no use for places: nobody was asked for a permission, so
/// there is none, and no service of the machine is ever spoken to. Any thread.
class NoLocation final : public analytics::LocationSource {
 public:
    [[nodiscard]] Authorization authorizationStatus() const override { return Authorization::denied; }
    void setDelegate(analytics::LocationDelegate* /*delegate*/) override {}
    void startUpdatingLocation() override {}
    void reverseGeocodeLocation(const analytics::Location& /*location*/, Placemarks completion) override {
        completion(std::vector<analytics::Placemark>{});
    }
    [[nodiscard]] std::string englishCountryName(const std::string& /*isoCountryCode*/) const override {
        return "";
    }
};

}  // namespace trimora::host
