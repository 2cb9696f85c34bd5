#include "analytics/session/ConsentGate.h"

#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/session/SessionIdentifier.h"
#include "analytics/session/TXSessionManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"

namespace trimora::analytics {

void ConsentGate::refuse() {
    isOpen_ = false;
    Telemetrix::resetInnerId();
    TXAnalyticsQueue::addTask([this] { emptyStore(); });
}

void ConsentGate::erase() {
    TXAnalyticsQueue::addTask([this] {
        emptyStore();
        if (Telemetrix::innerId())
            TXSessionManager::sharedManager().setCurrentSession(makeSessionIdentifier());
    });
}

// A post that is called off writes the status of its session, so that comes first.
void ConsentGate::emptyStore() {
    transport_.cancelAll();
    TXAnalyticsDBManager::sharedManager().deleteAllObjects();
}

void ConsentGate::send(HttpRequest request, Completion completion) {
    if (isOpen_)
        transport_.send(std::move(request), std::move(completion));
    else
        completion(TelemetrixError{kDomain, 0, "the person has not agreed to sending"});
}

}  // namespace trimora::analytics
