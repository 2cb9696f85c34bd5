#pragma once

#include "cli/Subcommands.h"

namespace trimora {

/// The subcommands that need no window, with the terminal and the threads of this process. They start
/// neither the toolkit nor anything else of the editor.
[[nodiscard]] int runCut(Words words);
[[nodiscard]] int runInfo(Words words);

}  // namespace trimora
