#pragma once

#include <functional>

#include "codecs/Bytes.h"
#include "codecs/JpegReading.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::codecs {

/// Told that rows `first` to `end`, not included, of a picture have been read. `first` and, but for the
/// picture's end, `end` are multiples of 8.
using RowsRead = std::function<void(int first, int end)>;

/// Reads the picture of a JPEG file into `to`, which has its size, with several readings at once that each
/// read some of its rows: the same bytes as one reading gives. The data of a row can only be found by going
/// through all before it, a quarter to half of the work of reading it, so that two cores take three fifths
/// of the time, and four take two.
///
/// `rowsRead` is told of rows as they are read, on any of several threads at once.
///
/// False where that cannot be done or anything at all was found wrong: then the picture is to be read anew,
/// by one reading, which alone can tell how much of it is good. `header` has read the file's header.
[[nodiscard]] bool readJpegInParts(JpegReading& header, Bytes file, foundation::MutableBitmapView to,
                                   const RowsRead& rowsRead, foundation::Workers& workers);

}  // namespace trimora::codecs
