#include "codecs/PictureFileDecoder.h"

#include <fcntl.h>

#include <memory>
#include <new>

#include "codecs/FormatDecoder.h"
#include "codecs/GifDecoder.h"
#include "codecs/JpegDecoder.h"
#include "codecs/PictureFormat.h"
#include "codecs/PngDecoder.h"
#include "codecs/TiffDecoder.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::Error;
using foundation::Result;

// No file of a picture within the budget is larger than its samples of 16 bits and a generous rest.
constexpr std::uint64_t kMostBytesPerPixel = 8;
constexpr std::uint64_t kMostOtherBytes = std::uint64_t{64} << 20;

Error unknownFormat() {
    return {"it is not a JPEG, PNG, TIFF or GIF picture"};
}

std::unique_ptr<FormatDecoder> decoderOf(PictureFormat format, PixelBudget budget,
                                         foundation::Workers& workers) {
    switch (format) {
        case PictureFormat::jpeg:
            return std::make_unique<JpegDecoder>(budget, workers);
        case PictureFormat::png:
            return std::make_unique<PngDecoder>(budget, workers);
        case PictureFormat::tiff:
            return std::make_unique<TiffDecoder>(budget, workers);
        case PictureFormat::gif:
            return std::make_unique<GifDecoder>(budget, workers);
    }
    return nullptr;
}

}  // namespace

PixelBudget PictureFileDecoder::budget() const {
    return fixedBudget_ ? *fixedBudget_ : PixelBudget::fromFreeMemory();
}

std::uint64_t PictureFileDecoder::mostFileBytes() const {
    return budget().pixels() * kMostBytesPerPixel + kMostOtherBytes;
}

Result<DecodedPicture> PictureFileDecoder::decode(const std::filesystem::path& file) {
    const Result<files::FileBytes> bytes = readFile(file);
    if (!bytes)
        return bytes.error();
    return decodeBytes(bytes->view());
}

Result<files::FileBytes> PictureFileDecoder::readFile(const std::filesystem::path& file) const {
    const Result<files::FileDescriptor> open =
        files::openRegularFileAt(AT_FDCWD, file.c_str(), files::Links::follow);
    if (!open)
        return open.error();
    // A film of many gigabytes is turned away by its first bytes, not read first.
    const Result<files::FileBytes> start = files::readStart(*open, kSignatureSize);
    if (!start)
        return start.error();
    if (!formatOf(start->view()))
        return unknownFormat();
    return files::readAll(*open, mostFileBytes());
}

Result<DecodedPicture> PictureFileDecoder::decodeBytes(Bytes file) const {
    const std::optional<PictureFormat> format = formatOf(file);
    if (!format)
        return unknownFormat();
    try {
        return decoderOf(*format, budget(), workers_)->decode(file);
    } catch (const std::bad_alloc&) {
        return Error{"not enough memory to read the picture"};
    }
}

Result<PictureFacts> PictureFileDecoder::facts(Bytes file) const {
    const std::optional<PictureFormat> format = formatOf(file);
    if (!format)
        return unknownFormat();
    try {
        return decoderOf(*format, budget(), workers_)->facts(file);
    } catch (const std::bad_alloc&) {
        return Error{"not enough memory to read the picture"};
    }
}

}  // namespace trimora::codecs
