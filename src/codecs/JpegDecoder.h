#pragma once

#include "codecs/FormatDecoder.h"

namespace trimora::codecs {

/// JPEG files, baseline and progressive: YCbCr, RGB, grey, CMYK and YCCK, with EXIF orientation and
/// embedded profile. A file cut short shows the part that was there. A large baseline one is read on all
/// cores.
class JpegDecoder final : public FormatDecoder {
 public:
    using FormatDecoder::FormatDecoder;

    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decode(Bytes file) const override;
    [[nodiscard]] foundation::Result<PictureFacts> facts(Bytes file) const override;
};

}  // namespace trimora::codecs
