#pragma once

namespace trimora::platform {

/// The one name under which the desktop knows the program: its .desktop file, icon and metainfo are
/// called so, it is the program's name on the session bus, and the toolkit is told it as the desktop
/// file's name, so that a window finds its icon.
inline constexpr const char* kApplicationId = "org.trimora.Trimora";

}  // namespace trimora::platform
