#pragma once

#include <filesystem>

#include "app/EditorWindow.h"

namespace trimora {

/// Shows the program at work without a person: opens the picture in the window, cuts with presses and
/// movements of the mouse as the toolkit would deliver them, saves `folder`/cut.png and a picture of the
/// window, `folder`/screenshot.png, and prints both names. Returns the program's exit status; what could
/// not be done is told on standard error. Main thread, before the event loop.
[[nodiscard]] int runDemo(app::EditorWindow& window, const std::filesystem::path& picture,
                          const std::filesystem::path& folder);

}  // namespace trimora
