#pragma once

#include <optional>
#include <string>

namespace trimora::analytics {

/// Where sessions are posted to.
///
/// The address is the environment variable TRIMORA_ANALYTICS_URL where it is set, else "https://" +
/// the host that the library was built for (CMake: TRIMORA_ANALYTICS_HOST) + "/stat/4". With neither
/// there is none: sessions stay in the store. One for the process, read at creation; any thread.
class TXAnalyticsConfig {
 public:
    [[nodiscard]] static TXAnalyticsConfig& sharedConfig();

    /// The address as it is configured just now; nothing where there is none. Needs no Installation.
    [[nodiscard]] static std::optional<std::string> configuredUrl();

    /// Nothing, and a debug warning, where there is none.
    [[nodiscard]] std::optional<std::string> url() const;

 private:
    TXAnalyticsConfig();

    std::optional<std::string> url_;
};

}  // namespace trimora::analytics
