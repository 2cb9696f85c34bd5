#pragma once

#include <optional>
#include <string>

namespace trimora::analytics {

/// A time zone at this moment.
struct TimeZone {
    std::string name;        ///< such as "Europe/Paris"
    int secondsFromGMT = 0;  ///< east is positive; daylight saving included
};

/// What the machine and its settings say about themselves. Nothing here fails: what is not known is
/// absent, and the library puts its stated fall-back in its place. Called from any thread.
class DeviceSource {
 public:
    virtual ~DeviceSource() = default;
    DeviceSource(const DeviceSource&) = delete;
    DeviceSource& operator=(const DeviceSource&) = delete;

    /// Tells this machine from others, for this application alone: never a serial number and nothing
    /// from which another application could know the machine again.
    [[nodiscard]] virtual std::optional<std::string> uniqueIdentifier() const = 0;

    [[nodiscard]] virtual std::optional<std::string> hardwareModel() const = 0;
    [[nodiscard]] virtual std::optional<std::string> operatingSystemVersion() const = 0;

    /// Name, version and platform of the application, as web servers are told them.
    [[nodiscard]] virtual std::optional<std::string> userAgent() const = 0;

    /// Such as "en_US".
    [[nodiscard]] virtual std::string localeIdentifier() const = 0;
    [[nodiscard]] virtual TimeZone timeZone() const = 0;

    /// The identifier for advertisers as a UUID string; absent where there is no such thing.
    [[nodiscard]] virtual std::optional<std::string> advertisingIdentifier() const = 0;

 protected:
    DeviceSource() = default;
};

}  // namespace trimora::analytics
