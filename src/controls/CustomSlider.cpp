#include "controls/CustomSlider.h"

#include <QLinearGradient>
#include <QPainter>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "foundation/Log.h"

namespace trimora::controls {

void CustomSlider::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const SliderParts places = parts();
    beginPainting(painter, places.knob);
    drawTrack(painter, places);
    paintKnob(painter, places.knob);
}

void CustomSlider::drawTrack(QPainter& painter, const SliderParts& parts) const {
    constexpr double kRadius = metrics::kTrackWidth / 2;
    painter.setBrush(palette::kTrack);
    if (parts.unfilled.width() > 0)
        painter.drawRoundedRect(parts.unfilled, kRadius, kRadius);

    // The gradient runs over the whole slider, of which the filled line shows a part.
    QLinearGradient accent(0, 0, width(), height());
    if (isMirrored())
        accent = QLinearGradient(width(), 0, 0, height());
    accent.setColorAt(0, palette::kAccentStart);
    accent.setColorAt(1, palette::kAccentEnd);
    painter.setBrush(accent);
    painter.drawRoundedRect(parts.filled, kRadius, kRadius);
}

void CustomSlider::didEndTracking() {
    foundation::log::debug(" stop");
    if (target() != nullptr)
        target()->performSelector("hideViewWithSizeCursor");
}

}  // namespace trimora::controls
