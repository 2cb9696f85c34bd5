#pragma once

namespace trimora {

/// Shows the gallery of controls in a window, prints what they report to standard output, a line each,
/// and returns the exit status when the window was closed. After the QApplication was made.
[[nodiscard]] int runGallery();

}  // namespace trimora
