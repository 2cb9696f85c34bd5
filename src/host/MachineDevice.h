#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "analytics/info/DeviceSource.h"

namespace trimora::host {

/// What this machine says about itself, read from the files in which Linux keeps it. Any thread; every
/// question is answered afresh.
class MachineDevice final : public analytics::DeviceSource {
 public:
    /// `application` keeps this program's machine identifier apart from that of all others;
    /// `userAgent` is told to servers as it is. `root` is where the machine's files begin.
    MachineDevice(std::string application, std::string userAgent, std::filesystem::path root = "/");

    /// The machine id (etc/machine-id), hashed together with the application: HMAC-SHA256 with the
    /// machine id as its key, shortened to 128 bits and written as a UUID, as machine-id(5) asks for.
    /// The machine id itself is never told.
    [[nodiscard]] std::optional<std::string> uniqueIdentifier() const override;

    /// The product name in the machine's DMI tables; nothing where there are none.
    [[nodiscard]] std::optional<std::string> hardwareModel() const override;

    /// The system's own name for itself (PRETTY_NAME of etc/os-release).
    [[nodiscard]] std::optional<std::string> operatingSystemVersion() const override;

    [[nodiscard]] std::optional<std::string> userAgent() const override { return userAgent_; }

    /// From LC_ALL, LC_MESSAGES or LANG without encoding and variant; "en_US" for none, "C" and "POSIX".
    [[nodiscard]] std::string localeIdentifier() const override;

    /// The zone's name from TZ or etc/localtime; "UTC" where neither names one.
    [[nodiscard]] analytics::TimeZone timeZone() const override;

    /// Always nothing: this program has no use for one.
    [[nodiscard]] std::optional<std::string> advertisingIdentifier() const override { return std::nullopt; }

 private:
    [[nodiscard]] std::optional<std::string> firstLine(const char* file) const;

    std::string application_;
    std::string userAgent_;
    std::filesystem::path root_;
};

}  // namespace trimora::host
