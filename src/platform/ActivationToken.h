#pragma once

#include <string>

/// The desktop's leave to bring one window to the front, where it keeps programs from doing that by
/// themselves. A token comes with a launch or with a click on a notification, and is good for one use:
/// by our own window, or by the program that is asked to show something next. Main thread only.
///
/// It is kept in the environment: there it stands when the program is started, and there the toolkit
/// looks for it when a window is activated.
namespace trimora::platform::activation_token {

/// The token that the program was started with; empty where there was none. To be asked before the
/// QApplication is made, which uses it up.
[[nodiscard]] std::string ofThisStart();

/// Keeps it for the next use; an empty one changes nothing.
void keep(const std::string& token);

/// The token that is kept, which is then gone; empty where there is none.
[[nodiscard]] std::string take();

}  // namespace trimora::platform::activation_token
