#pragma once

#include "foundation/OutOfMemory.h"

namespace trimora::analytics {

/// Does the work as far as memory goes; returns whether it was done. What is left undone is lost with a line
/// in the log: the program that the library is part of must not end because its use cannot be recorded.
template <typename Work>
bool asFarAsMemoryGoes(const Work& work) noexcept {
    return foundation::asFarAsMemoryGoes("Telemetrix: not enough memory", work);
}

}  // namespace trimora::analytics
