#include "util/Diagnostics.h"

#include "foundation/Log.h"

namespace trimora::util {

void logPoint(foundation::Point point) {
    foundation::log::debug("x = %f, y = %f", point.x, point.y);
}

void logCat() {
    for (const char* line :
         {R"(   |\_ _/|   )", R"(   ( o.o )   )", R"(   /  "  \  __)", R"(  ( |   | )/ /)"})
        foundation::log::debug("%s", line);
}

}  // namespace trimora::util
