#include "codecs/JpegTarget.h"

#include <algorithm>
#include <new>
#include <utility>

namespace trimora::codecs {

using foundation::Bitmap;
using foundation::MutableBitmapView;
using foundation::Result;

JpegTarget::Room::Room(const JpegReading& header) {
    Result<Bitmap> made = Bitmap::create(static_cast<int>(header.width()) + 1, header.blockRows());
    if (!made)
        throw std::bad_alloc();
    rows_ = std::move(*made);
}

MutableBitmapView JpegTarget::Room::view() {
    return subview(rows_.view(), {1, 0, rows_.width() - 1, rows_.height()});
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
