#pragma once

#include "cutengine/PictureEncoder.h"
#include "foundation/Queues.h"

namespace trimora::codecs {

/// Writes PNG files: 8 bits a sample, RGB with alpha, marked as sRGB, nothing else in them.
///
/// Colour of premultiplied views is divided by alpha and rounded to the nearest; no colour is ever left
/// under alpha 0. Bands of rows are packed on the workers at the same time and handed out in order, so no
/// more than some megabytes are held whatever the picture's size, of rows that have to be made first 32. Any
/// thread, several at once.
class PngEncoder final : public cutengine::PictureEncoder {
 public:
    /// The workers must outlive the encoder.
    explicit PngEncoder(foundation::Workers& workers) : workers_(workers) {}

    using PictureEncoder::encodePng;
    [[nodiscard]] foundation::Result<void> encodePng(const cutengine::PictureRows& picture,
                                                     const Output& output) override;

 private:
    foundation::Workers& workers_;
};

}  // namespace trimora::codecs
