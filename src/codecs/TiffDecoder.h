#pragma once

#include "codecs/FormatDecoder.h"

namespace trimora::codecs {

/// TIFF files: every page is one representation (masks of other pages are left out), upright, in order.
///
/// Before a page is decoded all of them are measured: their pixels together, and the product of the
/// largest width and the largest height (which is the picture's size in points), must be within the
/// budget. Of more than 1,000 pages the first are read, with a notice.
class TiffDecoder final : public FormatDecoder {
 public:
    using FormatDecoder::FormatDecoder;

    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decode(Bytes bytes) const override;
    [[nodiscard]] foundation::Result<PictureFacts> facts(Bytes bytes) const override;
};

}  // namespace trimora::codecs
