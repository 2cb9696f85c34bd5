#pragma once

#include <new>
#include <system_error>

#include "foundation/Log.h"

namespace trimora::analytics {

/// Says so in the log, unless there is no memory even for that.
inline void tellOfMissingMemory() noexcept {
    try {
        foundation::log::warning("Telemetrix: not enough memory");
    } catch (const std::bad_alloc&) {
        return;
    }
}

/// Does the work as far as memory goes; returns whether it was done. What is left undone is lost with a line
/// in the log: the program that the library is part of must not end because its use cannot be recorded.
template <typename Work>
bool asFarAsMemoryGoes(const Work& work) noexcept {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        tellOfMissingMemory();
    } catch (const std::system_error&) {  // the standard library's word for it where the system was asked
        tellOfMissingMemory();
    }
    return false;
}

}  // namespace trimora::analytics
