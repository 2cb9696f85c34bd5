#include "cutengine/kernels/ViewRenderer.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <vector>

#include "cutengine/kernels/ViewLayer.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::AffineTransform;
using foundation::BitmapView;
using foundation::IntRect;
using foundation::MutableBitmapView;
using foundation::Pixel;

constexpr std::size_t kPixelBytes = 4;

std::size_t bytesIn(int pixels) {
    return static_cast<std::size_t>(pixels) * kPixelBytes;
}

/// Places the picture's rectangle on the screen; y turns round here, at the bitmap's edge.
ViewLayerSource placedRectangle(const ViewScene& scene, const AffineTransform& toView, int targetHeight) {
    assert(toView.b == 0 && toView.c == 0);
    const double width = toView.a * scene.scaleFactor * scene.pictureSize.width;
    const double height = toView.d * scene.scaleFactor * scene.pictureSize.height;
    ViewLayerSource placed;
    placed.across = {toView.tx * scene.scaleFactor, width};
    placed.down = {targetHeight - toView.ty * scene.scaleFactor - height, height};
    return placed;
}

ViewLayerSource pictureSource(const ViewScene& scene, int targetHeight) {
    if (scene.picture == nullptr || scene.picture->levelCount() == 0)
        return {};
    ViewLayerSource source = placedRectangle(scene, scene.pictureToView, targetHeight);
    source.picture = scene.picture;
    source.mask = scene.mask;
    return source;
}

ViewLayerSource backgroundSource(const ViewScene& scene, int targetHeight) {
    if (scene.picture == nullptr || scene.backgroundHidden)
        return {};
    ViewLayerSource source = placedRectangle(scene, scene.backgroundToView, targetHeight);
    const bool isPicture = scene.background != nullptr && scene.background->levelCount() > 0;
    source.picture = isPicture ? scene.background : nullptr;
    source.colour = scene.backgroundColour;
    return source;
}

/// The checkerboard made ready: opaque, and repeated across until copying it goes in long steps.
class Pattern {
 public:
    explicit Pattern(BitmapView tile) {
        const Pixel black{0, 0, 0, 255};
        if (tile.isEmpty())
            tile = {&black.blue, 1, 1, kPixelBytes, foundation::AlphaMode::opaque};
        height_ = tile.height;
        width_ = (kLongStep + tile.width - 1) / tile.width * tile.width;
        pixels_.resize(bytesIn(width_) * static_cast<std::size_t>(height_));
        for (int y = 0; y < height_; ++y) {
            std::uint8_t* const row = pixels_.data() + bytesIn(width_) * static_cast<std::size_t>(y);
            for (int x = 0; x < width_; x += tile.width)
                std::memcpy(row + bytesIn(x), tile.row(y), bytesIn(tile.width));
            for (int x = 0; x < width_; ++x)
                row[bytesIn(x) + 3] = 255;
        }
    }

    /// The pattern's `count` pixels from (x, y) of the view on.
    void copy(int x, int y, int count, std::uint8_t* to) const {
        const std::uint8_t* const row =
            pixels_.data() + bytesIn(width_) * static_cast<std::size_t>(y % height_);
        for (int column = x % width_; count > 0; column = 0) {
            const int here = std::min(count, width_ - column);
            std::memcpy(to, row + bytesIn(column), bytesIn(here));
            to += bytesIn(here);
            count -= here;
        }
    }

 private:
    static constexpr int kLongStep = 256;

    int width_;
    int height_;
    std::vector<std::uint8_t> pixels_;
};

/// Draws a part of the view, strip by strip. One for each band of rows.
class BandRenderer {
 public:
    BandRenderer(const ViewScene& scene, const Pattern& pattern, MutableBitmapView target)
        : pattern_(pattern),
          target_(target),
          background_(backgroundSource(scene, target.height)),
          picture_(pictureSource(scene, target.height)) {}

    void draw(const IntRect& area) {
        const int first = area.x / kViewBlockWidth * kViewBlockWidth;
        for (int x = first; x < area.right(); x += kViewStripWidth)
            drawStrip(intersected(area, {x, area.y, kViewStripWidth, area.height}), x);
    }

 private:
    /// Draws `area` in whole blocks from column `x` on, straight into the target where they fit it.
    void drawStrip(const IntRect& area, int x) {
        x_ = x;
        blocks_ = (area.right() - x + kViewBlockWidth - 1) / kViewBlockWidth;
        background_.moveToColumns(x, blocks_ * kViewBlockWidth);
        picture_.moveToColumns(x, blocks_ * kViewBlockWidth);
        const bool fits = area.x == x && area.width == blocks_ * kViewBlockWidth;
        for (int y = area.y; y < area.bottom(); ++y) {
            std::uint8_t* const pixels = target_.row(y) + bytesIn(area.x);
            row_ = fits ? pixels : line_.data();
            drawRow(y);
            if (!fits)
                std::memcpy(pixels, line_.data() + bytesIn(area.x - x), bytesIn(area.width));
        }
    }

