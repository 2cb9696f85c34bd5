#pragma once

#include <QString>

namespace trimora::controls {

/// A style sheet of the toolkit in this program's colours and sizes. `text` names those with @words: @raised,
/// @field, @focus (a line on a field), @line, @text, @disabled, @accent, @accentEnd, @radius (a length in
/// points). Main thread.
[[nodiscard]] QString styleSheet(const char* text);

}  // namespace trimora::controls
