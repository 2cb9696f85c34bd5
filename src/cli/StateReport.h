#pragma once

#include "cli/JsonValues.h"
#include "cli/ScriptedProgram.h"

namespace trimora {

/// Everything that can be seen of the editor at this moment, as the step `state` prints it. Looking changes
/// nothing, and waits for nothing.
[[nodiscard]] Json stateReport(ScriptedProgram& program);

}  // namespace trimora
