#include "cutengine/kernels/ResultComposer.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <optional>
#include <vector>

#include "cutengine/kernels/ComposedPixel.h"
#include "cutengine/kernels/PixelRows.h"
#include "cutengine/kernels/Stretch.h"
#include "cutengine/kernels/StretchedMask.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::AlphaMode;
using foundation::BitmapView;
using foundation::MutableBitmapView;
using foundation::Pixel;

constexpr std::size_t kPixelBytes = 4;

Pixel pixelAt(const std::uint8_t* row, int x) {
    Pixel pixel;
    std::memcpy(&pixel, row + static_cast<std::size_t>(x) * kPixelBytes, kPixelBytes);
    return pixel;
}

void setPixelAt(std::uint8_t* row, int x, Pixel pixel) {
    std::memcpy(row + static_cast<std::size_t>(x) * kPixelBytes, &pixel, kPixelBytes);
}

std::size_t offset(Span span) {
    return static_cast<std::size_t>(span.begin) * kPixelBytes;
}

std::size_t bytes(Span span) {
    return static_cast<std::size_t>(span.end - span.begin) * kPixelBytes;
}

/// The background at the picture's size, row by row. One a band of rows.
class BackgroundRows {
 public:
    /// `firstRow` is the first that is composed.
    BackgroundRows(const Background& background, int width, int height, int firstRow)
        : background_(background),
          firstRow_(background.kind == Background::Kind::rows ? firstRow : 0),
          fits_(background.kind == Background::Kind::rows ||
                (background.kind == Background::Kind::picture && background.picture.width == width &&
                 background.picture.height == height)) {
        if (fits_)
            return;
        line_.resize(static_cast<std::size_t>(width) * kPixelBytes);
        if (background.kind == Background::Kind::picture) {
            across_ = Stretch(background.picture.width, width);
            down_ = Stretch(background.picture.height, height);
            return;
        }
        const Pixel fill = background.kind == Background::Kind::colour ? background.colour : Pixel{};
        for (int x = 0; x < width; ++x)
            setPixelAt(line_.data(), x, fill);
    }

    [[nodiscard]] const std::uint8_t* row(int y) {
        if (fits_)
            return background_.picture.row(y - firstRow_);
        if (background_.kind == Background::Kind::picture)
            stretchRow(y);
        return line_.data();
    }

    [[nodiscard]] bool isOpaque() const {
        switch (background_.kind) {
            case Background::Kind::hidden:
                return false;
            case Background::Kind::colour:
                return background_.colour.alpha == 255;
            case Background::Kind::picture:
            case Background::Kind::rows:
                return background_.picture.alphaMode == AlphaMode::opaque;
        }
        return false;
    }

 private:
    void stretchRow(int y) {
        const Stretch::Place down = down_.at(y);
        const std::uint8_t* const top = background_.picture.row(down.index);
        const std::uint8_t* const bottom = background_.picture.row(down_.next(down.index));
        const auto width = static_cast<int>(line_.size() / kPixelBytes);
        for (int x = 0; x < width; ++x) {
            const Stretch::Place across = across_.at(x);
            const std::size_t left = static_cast<std::size_t>(across.index) * kPixelBytes;
            const std::size_t right = static_cast<std::size_t>(across_.next(across.index)) * kPixelBytes;
            for (std::size_t i = 0; i < kPixelBytes; ++i) {
                const std::uint32_t above =
                    top[left + i] * (Stretch::kOne - across.weight) + top[right + i] * across.weight;
                const std::uint32_t below =
                    bottom[left + i] * (Stretch::kOne - across.weight) + bottom[right + i] * across.weight;
                const std::uint32_t exact = above * (Stretch::kOne - down.weight) + below * down.weight;
                line_[static_cast<std::size_t>(x) * kPixelBytes + i] =
                    static_cast<std::uint8_t>((exact + (1U << 23)) >> 24);
            }
        }
    }

    const Background& background_;
    int firstRow_;
    bool fits_;  ///< its rows are taken as they are
    Stretch across_;
    Stretch down_;
    std::vector<std::uint8_t> line_;
};

/// What spans of a result are composed of.
struct SpanKinds {
    bool pictureOpaque;
    bool backgroundHidden;
    bool backgroundOpaque;
    bool pastCaches;  ///< the result is too large to stay in them
};

/// Composes spans of one row at a time.
class SpanComposer {
 public:
    explicit SpanComposer(const SpanKinds& kinds)
        : pictureOpaque_(kinds.pictureOpaque),
          backgroundHidden_(kinds.backgroundHidden),
          backgroundOpaque_(kinds.backgroundOpaque),
          streams_(kinds.pastCaches) {}

    void moveTo(const std::uint8_t* picture, const std::uint8_t* background, std::uint8_t* result) {
        picture_ = picture;
        background_ = background;
        result_ = result;
    }

