#include "controls/SliderVertical.h"

#include <QPainter>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

void SliderVertical::paintEvent(QPaintEvent* /*event*/) {
    constexpr double kRadius = metrics::kTrackWidth / 2;
    QPainter painter(this);
    const SliderParts places = parts();
    beginPainting(painter, places.knob);
    painter.setBrush(palette::kVerticalTrack);
    if (places.unfilled.height() > 0)
        painter.drawRoundedRect(places.unfilled, kRadius, kRadius);
    painter.setBrush(palette::kAccent);
    painter.drawRoundedRect(places.filled, kRadius, kRadius);
    paintKnob(painter, places.knob);
}

}  // namespace trimora::controls
