#include "codecs/JpegDecoder.h"

#include <optional>
#include <string>
#include <utility>

#include "codecs/JpegMetadata.h"
#include "codecs/JpegParts.h"
#include "codecs/JpegReading.h"
#include "codecs/JpegTarget.h"
#include "codecs/RawPicture.h"
#include "cutengine/kernels/MipBands.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using cutengine::kernels::MipBands;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Error;
using foundation::Result;

// Smaller pictures are read before another core has begun.
constexpr std::uint64_t kFewestPixelsForParts = 1'000'000;

Error unreadable(const JpegReading& reading) {
    return Error{"the JPEG file cannot be read: " + reading.reason()};
}

Error headless(const JpegReading& reading) {
    return reading.isCutShort() ? Error{"the file ends before its picture begins"} : unreadable(reading);
}

/// As far as it goes, by one reading. False where the library gave up.
bool readFromTop(JpegReading& reading, const JpegTarget& to) {
    JpegTarget::Room room(reading);
    return reading.start() && to.read(reading, 0, to.height(), room);
}

}  // namespace

Result<DecodedPicture> JpegDecoder::decode(Bytes file) const {
    JpegReading reading(file);
    if (!reading.readHeader())
        return headless(reading);
    if (std::optional<Error> refusal = budget().refusal(reading.width(), reading.height()))
        return *std::move(refusal);
    if (reading.isImplausible())
        return Error{"the file is far too short for a picture of its size"};
    if (reading.holdsNothing())
        return Error{"the file ends before its picture begins"};
    Result<Bitmap> pixels = Bitmap::create(static_cast<int>(reading.width()),
                                           static_cast<int>(reading.height()), AlphaMode::opaque);
    if (!pixels)
        return pixels.error();
    const JpegMetadata metadata = readJpegMetadata(file);
    const auto profile = ColourProfile::fromIcc(metadata.icc, reading.model(), SampleDepth::eight);
    // Copies of what is still to be changed would be of no use.
    const bool isFinished =
        profile == nullptr && !holdsInks(reading.model()) && metadata.orientation == Orientation::topLeft;
    MipBands copies(isFinished ? BitmapView(pixels->view()) : BitmapView());
    const JpegTarget target(pixels->view(), isFinished ? &copies : nullptr);
    const bool inParts = reading.width() * reading.height() >= kFewestPixelsForParts &&
                         readJpegInParts(reading, file, target, workers());
    const bool whole = inParts || readFromTop(reading, target);
    const int rowsRead = inParts ? pixels->height() : reading.rowsRead();
    if (!whole && rowsRead == 0)
        return unreadable(reading);

    const bool isWhole = whole && rowsRead == pixels->height();
    Result<Bitmap> bitmap = finished({std::move(*pixels), rowsRead, reading.model(), metadata.orientation},
                                     profile.get(), workers());
    if (!bitmap)
        return bitmap.error();
    DecodedPicture picture;
    picture.representations.push_back(std::move(*bitmap));
    if (isFinished && isWhole)
        picture.copies = std::move(copies).finished(workers());
    if (reading.isCutShort())
        picture.notice = kCutShort;
    else if (!whole || reading.isDamaged())
        picture.notice = kDamaged;
    return picture;
}

Result<PictureFacts> JpegDecoder::facts(Bytes file) const {
    JpegReading reading(file);
    if (!reading.readHeader())
        return headless(reading);
    const JpegMetadata metadata = readJpegMetadata(file);
    PictureFacts facts;
    facts.format = PictureFormat::jpeg;
    facts.width = reading.width();
    facts.height = reading.height();
    facts.pixels = facts.width * facts.height;
    facts.orientation = metadata.orientation;
    facts.bitsPerSample = reading.bitsPerSample();
    facts.profile = profileName(metadata.icc);
    return facts;
}

}  // namespace trimora::codecs
