#include "analytics/session/TXAnalyticsExtensions.h"

#include "analytics/Installation.h"
#include "analytics/info/TXStaticAnalyticsInfo.h"

namespace trimora::analytics {
namespace {

constexpr double kTimeoutSeconds = 30.0;
constexpr const char* kProtocolVersion = "4.0.2";

}  // namespace

// A caller's vector cannot change while it is joined, so there is nothing to watch for.
std::string toJsonArrayString(const std::vector<std::string>& texts) {
    std::string joined = "[";
    for (std::size_t i = 0; i < texts.size(); ++i)
        joined.append(i == 0 ? "" : ",").append(texts[i]);
    return joined + ']';
}

HttpRequest initSessionRequestWithBody(std::string body, const std::string& session, const std::string& url) {
    const auto now = foundation::milliseconds(wiring().clock.wallTime());
    return {"POST",
            url,
            kTimeoutSeconds,
            {{"Cookie", "sid=" + session + ";uid=" + TXStaticAnalyticsInfo::deviceUniqueId() + ";"},
             {"TX-Send-Date", std::to_string(now)},
             {"TX-Version", kProtocolVersion}},
            std::move(body)};
}

}  // namespace trimora::analytics
