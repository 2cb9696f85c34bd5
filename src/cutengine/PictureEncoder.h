#pragma once

#include <cstdint>
#include <functional>
#include <span>

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

    /// The picture as a PNG of 8 bits a sample, RGB with alpha, in sRGB. A premultiplied view is
    /// un-premultiplied on the way; a straight one is written as it stands.
    [[nodiscard]] virtual foundation::Result<void> encodePng(foundation::BitmapView picture,
                                                             const Output& output) = 0;

 protected:
    PictureEncoder() = default;
};

}  // namespace trimora::cutengine
