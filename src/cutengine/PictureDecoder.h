#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cutengine/kernels/MipPyramid.h"
#include "foundation/Bitmap.h"
#include "foundation/Result.h"

namespace trimora::cutengine {

/// What a picture file held.
struct DecodedPicture {
    /// Every bitmap of the file, in its order: upright, sRGB, premultiplied or opaque. Never empty.
    std::vector<foundation::Bitmap> representations;
    /// One sentence for the person where something is missing (a truncated file), else empty.
    std::string notice;
    /// The smaller copies of the only bitmap, where they cost little while it was decoded; else none.
    kernels::MipPyramid copies = {};
};

/// Reads picture files; the engine's port to whatever knows the formats.
///
/// decode() may be called on any thread, several at once. It refuses what is not a regular file
/// without blocking, checks sizes before anything is allocated, and returns an error whose message
/// names the reason (not the file); nothing changed.
class PictureDecoder {
 public:
    virtual ~PictureDecoder() = default;
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;

    [[nodiscard]] virtual foundation::Result<DecodedPicture> decode(const std::filesystem::path& file) = 0;

 protected:
    PictureDecoder() = default;
};

}  // namespace trimora::cutengine
