#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "cutengine/PictureRows.h"
#include "foundation/Bitmap.h"
#include "foundation/Result.h"

namespace trimora::cutengine {

/// Writes picture files; the engine's port to whatever knows the formats. Any thread.
class PictureEncoder {
 public:
    /// Takes the file's bytes in order, piece by piece; an error from it ends the encoding.
    using Output = std::function<foundation::Result<void>(std::span<const std::uint8_t>)>;

    virtual ~PictureEncoder() = default;
    PictureEncoder(const PictureEncoder&) = delete;
    PictureEncoder& operator=(const PictureEncoder&) = delete;

    /// The picture as a PNG of 8 bits a sample, RGB with alpha, in sRGB. Premultiplied rows are
    /// un-premultiplied on the way; straight ones are written as they stand.
    [[nodiscard]] virtual foundation::Result<void> encodePng(const PictureRows& picture,
                                                             const Output& output) = 0;

    [[nodiscard]] foundation::Result<void> encodePng(foundation::BitmapView picture, const Output& output) {
        return encodePng(BitmapRows(picture), output);
    }

 protected:
    PictureEncoder() = default;
};

}  // namespace trimora::cutengine
