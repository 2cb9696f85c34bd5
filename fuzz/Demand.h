#pragma once

#include <cstdlib>

namespace trimora::fuzz {

/// Ends the process where a reader's promise is broken: what a fuzzer takes for a find.
inline void demand(bool holds) {
    if (!holds)
        std::abort();
}

}  // namespace trimora::fuzz
