#pragma once

#include <string>

#include "analytics/event/Dictionary.h"

namespace trimora::analytics {

/// The game events of TXAnalyticsCollector under the names that older applications know, with its
/// rules and threads.
class TLEventCollector {
 public:
    // Stored without data under their word, such as "level_start", and the arguments, joined by full
    // stops; a scene's id comes before its name. Dropped silently where nothing may be recorded.
    static void buttonClickWithName(const std::string& name);
    static void sceneStartWithName(const std::string& name, const std::string& andId);
    static void levelStartWithName(const std::string& name, const std::string& andMode);
    static void levelWinWithName(const std::string& name, const std::string& andMode);
    static void levelLoseWithName(const std::string& name, const std::string& andMode);
    static void lootAppendWithName(const std::string& name, const std::string& andVolume);
    static void lootConsumeWithName(const std::string& name, const std::string& andVolume,
                                    const std::string& andTarget);
    static void gameOverWithMode(const std::string& mode);

    /// Records the data as a custom event whose name is "custom." and the text under "custom" in the
    /// data; nothing follows the full stop where there is no such text.
    static void custom(const Dictionary& data);
};

}  // namespace trimora::analytics
