#include "codecs/RawPicture.h"

#include <atomic>
#include <cstring>
#include <utility>

#include "codecs/Bands.h"
#include "codecs/PixelRows.h"

namespace trimora::codecs {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::MutableBitmapView;
using foundation::Result;

constexpr int kRowsPerBand = 64;

void toSrgb(std::uint8_t* row, std::size_t count, ColourModel model, const ColourProfile* profile) {
    if (profile != nullptr) {
        profile->apply(row, row, count);
        if (holdsInks(model))
            makeOpaque(row, count);  // the fourth byte still holds black ink
        return;
    }
    if (model == ColourModel::invertedCmyk)
        invertBytes(row, count * 4);
    if (holdsInks(model))
        cmykToOpaque(row, count);
}

/// Finishes the colours of the rows that were read; returns whether all of them turn out opaque.
bool finishColours(RawPicture& raw, const ColourProfile* profile, foundation::Workers& workers) {
    const bool knownOpaque = raw.pixels.alphaMode() == AlphaMode::opaque || holdsInks(raw.model);
    if (knownOpaque && profile == nullptr && !holdsInks(raw.model))
        return true;
    std::atomic<bool> opaque = true;
    const MutableBitmapView view = raw.pixels.view();
    const auto count = static_cast<std::size_t>(view.width);
    inBands(workers, raw.rowsRead, kRowsPerBand, [&](int top, int bottom) {
        for (int y = top; y < bottom; ++y) {
            std::uint8_t* const row = view.row(y);
            toSrgb(row, count, raw.model, profile);
            if (knownOpaque || isOpaque(row, count))
                continue;
            premultiply(row, count);
            opaque = false;
        }
    });
    return opaque;
}

void clearRowsFrom(MutableBitmapView view, int first) {
    for (int y = first; y < view.height; ++y)
        std::memset(view.row(y), 0, static_cast<std::size_t>(view.width) * 4);
}

}  // namespace

Result<Bitmap> finished(RawPicture raw, const ColourProfile* profile, foundation::Workers& workers) {
    const bool opaque = finishColours(raw, profile, workers) && raw.rowsRead == raw.pixels.height();
    clearRowsFrom(raw.pixels.view(), raw.rowsRead);
    raw.pixels.setAlphaMode(opaque ? AlphaMode::opaque : AlphaMode::premultiplied);
    return upright(std::move(raw.pixels), raw.orientation, workers);
}

}  // namespace trimora::codecs
