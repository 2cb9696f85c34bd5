#pragma once

#include <string_view>

#include "foundation/Result.h"
#include "script/Steps.h"

namespace trimora::script {

/// Reads one line of an edit script: a JSON object whose "do" names the step, with the step's fields.
/// Fields that the step does not know are left alone.
///
/// Whatever the text: a step, or an error whose message says what was expected and where, "expected ...".
/// Any thread.
[[nodiscard]] foundation::Result<Step> readStep(std::string_view line);

/// Whether a line says nothing: it is empty or blank.
[[nodiscard]] bool isBlank(std::string_view line);

}  // namespace trimora::script
