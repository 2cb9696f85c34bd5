#include "codecs/JpegTarget.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace trimora::codecs {

using foundation::MutableBitmapView;

namespace {

// The library writes rows that are aligned past the caches, from where they would have to be fetched again.
constexpr std::size_t kBesideAlignment = 4;

}  // namespace

JpegTarget::Room::Room(const JpegReading& header) {
    constexpr std::size_t kAlignment = foundation::PixelBuffer::kAlignment;
    const std::size_t row = 4 * static_cast<std::size_t>(header.width());
    view_.stride = (row + kAlignment - 1) / kAlignment * kAlignment;
    view_.width = static_cast<int>(header.width());
    view_.height = header.blockRows();
    const std::size_t size = view_.stride * static_cast<std::size_t>(view_.height);
    memory_.resize(size + kAlignment + kBesideAlignment);
    void* start = memory_.data();
    std::size_t left = memory_.size();
    view_.pixels = static_cast<std::uint8_t*>(std::align(kAlignment, size, start, left)) + kBesideAlignment;
}

MutableBitmapView JpegTarget::Room::view() {
    return view_;
}

bool JpegTarget::read(JpegReading& reading, int top, int end, Room& room) const {
    if (copies_ == nullptr)
        return reading.readRows(picture_, -top, end);
    const MutableBitmapView band = room.view();
    while (reading.rowsRead() < end) {
        const int bandEnd = std::min(reading.rowsRead() + band.height, end);
        if (!readBand(reading, top, bandEnd, band))
            return false;
        if (reading.rowsRead() < bandEnd)
            return true;
    }
    return true;
}

bool JpegTarget::readBand(JpegReading& reading, int top, int end, MutableBitmapView band) const {
    const int first = reading.rowsRead();
    const bool isSound = reading.readRows(band, first, end);
    const MutableBitmapView rows = subview(band, {0, 0, band.width, reading.rowsRead() - first});
    if (reading.rowsRead() == end)
        copies_->take(rows, top + first, picture_);
    else  // there will be no copies, but what was read is shown
        copyPixels(rows, subview(picture_, {0, top + first, rows.width, rows.height}));
    return isSound;
}

}  // namespace trimora::codecs
