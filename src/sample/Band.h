#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "foundation/Geometry.h"

namespace trimora::sample {

/// The scene is laid out on a canvas of this many units, y-down from the top left corner; a picture
/// of another size shows the same scene scaled.
constexpr double kCanvasWidth = 4000;
constexpr double kCanvasHeight = 3000;

/// Linear light, 1 being what the picture shows as white.
struct Colour {
    float red = 0;
    float green = 0;
    float blue = 0;

    friend Colour operator+(Colour a, Colour b) {
        return {a.red + b.red, a.green + b.green, a.blue + b.blue};
    }
    friend Colour operator*(Colour a, Colour b) {
        return {a.red * b.red, a.green * b.green, a.blue * b.blue};
    }
    friend Colour operator*(Colour a, float k) { return {a.red * k, a.green * k, a.blue * k}; }
};

[[nodiscard]] inline Colour mixed(Colour from, Colour to, float t) {
    return from * (1 - t) + to * t;
}

/// 0 below `low`, 1 above `high`, smooth between. `low` above `high` turns it round.
[[nodiscard]] inline float smoothStep(double low, double high, double value) {
    const double t = std::clamp((value - low) / (high - low), 0.0, 1.0);
    return static_cast<float>(t * t * (3 - 2 * t));
}

/// What one pixel of the scene holds while it is painted.
struct ScenePixel {
    Colour colour;
    float subject = 0;  ///< how much of the pixel the subject covers, 0..1

    void cover(Colour paint, float alpha) { colour = mixed(colour, paint, alpha); }
    void coverWithSubject(Colour paint, float alpha) {
        cover(paint, alpha);
        subject += (1 - subject) * alpha;
    }
};

/// A part of the canvas.
struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    [[nodiscard]] static Box around(foundation::Point centre, double halfWidth, double halfHeight) {
        return {centre.x - halfWidth, centre.y - halfHeight, centre.x + halfWidth, centre.y + halfHeight};
    }
};

/// A few rows of the picture, painted by one thread. What a pixel becomes depends on its own place
/// alone, so any division into bands gives the same picture.
class Band {
 public:
    /// Rows `top` up to but not including `bottom` of a picture `width` pixels wide.
    Band(int width, int top, int bottom)
        : width_(width),
          top_(top),
          bottom_(bottom),
          scale_(width / kCanvasWidth),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(bottom - top)) {}

    [[nodiscard]] const ScenePixel* row(int y) const {
        return &pixels_[static_cast<std::size_t>(y - top_) * static_cast<std::size_t>(width_)];
    }

    /// The side of a pixel in canvas units: the width over which a hard edge is softened.
    [[nodiscard]] double pixelSide() const { return 1 / scale_; }

    /// Whether any row of the band lies between these heights on the canvas.
    [[nodiscard]] bool reaches(double top, double bottom) const {
        return bottom * scale_ >= top_ && top * scale_ <= bottom_;
    }

    /// Calls paint(pixel, centre of the pixel on the canvas) for each pixel of the band inside `box`.
    template <typename Paint>
    void paint(const Box& box, Paint paint) {
        const int left = std::max(0, static_cast<int>(box.left * scale_));
        const int right = std::min(width_, static_cast<int>(std::ceil(box.right * scale_)));
        const int top = std::max(top_, static_cast<int>(box.top * scale_));
        const int bottom = std::min(bottom_, static_cast<int>(std::ceil(box.bottom * scale_)));
        for (int y = top; y < bottom; ++y) {
            ScenePixel* const pixels =
                &pixels_[static_cast<std::size_t>(y - top_) * static_cast<std::size_t>(width_)];
            for (int x = left; x < right; ++x)
                paint(pixels[x], foundation::Point{(x + 0.5) / scale_, (y + 0.5) / scale_});
        }
    }

 private:
    int width_;
    int top_;
    int bottom_;
    double scale_;
    std::vector<ScenePixel> pixels_;
};

/// One thing in the scene. Made once, then painted into many bands from several threads.
class SceneElement {
 public:
    virtual ~SceneElement() = default;
    SceneElement(const SceneElement&) = delete;
    SceneElement& operator=(const SceneElement&) = delete;

    virtual void paint(Band& band) const = 0;

 protected:
    SceneElement() = default;
};

}  // namespace trimora::sample
