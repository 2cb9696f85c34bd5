#pragma once

#include <QString>

namespace trimora::controls {

/// The style sheet of every field to type into: its box, its text, and the line round it that tells
/// where the keyboard is.
[[nodiscard]] QString fieldLook();

}  // namespace trimora::controls
