#include "testing/Depth.h"

#include <algorithm>
#include <cstdlib>

namespace trimora::testing {

int depth() {
    const char* const given = std::getenv("TRIMORA_DEPTH");
    return given != nullptr ? std::clamp(std::atoi(given), 1, 3) : 1;
}

int byDepth(int everyRun, int longRun, int beforeRelease) {
    switch (depth()) {
        case 1:
            return everyRun;
        case 2:
            return longRun;
        default:
            return beforeRelease;
    }
}

}  // namespace trimora::testing
