#pragma once

/// Names of the broadcasts that the editor screen's parts send; none carries an object or anything beside
/// it.
namespace trimora::editor::notifications {

/// The restore question was answered with Yes: the editor brings the whole picture back.
inline constexpr const char* kResetImage = "resetImageNotif";

}  // namespace trimora::editor::notifications
