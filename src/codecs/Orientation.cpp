#include "codecs/Orientation.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "codecs/Bands.h"

namespace trimora::codecs {
namespace {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::MutableBitmapView;
using foundation::Result;

constexpr std::uint32_t kOrientationTag = 0x0112;
constexpr std::size_t kDirectoryEntrySize = 12;
constexpr int kBlockSide = 64;  // 16 KiB of pixels: what is read column by column stays in the first cache

/// Pixel (x, y) of the upright picture is the stored one at (x, y), exchanged first where `exchanged`,
/// then counted from the other end where mirrored.
struct Turn {
    bool exchanged;
    bool mirroredX;
    bool mirroredY;
};

Turn turnOf(Orientation orientation) {
    switch (orientation) {
        case Orientation::topLeft:
            break;
        case Orientation::topRight:
            return {false, true, false};
        case Orientation::bottomRight:
            return {false, true, true};
        case Orientation::bottomLeft:
            return {false, false, true};
        case Orientation::leftTop:
            return {true, false, false};
        case Orientation::rightTop:
            return {true, false, true};
        case Orientation::rightBottom:
            return {true, true, true};
        case Orientation::leftBottom:
            return {true, true, false};
    }
    return {false, false, false};
}

/// Copies columns left..right of one upright row, following the stored pixels by a fixed step in bytes.
void copyRun(const std::uint8_t* from, std::ptrdiff_t step, std::uint8_t* to, int count) {
    for (int i = 0; i < count; ++i, from += step, to += 4)
        std::memcpy(to, from, 4);
}

void turnBand(BitmapView stored, Turn turn, MutableBitmapView made, int top, int bottom) {
    const auto rowStep = static_cast<std::ptrdiff_t>(stored.stride);
    const std::ptrdiff_t alongX = turn.mirroredX ? -4 : 4;
    const std::ptrdiff_t alongY = turn.mirroredY ? -rowStep : rowStep;
    const std::uint8_t* const origin =
        stored.row(turn.mirroredY ? stored.height - 1 : 0) + (turn.mirroredX ? (stored.width - 1) * 4 : 0);
    const std::ptrdiff_t perColumn = turn.exchanged ? alongY : alongX;
    const std::ptrdiff_t perRow = turn.exchanged ? alongX : alongY;
    for (int left = 0; left < made.width; left += kBlockSide) {
        const int count = std::min(kBlockSide, made.width - left);
        for (int y = top; y < bottom; ++y)
            copyRun(origin + y * perRow + left * perColumn, perColumn, made.row(y) + left * 4, count);
    }
}

}  // namespace

Orientation orientationOf(std::uint32_t number) {
    return number >= 1 && number <= 8 ? static_cast<Orientation>(number) : Orientation::topLeft;
}

Orientation exifOrientation(Bytes exif) {
    const bool little = startsWith(exif, "II");
    if (!little && !startsWith(exif, "MM"))
        return Orientation::topLeft;
    const ByteOrder order = little ? ByteOrder::little : ByteOrder::big;
    const std::size_t directory = u32(exif, 4, order);
    const std::uint32_t entries = u16(exif, directory, order);
    for (std::uint32_t i = 0; i < entries; ++i) {
        const Bytes entry = part(exif, directory + 2 + i * kDirectoryEntrySize, kDirectoryEntrySize);
        if (entry.size() < kDirectoryEntrySize)
            break;
        if (u16(entry, 0, order) == kOrientationTag)
            return orientationOf(u16(entry, 8, order));
    }
    return Orientation::topLeft;
}

Result<Bitmap> upright(Bitmap stored, Orientation orientation, foundation::Workers& workers) {
    if (orientation == Orientation::topLeft)
        return stored;
    const Turn turn = turnOf(orientation);
    const int width = turn.exchanged ? stored.height() : stored.width();
    const int height = turn.exchanged ? stored.width() : stored.height();
    Result<Bitmap> made = Bitmap::create(width, height, stored.alphaMode());
    if (!made)
        return made;
    const BitmapView from = std::as_const(stored).view();
    const MutableBitmapView to = made->view();
    inBands(workers, height, kBlockSide, [&](int top, int bottom) { turnBand(from, turn, to, top, bottom); });
    return made;
}

}  // namespace trimora::codecs
