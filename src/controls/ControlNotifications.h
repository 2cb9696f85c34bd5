#pragma once

/// Names of the broadcasts that controls send and hear; none carries an object or anything beside it.
namespace trimora::controls::notifications {

/// The pointer left a control that lies over the cut view: the view shows its own cursor again.
inline constexpr const char* kNeedsCursorUpdate = "rk.cutView.needsCursorUpdate";
/// The calls to action: the editor runs its open or its save flow.
inline constexpr const char* kOpenPicture = "openPictureWithHelpNotification";
inline constexpr const char* kSavePicture = "savePictureWithHelpNotification";
/// The first picture is there: the floating panel shows itself.
inline constexpr const char* kAddViewWithButton = "addViewWithButton";
/// The editor turned to a coloured background: the colour picker reports its colour again.
inline constexpr const char* kClickColor = "clickColor";

}  // namespace trimora::controls::notifications
