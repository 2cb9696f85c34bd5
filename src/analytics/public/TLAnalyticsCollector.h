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
    /// Who receives a copy of every call; null for nobody. The delegate must outlive its service.
    static void setAnalyticsCollectorDelegate(TLAnalyticsCollectorDelegate* delegate);

    // Events of games, stored without data: "button_click.<name>", "scene_start.<id>.<name>",
    // "level_start.<name>.<mode>", "level_win...", "level_lose...", "loot_append.<name>.<volume>",
    // "loot_consume.<name>.<volume>.<target>" and "game_over.<mode>".
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

    // Events of the application, stored under the name given and a full stop; parameters may be null
    // for none. A missing name (std::nullopt) drops the call silently.
    static void logEvent(const std::optional<std::string>& name);
    static void logEvent(const std::optional<std::string>& name, const Dictionary& parameters);
    /// Something that takes time begins, and ends: two events of one name, told apart by their
    /// "end_timed_event".
    static void logTimedEvent(const std::optional<std::string>& name);
    static void logTimedEvent(const std::optional<std::string>& name, const Dictionary& parameters);
    static void endTimedEvent(const std::optional<std::string>& name);
};

}  // namespace trimora::analytics
