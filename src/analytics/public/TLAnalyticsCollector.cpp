#include "analytics/public/TLAnalyticsCollector.h"

#include "analytics/public/TXAnalyticsCollector.h"

namespace trimora::analytics {

void TLAnalyticsCollector::setAnalyticsCollectorDelegate(TLAnalyticsCollectorDelegate* delegate) {
    TXAnalyticsCollector::setAnalyticsCollectorDelegate(delegate);
}

void TLAnalyticsCollector::buttonClickWithName(const std::string& name) {
    TXAnalyticsCollector::buttonClickWithName(name);
}

void TLAnalyticsCollector::sceneStartWithName(const std::string& name, const std::string& andId) {
    TXAnalyticsCollector::sceneStartWithId(andId, name);
}

void TLAnalyticsCollector::levelStartWithName(const std::string& name, const std::string& andMode) {
    TXAnalyticsCollector::levelStartWithName(name, andMode);
}

void TLAnalyticsCollector::levelWinWithName(const std::string& name, const std::string& andMode) {
    TXAnalyticsCollector::levelWinWithName(name, andMode);
}

void TLAnalyticsCollector::levelLoseWithName(const std::string& name, const std::string& andMode) {
    TXAnalyticsCollector::levelLoseWithName(name, andMode);
}

void TLAnalyticsCollector::lootAppendWithName(const std::string& name, const std::string& andVolume) {
    TXAnalyticsCollector::lootAppendWithName(name, andVolume);
}

void TLAnalyticsCollector::lootConsumeWithName(const std::string& name, const std::string& andVolume,
                                               const std::string& andTarget) {
    TXAnalyticsCollector::lootConsumeWithName(name, andVolume, andTarget);
}

void TLAnalyticsCollector::gameOverWithMode(const std::string& mode) {
    TXAnalyticsCollector::gameOverWithMode(mode);
}

void TLAnalyticsCollector::custom(const Dictionary& data) {
    TXAnalyticsCollector::customEvent("custom", data);
}

void TLAnalyticsCollector::logEvent(const std::optional<std::string>& name) {
    TXAnalyticsCollector::logEvent(name);
}

void TLAnalyticsCollector::logEvent(const std::optional<std::string>& name, const Dictionary& parameters) {
    TXAnalyticsCollector::logEvent(name, parameters);
}

void TLAnalyticsCollector::logTimedEvent(const std::optional<std::string>& name) {
    TXAnalyticsCollector::logTimedEvent(name);
}

void TLAnalyticsCollector::logTimedEvent(const std::optional<std::string>& name,
                                         const Dictionary& parameters) {
    TXAnalyticsCollector::logTimedEvent(name, parameters);
}

void TLAnalyticsCollector::endTimedEvent(const std::optional<std::string>& name) {
    TXAnalyticsCollector::endTimedEvent(name);
}

}  // namespace trimora::analytics
