#pragma once

#include <filesystem>
#include <string>

#include "codecs/PngEncoder.h"
#include "files/AtomicFile.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

/// A picture on its way into a file, as the editor saves one.
namespace trimora::reliability {

inline foundation::Result<void> savePng(foundation::BitmapView picture, const std::filesystem::path& target) {
    foundation::InlineWorkers workers;
    codecs::PngEncoder encoder(workers);
    auto file = files::AtomicFile::create(target);
    if (!file)
        return file.error();
    auto encoded = encoder.encodePng(picture, [&file](auto bytes) { return file->write(bytes); });
    if (!encoded)
        return encoded;
    return file->commit();
}

/// An opaque picture of plain bands, quickly packed.
inline foundation::Bitmap bandedPicture(int width, int height) {
    auto picture = foundation::Bitmap::createFilled(width, height, {10, 20, 30, 255},
                                                    foundation::AlphaMode::premultiplied);
    for (int y = 0; y < height; y += 7)
        for (int x = 0; x < width; ++x)
            picture->view().row(y)[4 * x] = static_cast<std::uint8_t>(y + x / 64);
    return std::move(*picture);
}

}  // namespace trimora::reliability
