#include "platform/FontsAhead.h"

#include <fontconfig/fontconfig.h>

#include <QFontMetricsF>

namespace trimora::platform {

FontsAhead::FontsAhead() : thread_([] { FcInit(); }) {}

void FontsAhead::wait() {
    if (thread_.joinable())
        thread_.join();
}

void findFontsFor(const QFont& font) {
    (void)QFontMetricsF(font).horizontalAdvance(QLatin1Char('x'));
}

}  // namespace trimora::platform
