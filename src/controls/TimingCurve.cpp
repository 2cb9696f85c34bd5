#include "controls/TimingCurve.h"

namespace trimora::controls {
namespace {

/// One coordinate of the curve, whose ends are 0 and 1.
double coordinate(double c1, double c2, double s) {
    const double u = 1 - s;
    return 3 * u * u * s * c1 + 3 * u * s * s * c2 + s * s * s;
}

}  // namespace

double TimingCurve::at(double t) const {
    if (t <= 0)
        return 0;
    if (t >= 1)
        return 1;
    // Time grows along the curve, so halving finds its place for certain: 2^-52 is a double's grain.
    double low = 0;
    double high = 1;
    for (int i = 0; i < 52; ++i) {
        const double middle = (low + high) / 2;
        (coordinate(control1.x, control2.x, middle) < t ? low : high) = middle;
    }
    return coordinate(control1.y, control2.y, (low + high) / 2);
}

}  // namespace trimora::controls
