#include <lcms2_plugin.h>

#include <vector>

#include "../tests/reliability/BadPictures.h"
#include "Demand.h"
#include "Targets.h"
#include "codecs/JpegParts.h"
#include "codecs/JpegReading.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PictureFormat.h"
#include "foundation/Queues.h"
#include "testing/LowestFirst.h"

namespace trimora::fuzz {
namespace {

using foundation::Bitmap;

// Room for all that matters; clearing the pixels of larger ones would take most of the time.
const codecs::PixelBudget kBudget(500'000);

/// Keeps lcms from working out tables for the transforms that it makes, 6 to 60 ms of work each: it needs
/// them for large pictures, and what they are worked out from is gone through without them too. One file in
/// 64 has them.
class Tables {
 public:
    static void wantFor(std::size_t size) {
        static const bool isRegistered = registered();
        demand(isRegistered);
        wanted = size % 64 == 0;
    }

 private:
    static bool registered() {
        static cmsPluginOptimization plugin{};
        plugin.base = {cmsPluginMagicNumber, LCMS_VERSION, cmsPluginOptimizationSig, nullptr};
        plugin.OptimizePtr = [](cmsPipeline**, cmsUInt32Number, cmsUInt32Number*, cmsUInt32Number*,
                                cmsUInt32Number*) -> cmsBool { return wanted ? FALSE : TRUE; };
        return cmsPlugin(&plugin) != 0;
    }

    static inline bool wanted = true;
};

/// Reads the bytes as a picture if they are of that format. What comes out must be a picture or a reason.
int readPicture(codecs::PictureFormat format, const std::uint8_t* data, std::size_t size) {
    const codecs::Bytes file(data, size);
    if (codecs::formatOf(file) != format)
        return -1;
    Tables::wantFor(size);
    foundation::InlineWorkers workers;
    const codecs::PictureFileDecoder decoder(workers, kBudget);
    (void)decoder.facts(file);
    const auto read = decoder.decodeBytes(file);
    demand(read ? !read->representations.empty() : !read.error().message.empty());
    return 0;
}

Bitmap blankOf(const codecs::JpegReading& header) {
    return std::move(Bitmap::createFilled(static_cast<int>(header.width()), static_cast<int>(header.height()),
                                          {1, 2, 3, 4}))
        .value();
}

/// Small pictures are left to one reading. Read in parts as large ones are, they must come to the same bytes,
/// or say that one reading is to have a look.
void readInParts(codecs::Bytes file) {
    codecs::JpegReading header(file);
    if (!header.readHeader() || kBudget.refusal(header.width(), header.height()))
        return;
    testing::LowestFirst workers(2 + static_cast<int>(file.size() % 3));
    Bitmap parts = blankOf(header);
    if (!codecs::readJpegInParts(header, file, {parts.view(), nullptr}, workers))
        return;
    codecs::JpegReading reading(file);
    Bitmap whole = blankOf(header);
    demand(reading.readHeader() && reading.start() && reading.readRows(whole.view(), 0, whole.height()));
    demand(!reading.isCutShort() && !reading.isDamaged());
    demand(samePixels(parts.view(), whole.view()));
}

}  // namespace

int readPng(const std::uint8_t* data, std::size_t size) {
    const int kept = readPicture(codecs::PictureFormat::png, data, size);
    // Hardly any change leads past the checksums.
    std::vector<std::uint8_t> right(data, data + size);
    if (kept == 0 && reliability::putChecksumsRight(right))
        (void)readPicture(codecs::PictureFormat::png, right.data(), right.size());
    return kept;
}

int readJpeg(const std::uint8_t* data, std::size_t size) {
    const int kept = readPicture(codecs::PictureFormat::jpeg, data, size);
    if (kept == 0)
        readInParts({data, size});
    return kept;
}

int readTiff(const std::uint8_t* data, std::size_t size) {
    return readPicture(codecs::PictureFormat::tiff, data, size);
}

int readGif(const std::uint8_t* data, std::size_t size) {
    return readPicture(codecs::PictureFormat::gif, data, size);
}

}  // namespace trimora::fuzz
