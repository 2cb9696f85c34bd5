#pragma once

#include <string>
#include <vector>

#include "analytics/session/HttpTransport.h"

/// How a session is laid out on the wire.
namespace trimora::analytics {

/// "[" + the texts separated by commas + "]", each text as it is: they are JSON already.
[[nodiscard]] std::string toJsonArrayString(const std::vector<std::string>& texts);

/// The POST of one session: time-out 30 s, the headers "Cookie" (session id and device id),
/// "TX-Send-Date" (now, Unix time in whole milliseconds) and "TX-Version", no content type.
/// An empty url is kept; sending then fails.
[[nodiscard]] HttpRequest initSessionRequestWithBody(std::string body, const std::string& session,
                                                     const std::string& url);

}  // namespace trimora::analytics
