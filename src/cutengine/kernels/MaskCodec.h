#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "cutengine/kernels/MaskStrip.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"
#include "foundation/Result.h"

/// Mask planes as PNG files: RGB with alpha, 8 bits a component, un-premultiplied as the format asks.
///
/// The files carry a private ancillary chunk with a checksum of the pixels, so that a damaged file is
/// told from a good one; a PNG written by any other program, which has no such chunk, is read as it
/// stands.
namespace trimora::cutengine::kernels {

[[nodiscard]] foundation::Result<std::vector<std::uint8_t>> encodeMask(foundation::BitmapView plane);

/// The picture in the file, premultiplied. A file that is no PNG, is damaged, or whose checksum does
/// not match returns an error; so does one larger than `maxSide` pixels a side.
[[nodiscard]] foundation::Result<foundation::Bitmap> decodeMask(std::span<const std::uint8_t> file,
                                                                int maxSide);

/// What has been read of a mask's file: rows that are to be put into the mask that was there before, or a
/// mask in its place.
struct MaskRows {
    foundation::Bitmap pixels;  ///< empty: no row differs
    int top = 0;                ///< where the first of them belongs
    bool isWhole = true;        ///< a mask by itself, of any size
};

/// Writes and reads the files of one mask as it changes, with the same outcome as encodeMask() and
/// decodeMask(), at a cost that follows what changed: it keeps the packed strips of the mask that was last
/// written or read. Any failure, an exception among them, makes it forget them, and so does reading a file of
/// another program or a mask of another size; the next file is then written or read whole.
class MaskFiles {
 public:
    /// The file of `plane`. `changed` holds every pixel that may differ from the mask that was last written
    /// or read here.
    [[nodiscard]] foundation::Result<std::vector<std::uint8_t>> write(foundation::BitmapView plane,
                                                                      const foundation::IntRect& changed);

    /// Reads a file into what makes its mask of the present one, which may differ within `changed` from the
    /// mask that was last written or read here. The file is checked as a whole, whatever is read of it.
    [[nodiscard]] foundation::Result<MaskRows> read(std::span<const std::uint8_t> file, int maxSide,
                                                    const foundation::IntRect& changed);

    void forget() { kept_ = {}; }

 private:
    PackedMask kept_;
};

}  // namespace trimora::cutengine::kernels