    void shown(Span span) const {
        if (pictureOpaque_)
            copy(picture_, span);
        else
            each(span, [this](int x) {
                const Pixel p = pixelAt(picture_, x);
                return p.alpha == 255 ? p : composedPixel(p, kFullCoverage, pixelAt(background_, x));
            });
    }

    void cutAway(Span span) const {
        if (backgroundHidden_)
            clear(span);
        else if (backgroundOpaque_)
            copyBackground(span);
        else
            each(span, [this](int x) { return composedPixel({}, 0, pixelAt(background_, x)); });
    }

    void mixed(Span span, const StretchedMask& mask) const {
        if (pictureOpaque_ && backgroundHidden_) {
            each(span, [&](int x) { return coveredPixel(pixelAt(picture_, x), mask.coverageAt(x)); });
        } else if (pictureOpaque_ && backgroundOpaque_) {
            each(span, [&](int x) {
                const Pixel p = pixelAt(picture_, x);
                const Pixel b = pixelAt(background_, x);
                const std::uint32_t c = mask.coverageAt(x);
                return Pixel{mixedComponent(p.blue, c, b.blue), mixedComponent(p.green, c, b.green),
                             mixedComponent(p.red, c, b.red), 255};
            });
        } else {
            each(span, [&](int x) {
                return composedPixel(pixelAt(picture_, x), mask.coverageAt(x), pixelAt(background_, x));
            });
        }
    }

 private:
    /// Where the background lies in the result's own memory it is there already.
    void copyBackground(Span span) const {
        if (background_ != result_)
            copy(background_, span);
    }

    void copy(const std::uint8_t* from, Span span) const {
        if (streams_)
            streamPixels(from + offset(span), result_ + offset(span), span.end - span.begin);
        else
            std::memcpy(result_ + offset(span), from + offset(span), bytes(span));
    }

    void clear(Span span) const {
        if (streams_)
            streamClear(result_ + offset(span), span.end - span.begin);
        else
            std::memset(result_ + offset(span), 0, bytes(span));
    }

    template <typename Compose>
    void each(Span span, const Compose& compose) const {
        for (int x = span.begin; x < span.end; ++x)
            setPixelAt(result_, x, compose(x));
    }

    bool pictureOpaque_;
    bool backgroundHidden_;
    bool backgroundOpaque_;
    bool streams_;
    const std::uint8_t* picture_ = nullptr;
    const std::uint8_t* background_ = nullptr;
    std::uint8_t* result_ = nullptr;
};

void composeRow(const SpanComposer& composer, const StretchedMask& mask, int width) {
    int x = 0;
    for (const StretchedMask::Run& run : mask.runs()) {
        composer.mixed({x, run.pixels.begin}, mask);
        if (run.value == 255)
            composer.shown(run.pixels);
        else
            composer.cutAway(run.pixels);
        x = run.pixels.end;
    }
    composer.mixed({x, width}, mask);
}

}  // namespace

void composeResult(BitmapView picture, const MaskSnapshot* mask, const Background& background,
                   MutableBitmapView result, foundation::Workers& workers) {
    assert(picture.height == result.height);
    composeRows(picture, mask, background, 0, result, workers);
}

void composeRows(BitmapView picture, const MaskSnapshot* mask, const Background& background, int firstRow,
                 MutableBitmapView rows, foundation::Workers& workers) {
    assert(picture.width == rows.width && firstRow >= 0 && firstRow + rows.height <= picture.height);
    const MaskSnapshot::Level* const level = mask != nullptr ? &mask->levels().front() : nullptr;
    const Stretch across = level != nullptr ? Stretch(level->width, picture.width) : Stretch();
    const Stretch down = level != nullptr ? Stretch(level->height, picture.height) : Stretch();

    // What is written there by whole lines of the cache need not be read first.
    constexpr std::int64_t kPastCaches = 1 << 23;
    const std::int64_t resultBytes = std::int64_t{rows.height} * rows.width * std::int64_t{kPixelBytes};

    constexpr int kSmallestBand = 64;
    const int bands = std::clamp(rows.height / kSmallestBand, 1, 4 * workers.width());
    workers.run(bands, [&](int band) {
        const auto top = [&](int index) {
            return static_cast<int>(std::int64_t{index} * rows.height / bands);
        };
        BackgroundRows backgroundRows(background, picture.width, picture.height, firstRow);
        SpanComposer composer({picture.alphaMode == AlphaMode::opaque,
                               background.kind == Background::Kind::hidden, backgroundRows.isOpaque(),
                               resultBytes >= kPastCaches});
        std::optional<StretchedMask> stretched;
        if (level != nullptr)
            stretched.emplace(*level, across, down, picture.width);
        for (int i = top(band); i < top(band + 1); ++i) {
            const int y = firstRow + i;
            composer.moveTo(picture.row(y), backgroundRows.row(y), rows.row(i));
            if (stretched) {
                stretched->moveTo(y);
                composeRow(composer, *stretched, picture.width);
            } else {
                composer.shown({0, picture.width});
            }
        }
        endStreaming();
    });
}

}  // namespace trimora::cutengine::kernels
