#include "analytics/TelemetrixForTests.h"

#include "analytics/info/TXStaticAnalyticsInfo.h"

namespace trimora::analytics {

void TelemetrixTest::rememberLaunch() {
    TXStaticAnalyticsInfo::applicationDidFirstLaunch();
}

}  // namespace trimora::analytics
