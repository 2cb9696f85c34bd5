#include "analytics/session/TXAnalyticsConfig.h"

#include <cstdlib>
#include <string_view>

#include "analytics/Diagnostics.h"
#include "analytics/ProcessWide.h"

namespace trimora::analytics {
namespace {

constexpr std::string_view kBuiltInHost = TRIMORA_ANALYTICS_HOST;

}  // namespace

TXAnalyticsConfig& TXAnalyticsConfig::sharedConfig() {
    static ProcessWide<TXAnalyticsConfig> shared;
    return shared.get([] { return new TXAnalyticsConfig; });
}

std::optional<std::string> TXAnalyticsConfig::configuredUrl() {
    if (const char* const given = std::getenv("TRIMORA_ANALYTICS_URL"); given != nullptr && *given != '\0')
        return given;
    if (kBuiltInHost.empty())
        return std::nullopt;
    return "https://" + std::string(kBuiltInHost) + "/stat/4";
}

TXAnalyticsConfig::TXAnalyticsConfig() : url_(configuredUrl()) {}

std::optional<std::string> TXAnalyticsConfig::url() const {
    if (!url_)
        debugWarning("Wasn't able to find the URL for analytics!");
    return url_;
}

}  // namespace trimora::analytics
