#include "analytics/public/TLEventCollector.h"

#include "analytics/public/TLAnalyticsCollector.h"
#include "analytics/public/TXAnalyticsCollector.h"

namespace trimora::analytics {

void TLEventCollector::buttonClickWithName(const std::string& name) {
    TLAnalyticsCollector::buttonClickWithName(name);
}

void TLEventCollector::sceneStartWithName(const std::string& name, const std::string& andId) {
    TLAnalyticsCollector::sceneStartWithName(name, andId);
}

void TLEventCollector::levelStartWithName(const std::string& name, const std::string& andMode) {
    TLAnalyticsCollector::levelStartWithName(name, andMode);
}

void TLEventCollector::levelWinWithName(const std::string& name, const std::string& andMode) {
    TLAnalyticsCollector::levelWinWithName(name, andMode);
}

void TLEventCollector::levelLoseWithName(const std::string& name, const std::string& andMode) {
    TLAnalyticsCollector::levelLoseWithName(name, andMode);
}

void TLEventCollector::lootAppendWithName(const std::string& name, const std::string& andVolume) {
    TLAnalyticsCollector::lootAppendWithName(name, andVolume);
}

void TLEventCollector::lootConsumeWithName(const std::string& name, const std::string& andVolume,
                                           const std::string& andTarget) {
    TLAnalyticsCollector::lootConsumeWithName(name, andVolume, andTarget);
}

void TLEventCollector::gameOverWithMode(const std::string& mode) {
    TLAnalyticsCollector::gameOverWithMode(mode);
}

void TLEventCollector::custom(const Dictionary& data) {
    std::string name = "custom.";
    if (const Dictionary* const given = data.find("custom"); given != nullptr && given->text() != nullptr)
        name += *given->text();
    TXAnalyticsCollector::customEvent(name, data);
}

}  // namespace trimora::analytics
