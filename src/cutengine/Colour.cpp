#include "cutengine/Colour.h"

#include <algorithm>
#include <cmath>

namespace trimora::cutengine {

foundation::Pixel premultipliedPixel(const Colour& colour) {
    const double alpha = std::clamp(colour.alpha, 0.0, 1.0);
    const auto component = [alpha](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * alpha * 255));
    };
    return {component(colour.blue), component(colour.green), component(colour.red), component(1)};
}

}  // namespace trimora::cutengine
