#pragma once

#include <new>
#include <system_error>

#include "foundation/Log.h"

namespace trimora::foundation {

/// Says so in the log, unless there is no memory even for that.
inline void tellOfMissingMemory(const char* line) noexcept {
    try {
        log::warning("%s", line);
    } catch (const std::bad_alloc&) {
        return;
    }
}

/// Does the work as far as memory goes; returns whether it was done. Where it was not, the line is logged.
/// For where work enters a floor from a queue or a caller that cannot be told: the program goes on without
/// what was left undone.
template <typename Work>
bool asFarAsMemoryGoes(const char* line, const Work& work) noexcept {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        tellOfMissingMemory(line);
    } catch (const std::system_error&) {  // the standard library's word for it where the system was asked
        tellOfMissingMemory(line);
    }
    return false;
}

}  // namespace trimora::foundation
