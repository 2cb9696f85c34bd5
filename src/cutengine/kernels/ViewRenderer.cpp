#include "cutengine/kernels/ViewRenderer.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>

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

/// Draws a part of the view, strip by strip. One for each band of rows.
class BandRenderer {
 public:
    BandRenderer(const ViewScene& scene, MutableBitmapView target)
        : tile_(scene.tile),
          target_(target),
          background_(backgroundSource(scene, target.height)),
          picture_(pictureSource(scene, target.height)) {}

    void draw(const IntRect& area) {
        const int first = area.x / kViewBlockWidth * kViewBlockWidth;
        for (int x = first; x < area.right(); x += kViewStripWidth) {
            const int wanted = std::min(area.right() - x, kViewStripWidth);
            blocks_ = (wanted + kViewBlockWidth - 1) / kViewBlockWidth;
            x_ = x;
            background_.moveToColumns(x, blocks_ * kViewBlockWidth);
            picture_.moveToColumns(x, blocks_ * kViewBlockWidth);
            const int left = std::max(x, area.x);
            const std::size_t bytes = bytesIn(x + wanted - left);
            for (int y = area.y; y < area.bottom(); ++y) {
                drawRow(y);
                std::memcpy(target_.row(y) + bytesIn(left), line_.data() + bytesIn(left - x), bytes);
            }
        }
    }

 private:
    void drawRow(int y) {
        y_ = y;
        background_.moveToRow(y);
        picture_.moveToRow(y);
        forEachRun(picture_, 0, blocks_, [this](int begin, int end, Cover cover) {
            if (cover == Cover::whole && picture_.isOpaque())
                drawAlone(picture_, begin, end);
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
            int stop = begin + 1;
            while (stop < end && layer.coverOf(stop) == cover)
                ++stop;
            draw(begin, stop, cover);
            begin = stop;
        }
    }

    /// The layer where it hides everything below.
    void drawAlone(ViewLayer& layer, int begin, int end) {
        const std::uint8_t* const pixels = layer.exactPixels(begin);
        if (pixels != nullptr) {
            std::memcpy(lineAt(begin), pixels, bytesIn((end - begin) * kViewBlockWidth));
            return;
        }
        layer.sample(begin, end, samples_.data());
        finish(begin, end);
    }

    /// What is below the picture where nothing of it shows.
    void drawBelow(int begin, int end) {
        forEachRun(background_, begin, end, [this](int from, int to, Cover cover) {
            if (cover == Cover::none) {
                fillWithTile(from, to);
            } else if (cover == Cover::whole && background_.isOpaque()) {
                drawAlone(background_, from, to);
            } else {
                fillWithTile(from, to);
                load(from, to);
                background_.drawOver(from, to, samples_.data());
                finish(from, to);
            }
        });
    }

    /// All layers, in 128ths of a level to the end.
    void drawTogether(int begin, int end) {
        fillWithTile(begin, end);
        load(begin, end);
        forEachRun(background_, begin, end, [this, begin](int from, int to, Cover cover) {
            Sample* const samples = samples_.data() + bytesIn((from - begin) * kViewBlockWidth);
            if (cover == Cover::whole && background_.isOpaque())
                background_.sample(from, to, samples);
            else if (cover != Cover::none)
                background_.drawOver(from, to, samples);
        });
        picture_.drawOver(begin, end, samples_.data());
        finish(begin, end);
    }

    void fillWithTile(int begin, int end) {
        const int count = (end - begin) * kViewBlockWidth;
        if (tile_.isEmpty()) {
            fill(lineAt(begin), count, {0, 0, 0, 255});
            return;
        }
        const std::uint8_t* const row = tile_.row(y_ % tile_.height);
        int inTile = (x_ + begin * kViewBlockWidth) % tile_.width;
        for (int done = 0; done < count;) {
            const int here = std::min(count - done, tile_.width - inTile);
            std::memcpy(lineAt(begin) + bytesIn(done), row + bytesIn(inTile), bytesIn(here));
            done += here;
            inTile = 0;
        }
        makeOpaque(lineAt(begin), count);
    }

    static void fill(std::uint8_t* pixels, int count, Pixel value) {
        for (int i = 0; i < count; ++i)
            std::memcpy(pixels + bytesIn(i), &value, kPixelBytes);
    }

    /// A tile with alpha lies on black.
    static void makeOpaque(std::uint8_t* pixels, int count) {
        for (int i = 0; i < count; ++i)
            pixels[bytesIn(i) + 3] = 255;
    }

    void load(int begin, int end) {
        widenSamples(lineAt(begin), bytesIn((end - begin) * kViewBlockWidth), samples_.data());
    }
    void finish(int begin, int end) {
        narrowSamples(samples_.data(), bytesIn((end - begin) * kViewBlockWidth), lineAt(begin));
    }
    std::uint8_t* lineAt(int block) { return line_.data() + bytesIn(block * kViewBlockWidth); }

    BitmapView tile_;
    MutableBitmapView target_;
    ViewLayer background_;
    ViewLayer picture_;
    int x_ = 0;
    int y_ = 0;
    int blocks_ = 0;
    alignas(64) std::array<Sample, 4 * kViewStripWidth> samples_;
    alignas(64) std::array<std::uint8_t, 4 * kViewStripWidth> line_;  ///< the finished row of the strip
};

}  // namespace

void renderView(const ViewScene& scene, MutableBitmapView target, const IntRect& area,
                foundation::Workers& workers) {
    const IntRect inside = intersected(area, target.bounds());
    if (inside.isEmpty())
        return;
    // A small repaint is done before another core has woken.
    constexpr std::int64_t kSmallestBand = 1 << 16;
    const std::int64_t pixels = std::int64_t{inside.width} * inside.height;
    const int most = std::min(2 * workers.width(), inside.height);
    const int bands = static_cast<int>(std::clamp<std::int64_t>(pixels / kSmallestBand, 1, most));
    workers.run(bands, [&](int band) {
        const auto top = [&](int index) {
            return inside.y + static_cast<int>(std::int64_t{index} * inside.height / bands);
        };
        BandRenderer(scene, target).draw({inside.x, top(band), inside.width, top(band + 1) - top(band)});
    });
}

}  // namespace trimora::cutengine::kernels
