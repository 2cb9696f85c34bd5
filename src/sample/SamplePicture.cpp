#include "sample/SamplePicture.h"

#include <array>
#include <utility>

#include "sample/Backdrop.h"
#include "sample/Band.h"
#include "sample/Face.h"
#include "sample/Noise.h"
#include "sample/Plumage.h"
#include "sample/Table.h"
#include "sample/Vase.h"

namespace trimora::sample {
namespace {

using foundation::Bitmap;
using foundation::Result;

constexpr int kBandRows = 48;
constexpr float kGrain = 0.006F;

/// Everything in the scene, the farthest first.
struct Scene {
    Backdrop backdrop;
    Table table;
    Vase vase;
    Plumage plumage;
    Face face;

    void paint(Band& band) const {
        const std::array<const SceneElement*, 5> elements{&backdrop, &table, &vase, &plumage, &face};
        for (const SceneElement* element : elements)
            element->paint(band);
    }
};

/// Bright light runs softly into white and deep shadow into black, as on film. (A rational fit to a film
/// curve that is widely used in rendering.)
float developed(float light) {
    const float x = 0.92F * std::max(0.0F, light);
    return x * (2.51F * x + 0.03F) / (x * (2.43F * x + 0.59F) + 0.14F);
}

std::uint8_t encoded(float light, float grain) {
    const float linear = std::clamp(developed(light), 0.0F, 1.0F);
    const float srgb = linear <= 0.0031308F ? 12.92F * linear : 1.055F * std::pow(linear, 1 / 2.4F) - 0.055F;
    return static_cast<std::uint8_t>(std::clamp(srgb + grain, 0.0F, 1.0F) * 255 + 0.5F);
}

float vignetteAt(double x, double y) {
    return 1 - 0.42F * smoothStep(0.55, 1.35, std::hypot(2 * x - 1, 2 * y - 1));
}

void develop(const Band& band, int top, int bottom, SamplePicture& made) {
    const int width = made.picture.width();
    for (int y = top; y < bottom; ++y) {
        const ScenePixel* const row = band.row(y);
        for (int x = 0; x < width; ++x) {
            const float fade = vignetteAt((x + 0.5) / width, (y + 0.5) / made.picture.height());
            const Colour light = row[x].colour * fade;
            const float grain = kGrain * noise(x * 0.71, y * 0.71, 97);
            made.picture.setPixel(
                x, y,
                {encoded(light.blue, grain), encoded(light.green, grain), encoded(light.red, grain), 255});
            const auto alpha = static_cast<std::uint8_t>(row[x].subject * 255 + 0.5F);
            made.subject.setPixel(x, y, {0, 0, 0, alpha});
        }
    }
}

}  // namespace

Result<SamplePicture> drawSamplePicture(int width, foundation::Workers& workers) {
    if (width < 4)
        return foundation::Error{"a sample picture is at least 4 pixels wide"};
    const int height = width / 4 * 3;
    Result<Bitmap> picture = Bitmap::create(width, height, foundation::AlphaMode::opaque);
    if (!picture)
        return picture.error();
    Result<Bitmap> subject = Bitmap::create(width, height);
    if (!subject)
        return subject.error();

    SamplePicture made{std::move(*picture), std::move(*subject)};
    const Scene scene;
    workers.run((height + kBandRows - 1) / kBandRows, [&](int i) {
        const int top = i * kBandRows;
        const int bottom = std::min(height, top + kBandRows);
        Band band(width, top, bottom);
        scene.paint(band);
        develop(band, top, bottom, made);
    });
    return made;
}

}  // namespace trimora::sample
