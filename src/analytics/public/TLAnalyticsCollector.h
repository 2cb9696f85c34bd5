#pragma once

#include <optional>
#include <string>

#include "analytics/event/Dictionary.h"
#include "analytics/public/TLAnalyticsCollectorDelegate.h"

namespace trimora::analytics {

/// The collector under the names that older applications know. Each call is the like-named one of
/// TXAnalyticsCollector, with its rules and threads.
class TLAnalyticsCollector {
 public:
    static void setAnalyticsCollectorDelegate(TLAnalyticsCollectorDelegate* delegate);
    static void buttonClickWithName(const std::string& name);
    static void sceneStartWithName(const std::string& name, const std::string& andId);
    static void levelStartWithName(const std::string& name, const std::string& andMode);
    static void levelWinWithName(const std::string& name, const std::string& andMode);
    static void levelLoseWithName(const std::string& name, const std::string& andMode);
    static void lootAppendWithName(const std::string& name, const std::string& andVolume);
    static void lootConsumeWithName(const std::string& name, const std::string& andVolume,
                                    const std::string& andTarget);
    static void gameOverWithMode(const std::string& mode);

    /// Records the data as a custom event of the name "custom".
    static void custom(const Dictionary& data);

    static void logEvent(const std::optional<std::string>& name);
    static void logEvent(const std::optional<std::string>& name, const Dictionary& parameters);
    static void logTimedEvent(const std::optional<std::string>& name);
    static void logTimedEvent(const std::optional<std::string>& name, const Dictionary& parameters);
    static void endTimedEvent(const std::optional<std::string>& name);
};

}  // namespace trimora::analytics
