#include "controls/SliderParts.h"

#include <cmath>

#include "controls/Metrics.h"

namespace trimora::controls {
namespace {

/// The way that the knob can go.
double usableLength(double along, double knobAlong) {
    return along - 1.5 * knobAlong;
}

}  // namespace

SliderParts sliderParts(double along, double across, QSizeF knob, double fraction) {
    const double kw = knob.width();
    const double kh = knob.height();
    const double length = usableLength(along, kw);
    const auto filled = static_cast<double>(static_cast<float>(fraction * length));
    const double middle = across * 0.5 - metrics::kTrackWidth / 2;
    const auto y = static_cast<double>(std::round(static_cast<float>(middle)));
    SliderParts parts;
    parts.filled = QRectF(std::round(kw * 0.5), y, kw * 0.5 + filled, metrics::kTrackWidth);
    parts.unfilled = QRectF(kw + filled, y, length - filled, metrics::kTrackWidth);
    parts.knob = QRectF(std::round(kw * 0.25 + fraction * length), std::round(across * 0.5 - kh * 0.5),
                        std::round(kw), std::round(kh));
    return parts;
}

double fractionAt(double place, double along, double knobAlong) {
    const double length = usableLength(along, knobAlong);
    return length > 0 ? (place - 0.75 * knobAlong) / length : 0;
}

double knobCentre(double fraction, double along, double knobAlong) {
    return 0.75 * knobAlong + fraction * usableLength(along, knobAlong);
}

}  // namespace trimora::controls
