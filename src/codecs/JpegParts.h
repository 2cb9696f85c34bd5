#pragma once

#include "codecs/Bytes.h"
#include "codecs/JpegReading.h"
#include "codecs/JpegTarget.h"
#include "foundation/Queues.h"

namespace trimora::codecs {

/// Reads the picture of a JPEG file into `to` with several readings at once that each read some of its rows:
/// the same bytes as one reading gives. The data of a row can only be found by going through all before it,
/// a quarter to half of the work of reading it, so that two cores take three fifths of the time, and four
/// take two.
///
/// False where that cannot be done or anything at all was found wrong: then the picture is to be read anew,
/// by one reading, which alone can tell how much of it is good. `header` has read the file's header.
[[nodiscard]] bool readJpegInParts(JpegReading& header, Bytes file, const JpegTarget& to,
                                   foundation::Workers& workers);

}  // namespace trimora::codecs
