#include "cutengine/kernels/BrushStamp.h"

#include <algorithm>
#include <cmath>

namespace trimora::cutengine::kernels {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Result;

BrushStamp::BrushStamp(float side, float hardness)
    : side_(side), hardness_(std::clamp(hardness, 0.0F, 1.0F)) {}

double BrushStamp::alphaAt(double distance) const {
    if (distance <= hardness_)
        return 1;
    return std::max(0.0, (1 - distance) / (1 - static_cast<double>(hardness_)));
}

Result<Bitmap> BrushStamp::image() const {
    const int pixels = static_cast<int>(side_);
    Result<Bitmap> made = Bitmap::create(pixels, pixels);
    if (!made)
        return made;
    const double radius = static_cast<double>(side_) * 0.5;
    for (int y = 0; y < pixels; ++y) {
        // The circle's centre is measured from the bottom left corner, the rows from the top.
        const double dy = pixels - y - 0.5 - radius;
        for (int x = 0; x < pixels; ++x) {
            const double alpha = alphaAt(std::hypot(x + 0.5 - radius, dy) / radius);
            made->setPixel(x, y, Pixel{0, 0, 0, static_cast<std::uint8_t>(std::lround(alpha * 255))});
        }
    }
    return made;
}

}  // namespace trimora::cutengine::kernels
