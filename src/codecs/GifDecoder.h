#pragma once

#include "codecs/FormatDecoder.h"

namespace trimora::codecs {

/// GIF files: the first frame on the file's screen, with its transparency; what it does not cover is
/// transparent. Further frames are not read, however many there are.
class GifDecoder final : public FormatDecoder {
 public:
    using FormatDecoder::FormatDecoder;

    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decode(Bytes file) const override;
    [[nodiscard]] foundation::Result<PictureFacts> facts(Bytes file) const override;
};

}  // namespace trimora::codecs
