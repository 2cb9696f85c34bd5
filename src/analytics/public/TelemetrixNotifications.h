#pragma once

/// Names of the notifications that cross the library's border. All are posted with no object.
namespace trimora::analytics {

/// The library was started: posted once, by the first Telemetrix::startSession().
inline constexpr const char* kTXTelemetrixDidStartNotification = "TXTelemetrixDidStartNotification";
/// Telemetrix::stopSession() ended a background session.
inline constexpr const char* kTXApplicationDidEndSessionManualNotification =
    "TXApplicationDidEndSessionManualNotification";
/// Telemetrix::setBackgroundSessionEnabled(): the application is to go on in the background, for whoever
/// keeps it running there, ...
inline constexpr const char* kTLAnalyticsNeedEnableBackgroundSessionNotification =
    "TLAnalyticsNeedEnableBackgroundSessionNotification";
/// ... or no longer is, ...
inline constexpr const char* kTLAnalyticsNeedDisableBackgroundSessionNotification =
    "TLAnalyticsNeedDisableBackgroundSessionNotification";
/// ... or not until it comes back: follows the manual end.
inline constexpr const char* kTLAnalyticsNeedPauseBackgroundSessionNotification =
    "TLAnalyticsNeedPauseBackgroundSessionNotification";

/// Posted by the application, on the main thread: its window is no longer, or again, the one that the
/// person works in; it is about to end.
inline constexpr const char* kNSWindowDidResignKeyNotification = "NSWindowDidResignKeyNotification";
inline constexpr const char* kNSWindowDidBecomeKeyNotification = "NSWindowDidBecomeKeyNotification";
inline constexpr const char* kNSApplicationWillTerminateNotification =
    "NSApplicationWillTerminateNotification";

}  // namespace trimora::analytics
