#include "platform/FontsAhead.h"

#include <fontconfig/fontconfig.h>

namespace trimora::platform {

FontsAhead::FontsAhead() : thread_([] { FcInit(); }) {}

void FontsAhead::wait() {
    if (thread_.joinable())
        thread_.join();
}

}  // namespace trimora::platform
