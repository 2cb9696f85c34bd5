#pragma once

#include "cli/JsonValues.h"
#include "cli/ScriptedProgram.h"
#include "foundation/Result.h"
#include "script/Steps.h"

/// The pictures that a script looks at and writes.
namespace trimora {

/// [[r, g, b, a], ...] at the places, 0..255, not premultiplied. Returns an error where there is no such
/// picture, or a place lies outside of it.
[[nodiscard]] foundation::Result<Json> sample(ScriptedProgram& program, const script::SampleStep& step);

/// Writes a PNG file whole or not at all. Returns an error where there is no such picture, or the file
/// cannot be written.
[[nodiscard]] foundation::Result<void> write(ScriptedProgram& program, const script::WriteStep& step);

}  // namespace trimora
