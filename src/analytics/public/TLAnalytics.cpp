#include "analytics/public/TLAnalytics.h"

namespace trimora::analytics {

TLAnalytics& TLAnalytics::shared() {
    static TLAnalytics instance;
    return instance;
}

TLEventAnalytics& TLEventAnalytics::shared() {
    static TLEventAnalytics instance;
    return instance;
}

TLUnityStatistic& TLUnityStatistic::shared() {
    static TLUnityStatistic instance;
    return instance;
}

}  // namespace trimora::analytics