    void drawRow(int y) {
        y_ = y;
        background_.moveToRow(y);
        picture_.moveToRow(y);
        forEachRun(picture_, 0, blocks_, [this](int begin, int end, Cover cover) {
            if (cover == Cover::whole && picture_.isOpaque())
                picture_.draw(begin, end, pixelsAt(begin));
            else if (cover == Cover::none)
                drawBelow(begin, end);
            else
                drawTogether(begin, end);
        });
    }

    /// Calls draw(begin, end, cover) for every longest run of blocks that a layer covers alike.
    template <typename Draw>
    static void forEachRun(const ViewLayer& layer, int begin, int end, const Draw& draw) {
        while (begin < end) {
            const Cover cover = layer.coverOf(begin);
            const int stop = layer.endOfRun(begin, end);
            draw(begin, stop, cover);
            begin = stop;
        }
    }

    /// What is below the picture where nothing of it shows.
    void drawBelow(int begin, int end) {
        forEachRun(background_, begin, end, [this](int from, int to, Cover cover) {
            if (cover == Cover::none) {
                drawPattern(from, to);
            } else if (cover == Cover::whole && background_.isOpaque()) {
                background_.draw(from, to, pixelsAt(from));
            } else {
                drawPattern(from, to);
                load(from, to);
                background_.drawOver(from, to, samples_.data());
                finish(from, to);
            }
        });
    }

    /// All layers, in 128ths of a level to the end.
    void drawTogether(int begin, int end) {
        drawPattern(begin, end);
        load(begin, end);
        forEachRun(background_, begin, end, [this, begin](int from, int to, Cover cover) {
            Sample* const samples = samples_.data() + kSamplesPerPixel * pixelsIn(from - begin);
            if (cover == Cover::whole && background_.isOpaque())
                background_.sample(from, to, samples);
            else if (cover != Cover::none)
                background_.drawOver(from, to, samples);
        });
        picture_.drawOver(begin, end, samples_.data());
        finish(begin, end);
    }

    void drawPattern(int begin, int end) {
        pattern_.copy(x_ + begin * kViewBlockWidth, y_, (end - begin) * kViewBlockWidth, pixelsAt(begin));
    }
    void load(int begin, int end) { widenSamples(pixelsAt(begin), pixelsIn(end - begin), samples_.data()); }
    void finish(int begin, int end) {
        narrowSamples(samples_.data(), pixelsIn(end - begin), pixelsAt(begin));
    }
    std::uint8_t* pixelsAt(int block) { return row_ + kPixelBytes * pixelsIn(block); }

    static std::size_t pixelsIn(int blocks) { return static_cast<std::size_t>(blocks) * kViewBlockWidth; }

    const Pattern& pattern_;
    MutableBitmapView target_;
    ViewLayer background_;
    ViewLayer picture_;
    int x_ = 0;
    int y_ = 0;
    int blocks_ = 0;
    alignas(64) std::array<Sample, kSamplesPerPixel * kViewStripWidth> samples_;
    std::uint8_t* row_ = nullptr;  ///< where the strip's present row is finished: in the target or line_
    alignas(64) std::array<std::uint8_t, kPixelBytes * kViewStripWidth> line_;
};

}  // namespace

void renderView(const ViewScene& scene, MutableBitmapView target, const IntRect& area,
                foundation::Workers& workers) {
    const IntRect inside = intersected(area, target.bounds());
    if (inside.isEmpty())
        return;
    const Pattern pattern(scene.tile);
    // A small repaint is done before another core has woken.
    constexpr std::int64_t kSmallestBand = 1 << 16;
    const std::int64_t pixels = std::int64_t{inside.width} * inside.height;
    const int most = std::min(2 * workers.width(), inside.height);
    const int bands = static_cast<int>(std::clamp<std::int64_t>(pixels / kSmallestBand, 1, most));
    workers.run(bands, [&](int band) {
        const auto top = [&](int index) {
            return inside.y + static_cast<int>(std::int64_t{index} * inside.height / bands);
        };
        BandRenderer(scene, pattern, target)
            .draw({inside.x, top(band), inside.width, top(band + 1) - top(band)});
    });
}

}  // namespace trimora::cutengine::kernels
