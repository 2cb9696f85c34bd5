#include <exception>
#include <optional>
#include <string>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/public/telemetrix_bridge.h"

namespace {

using trimora::analytics::debugWarning;
using trimora::analytics::Dictionary;
using trimora::analytics::isInstalled;
using trimora::analytics::Telemetrix;
using trimora::analytics::TXAnalyticsCollector;

/// Runs what a C function stands for; nothing thrown gets out.
template <typename Work>
void guarded(const Work& work) noexcept {
    try {
        if (isInstalled())
            work();
    } catch (const std::exception& failure) {
        debugWarning(failure.what(), "telemetrix_bridge");
    } catch (...) {
        debugWarning("an exception of unknown type", "telemetrix_bridge");
    }
}

/// As above for work that takes texts, all of which must be there.
template <typename Work, typename... Texts>
void guardedWithTexts(const Work& work, const Texts*... texts) noexcept {
    guarded([&] {
        if (((texts != nullptr) && ...))
            work(std::string(texts)...);
        else
            debugWarning("a text is missing", "telemetrix_bridge");
    });
}

/// The dictionary in the text; a null for no text, nothing for a text that holds no dictionary.
std::optional<Dictionary> dictionaryFrom(const char* json) {
    if (json == nullptr)
        return Dictionary(nullptr);
    auto parsed = Dictionary::parse(json);
    if (parsed && parsed->isObject())
        return parsed;
    debugWarning("data is no JSON object", "telemetrix_bridge");
    return std::nullopt;
}

}  // namespace

void telemetrix_start_session(void) {
    guarded([] { Telemetrix::startSession(); });
}

void telemetrix_custom_event(const char* json) {
    guarded([json] {
        auto data = dictionaryFrom(json);
        if (!data)
            return;
        std::optional<std::string> name;
        if (const auto entry = data->take("custom_event_name"); entry && entry->text() != nullptr)
            name = *entry->text();
        TXAnalyticsCollector::customEvent(name, *data);
    });
}

void telemetrix_log_event(void) {
    guarded([] { TXAnalyticsCollector::logEvent("custom"); });
}

void telemetrix_log_event_with_data(const char* json) {
    guarded([json] {
        if (const auto data = dictionaryFrom(json))
            TXAnalyticsCollector::logEvent("custom", *data);
    });
}

void telemetrix_log_timed_event(void) {
    guarded([] { TXAnalyticsCollector::logTimedEvent("custom_timed"); });
}

void telemetrix_log_timed_event_with_data(const char* json) {
    guarded([json] {
        if (const auto data = dictionaryFrom(json))
            TXAnalyticsCollector::logTimedEvent("custom_timed", *data);
    });
}

void telemetrix_end_timed_event(void) {
    guarded([] { TXAnalyticsCollector::endTimedEvent("custom_timed"); });
}

void telemetrix_scene_start(const char* scene_id, const char* name) {
    guardedWithTexts(TXAnalyticsCollector::sceneStartWithId, scene_id, name);
}

void telemetrix_button_click(const char* name) {
    guardedWithTexts(TXAnalyticsCollector::buttonClickWithName, name);
}

void telemetrix_level_start(const char* name, const char* mode) {
    guardedWithTexts(TXAnalyticsCollector::levelStartWithName, name, mode);
}

void telemetrix_level_win(const char* name, const char* mode) {
    guardedWithTexts(TXAnalyticsCollector::levelWinWithName, name, mode);
}

void telemetrix_level_lose(const char* name, const char* mode) {
    guardedWithTexts(TXAnalyticsCollector::levelLoseWithName, name, mode);
}

void telemetrix_loot_append(const char* name, const char* volume) {
    guardedWithTexts(TXAnalyticsCollector::lootAppendWithName, name, volume);
}

void telemetrix_loot_consume(const char* name, const char* volume, const char* target) {
    guardedWithTexts(TXAnalyticsCollector::lootConsumeWithName, name, volume, target);
}

void telemetrix_game_over(const char* mode) {
    guardedWithTexts(TXAnalyticsCollector::gameOverWithMode, mode);
}
