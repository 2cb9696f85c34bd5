#include "analytics/public/TXAnalyticsCollector.h"

#include <atomic>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "analytics/event/StandardEvents.h"
#include "analytics/public/CollectorRecording.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/session/TXSessionManager.h"

namespace trimora::analytics {
namespace {

std::atomic<TLAnalyticsCollectorDelegate*> delegate = nullptr;

bool mayRecord() {
    if (!Telemetrix::innerId())
        return false;
    const TXSessionManager& manager = TXSessionManager::sharedManager();
    if (manager.isInBackground() && !Telemetrix::backgroundSessionEnabled())
        return false;
    return !manager.isForceStopSessionInBackground();
}

/// The name under which an application's event is stored; nothing where the event is to be dropped.
std::optional<std::string> storedName(const std::optional<std::string>& name) {
    if (!name || !mayRecord())
        return std::nullopt;
    return *name + ".";
}

/// Records a game event; false where it is to be dropped.
bool recordGameEvent(std::string_view word, std::initializer_list<std::string_view> arguments) {
    if (!mayRecord())
        return false;
    std::string name(word);
    for (const std::string_view argument : arguments)
        name.append(".").append(argument);
    recordEvent(name, nullptr);
    return true;
}

Dictionary mutableCopy(const Dictionary& data) {
    return data.isNull() ? Dictionary::object() : data;
}

/// The copy with one entry set. What is no dictionary is left as it is, for the builder to complain of.
Dictionary with(Dictionary data, std::string_view key, const Dictionary& value) {
    data.set(key, value);
    return data;
}

/// Calls the delegate's operation if there is a delegate.
template <typename Operation, typename... Arguments>
void tell(Operation operation, const Arguments&... arguments) {
    if (TLAnalyticsCollectorDelegate* const listener = delegate)
        (listener->*operation)(arguments...);
}

using Delegate = TLAnalyticsCollectorDelegate;

}  // namespace

void TXAnalyticsCollector::setAnalyticsCollectorDelegate(TLAnalyticsCollectorDelegate* listener) {
    delegate = listener;
}

TLAnalyticsCollectorDelegate* TXAnalyticsCollector::analyticsCollectorDelegate() {
    return delegate;
}

void TXAnalyticsCollector::logEvent(const std::optional<std::string>& name) {
    const auto stored = storedName(name);
    if (!stored)
        return;
    recordEvent(*stored, nullptr);
    tell(&Delegate::logEvent, *stored);
}

void TXAnalyticsCollector::logEvent(const std::optional<std::string>& name, const Dictionary& eventData) {
    const auto stored = storedName(name);
    if (!stored)
        return;
    recordEvent(*stored, eventData);
    tell(&Delegate::logEvent_withParameters, *stored, mutableCopy(eventData));
}

void TXAnalyticsCollector::logTimedEvent(const std::optional<std::string>& name) {
    const auto stored = storedName(name);
    if (!stored)
        return;
    recordEvent(*stored, {{events::kEndTimedEventKey, false}});
    tell(&Delegate::logTimedEvent, *stored);
}

void TXAnalyticsCollector::logTimedEvent(const std::optional<std::string>& name,
                                         const Dictionary& eventData) {
    const auto stored = storedName(name);
    if (!stored)
        return;
    const Dictionary data = with(mutableCopy(eventData), events::kEndTimedEventKey, false);
    recordEvent(*stored, data);
    tell(&Delegate::logTimedEvent_withParameters, *stored, data);
}

void TXAnalyticsCollector::endTimedEvent(const std::optional<std::string>& name) {
    const auto stored = storedName(name);
    if (!stored)
        return;
    recordEvent(*stored, {{events::kEndTimedEventKey, true}});
    tell(&Delegate::endTimedEvent, *stored);
}

void TXAnalyticsCollector::customEvent(const std::optional<std::string>& name, const Dictionary& eventData) {
    const auto stored = storedName(name);
    if (!stored)
        return;
    recordEvent(*stored, eventData);
    tell(&Delegate::custom, with(mutableCopy(eventData), "custom_event_name", *stored));
}

void TXAnalyticsCollector::sceneStartWithId(const std::string& sceneId, const std::string& name) {
    if (recordGameEvent(events::kSceneStart, {sceneId, name}))
        tell(&Delegate::sceneStart, sceneId, name);
}

void TXAnalyticsCollector::buttonClickWithName(const std::string& name) {
    if (recordGameEvent(events::kButtonClick, {name}))
        tell(&Delegate::buttonClick, name);
}

void TXAnalyticsCollector::levelStartWithName(const std::string& name, const std::string& mode) {
    if (recordGameEvent(events::kLevelStart, {name, mode}))
        tell(&Delegate::levelStart, name, mode);
}

void TXAnalyticsCollector::levelWinWithName(const std::string& name, const std::string& mode) {
    if (recordGameEvent(events::kLevelWin, {name, mode}))
        tell(&Delegate::levelWin, name, mode);
}

void TXAnalyticsCollector::levelLoseWithName(const std::string& name, const std::string& mode) {
    if (recordGameEvent(events::kLevelLose, {name, mode}))
        tell(&Delegate::levelLose, name, mode);
}

void TXAnalyticsCollector::lootAppendWithName(const std::string& name, const std::string& volume) {
    if (recordGameEvent(events::kLootAppend, {name, volume}))
        tell(&Delegate::lootAppend, name, volume);
}

void TXAnalyticsCollector::lootConsumeWithName(const std::string& name, const std::string& volume,
                                               const std::string& target) {
    if (recordGameEvent(events::kLootConsume, {name, volume, target}))
        tell(&Delegate::lootConsume, name, volume, target);
}

void TXAnalyticsCollector::gameOverWithMode(const std::string& mode) {
    if (recordGameEvent(events::kGameOver, {mode}))
        tell(&Delegate::gameOver, mode);
}

}  // namespace trimora::analytics
