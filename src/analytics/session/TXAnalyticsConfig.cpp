#include "analytics/session/TXAnalyticsConfig.h"

#include <cstdlib>
#include <string_view>

#include "analytics/Diagnostics.h"
#include "analytics/ProcessWide.h"

namespace trimora::analytics {
namespace {

constexpr std::string_view kBuiltInHost = TRIMORA_ANALYTICS_HOST;

std::string configuredUrl() {
    if (const char* const given = std::getenv("TRIMORA_ANALYTICS_URL"); given != nullptr && *given != '\0')
        return given;
    return kBuiltInHost.empty() ? "" : "https://" + std::string(kBuiltInHost) + "/stat/4";
}

}  // namespace

TXAnalyticsConfig& TXAnalyticsConfig::sharedConfig() {
    static ProcessWide<TXAnalyticsConfig> shared;
    return shared.get([] { return new TXAnalyticsConfig; });
}

TXAnalyticsConfig::TXAnalyticsConfig() : url_(configuredUrl()) {}

std::optional<std::string> TXAnalyticsConfig::url() const {
    if (!url_.empty())
        return url_;
    debugWarning("Wasn't able to find the URL for analytics!");
    return std::nullopt;
}

}  // namespace trimora::analytics
