#pragma once

#include "codecs/FormatDecoder.h"

namespace trimora::codecs {

/// PNG files of every colour type and depth, interlaced or not, with transparency by palette, key colour
/// or alpha, and with profile, gamma and orientation. Texts in the file are never unpacked. A file cut
/// short shows the rows that were there.
class PngDecoder final : public FormatDecoder {
 public:
    using FormatDecoder::FormatDecoder;

    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decode(Bytes file) const override;
    [[nodiscard]] foundation::Result<PictureFacts> facts(Bytes file) const override;
};

}  // namespace trimora::codecs
