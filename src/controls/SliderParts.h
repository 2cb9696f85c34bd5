#pragma once

#include <QRectF>
#include <QSizeF>

namespace trimora::controls {

/// Where the parts of a slider lie, in view points, y down, for a slider that lies with its minimum on
/// the left. `along` and `across` are its length and its thickness.
///
/// With kw the knob's extent along the slider and t the value's fraction of the range, the knob's left
/// edge goes from kw / 4 to kw / 4 + (along - 1.5 kw), rounded to whole points. The filled line begins
/// under the knob, as a stub of kw / 2 at the minimum; the unfilled one takes over kw / 2 further on.
struct SliderParts {
    QRectF filled;
    QRectF unfilled;
    QRectF knob;
};

[[nodiscard]] SliderParts sliderParts(double along, double across, QSizeF knob, double fraction);

/// The fraction at which the knob's centre lies at a place along the slider; not clamped.
[[nodiscard]] double fractionAt(double place, double along, double knobAlong);

/// Where the knob's centre lies, before rounding: the inverse of fractionAt().
[[nodiscard]] double knobCentre(double fraction, double along, double knobAlong);

}  // namespace trimora::controls
