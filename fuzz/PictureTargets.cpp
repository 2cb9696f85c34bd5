#include <cstdlib>

#include "Targets.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PictureFormat.h"
#include "foundation/Queues.h"

namespace trimora::fuzz {
namespace {

/// Reads the bytes as a picture if they are of that format. What comes out must be a picture or a reason.
int readPicture(codecs::PictureFormat format, const std::uint8_t* data, std::size_t size) {
    const codecs::Bytes file(data, size);
    if (codecs::formatOf(file) != format)
        return -1;
    foundation::InlineWorkers workers;
    const codecs::PictureFileDecoder decoder(workers, codecs::PixelBudget(4'000'000));
    (void)decoder.facts(file);
    const auto read = decoder.decodeBytes(file);
    if (read ? read->representations.empty() : read.error().message.empty())
        std::abort();
    return 0;
}

}  // namespace

int readPng(const std::uint8_t* data, std::size_t size) {
    return readPicture(codecs::PictureFormat::png, data, size);
}

int readJpeg(const std::uint8_t* data, std::size_t size) {
    return readPicture(codecs::PictureFormat::jpeg, data, size);
}

int readTiff(const std::uint8_t* data, std::size_t size) {
    return readPicture(codecs::PictureFormat::tiff, data, size);
}

int readGif(const std::uint8_t* data, std::size_t size) {
    return readPicture(codecs::PictureFormat::gif, data, size);
}

}  // namespace trimora::fuzz
