#pragma once

#include <string>

#include "script/Steps.h"

namespace trimora::script {

/// A step as one line of an edit script, without the line break, which readStep() turns into the same step
/// again: numbers are written so that not a bit is lost. Texts are UTF-8; what is not becomes U+FFFD.
[[nodiscard]] std::string writeStep(const Step& step);

}  // namespace trimora::script
