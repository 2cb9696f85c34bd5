#pragma once

#include "codecs/JpegReading.h"
#include "cutengine/kernels/MipBands.h"
#include "foundation/Bitmap.h"

namespace trimora::codecs {

/// Where the rows of a JPEG file go: to their places in the picture and, where it is to have any, into its
/// smaller copies. Several readings may read into one target at once, each other rows and with a room of its
/// own.
class JpegTarget {
 public:
    /// Where rows lie while they are small enough a lot for the cache.
    class Room {
     public:
        /// For a row of blocks of the reading's file. Throws std::bad_alloc.
        explicit Room(const JpegReading& header);

        [[nodiscard]] foundation::MutableBitmapView view();

     private:
        // From its second pixel on: rows that are aligned the library writes past the caches, from where they
        // would have to be fetched again.
        foundation::Bitmap rows_;
    };

    /// `picture` has the size of the file's; `copies` are those of it, or null where there are to be none.
    JpegTarget(foundation::MutableBitmapView picture, cutengine::kernels::MipBands* copies)
        : picture_(picture), copies_(copies) {}

    [[nodiscard]] int height() const { return picture_.height; }

    /// Reads on as JpegReading::readRows() does, up to row `end` of the reading, whose first row is row `top`
    /// of the picture. With the reading's next row and, but for the picture's end, `end` at multiples of a
    /// row of blocks.
    [[nodiscard]] bool read(JpegReading& reading, int top, int end, Room& room) const;

 private:
    [[nodiscard]] bool readBand(JpegReading& reading, int top, int end,
                                foundation::MutableBitmapView band) const;

    foundation::MutableBitmapView picture_;
    cutengine::kernels::MipBands* copies_;
};

}  // namespace trimora::codecs
