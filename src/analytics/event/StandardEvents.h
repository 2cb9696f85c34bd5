#pragma once

#include <array>
#include <string_view>

/// The names of the events that the library writes by itself or has a call for. Those of the
/// application end with a full stop, so the two never meet.
namespace trimora::analytics::events {

inline constexpr std::string_view kAppOpen = "app_open";        ///< start, and every return
inline constexpr std::string_view kAppInstall = "app_install";  ///< first launch only
inline constexpr std::string_view kSessionEnd = "session_end";  ///< one for each session, rewritten
inline constexpr std::string_view kDeviceInfo = "device_info";  ///< session start
inline constexpr std::string_view kGeoInfo = "geo_info";        ///< session start
inline constexpr std::string_view kAppInfo = "app_info";        ///< session start
inline constexpr std::string_view kAppCrash = "app_crash";      ///< the start after a crash
inline constexpr std::string_view kSceneStart = "scene_start";
inline constexpr std::string_view kButtonClick = "button_click";
inline constexpr std::string_view kLevelStart = "level_start";
inline constexpr std::string_view kLevelWin = "level_win";
inline constexpr std::string_view kLevelLose = "level_lose";
inline constexpr std::string_view kLootAppend = "loot_append";
inline constexpr std::string_view kLootConsume = "loot_consume";
inline constexpr std::string_view kGameOver = "game_over";

/// All of them, in the library's own order.
inline constexpr std::array kAll = {kAppOpen,  kAppInstall, kSessionEnd, kDeviceInfo,  kGeoInfo,
                                    kAppInfo,  kAppCrash,   kSceneStart, kButtonClick, kLevelStart,
                                    kLevelWin, kLevelLose,  kLootAppend, kLootConsume, kGameOver};

/// The key that timed events carry in their data until the text is built.
inline constexpr std::string_view kEndTimedEventKey = "end_timed_event";

}  // namespace trimora::analytics::events
