#pragma once

/// Names of the broadcasts that the editor screen's parts send; none carries an object or anything beside
/// it.
namespace trimora::editor::notifications {

/// The restore question was answered with Yes: the editor brings the whole picture back.
inline constexpr const char* kResetImage = "resetImageNotif";

/// A first picture has come since the window was made: the toolbar shows its history buttons.
inline constexpr const char* kViewIsNotEmpty = "viewIsNotEmpty";

}  // namespace trimora::editor::notifications
