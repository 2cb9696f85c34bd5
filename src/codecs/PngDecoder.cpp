#include "codecs/PngDecoder.h"

#include <spng.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "codecs/PixelRows.h"
#include "codecs/PngChunks.h"
#include "codecs/PngWholePicture.h"
#include "codecs/RawPicture.h"
#include "codecs/WideRows.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Error;
using foundation::MutableBitmapView;
using foundation::Pixel;
using foundation::Result;

constexpr int kWideDepth = 16;
constexpr int kWideRowsHeld = 64;
constexpr std::uint32_t kGammaUnit = 100'000;
constexpr std::uint32_t kUsualGammaLow = 45'000;  // 1 / 2.2, which programs write beside sRGB pictures
constexpr std::uint32_t kUsualGammaHigh = 46'000;

/// Hands the library the pieces one after another.
class Pieces {
 public:
    explicit Pieces(const std::vector<Bytes>& pieces) : pieces_(pieces) {}

    static int read(spng_ctx* /*context*/, void* user, void* to, std::size_t size) {
        return static_cast<Pieces*>(user)->take(static_cast<std::uint8_t*>(to), size);
    }

 private:
    int take(std::uint8_t* to, std::size_t size) {
        while (size > 0) {
            if (index_ == pieces_.size())
                return SPNG_IO_EOF;
            const Bytes piece = part(pieces_[index_], offset_, size);
            std::copy(piece.begin(), piece.end(), to);
            to += piece.size();
            size -= piece.size();
            offset_ += piece.size();
            if (offset_ == pieces_[index_].size()) {
                ++index_;
                offset_ = 0;
            }
        }
        return 0;
    }

    const std::vector<Bytes>& pieces_;
    std::size_t index_ = 0;
    std::size_t offset_ = 0;
};

using Context = std::unique_ptr<spng_ctx, void (*)(spng_ctx*)>;

/// How much of the picture could be had.
struct Outcome {
    int rows = 0;  ///< from the top that hold something
    bool whole = false;
};

/// Decodes row by row into place(y), and calls done(y) after each.
template <typename Place, typename Done>
Outcome readRows(spng_ctx* context, std::size_t rowSize, const Place& place, const Done& done) {
    Outcome outcome;
    spng_row_info info{};
    while (!outcome.whole && spng_get_row_info(context, &info) == 0) {
        const int y = static_cast<int>(info.row_num);
        const int answer = spng_decode_row(context, place(y), rowSize);
        if (answer != 0 && answer != SPNG_EOI)
            break;
        done(y);
        outcome.rows = std::max(outcome.rows, y + 1);
        outcome.whole = answer == SPNG_EOI;
    }
    return outcome;
}

Outcome readNarrow(spng_ctx* context, MutableBitmapView to) {
    const auto count = static_cast<std::size_t>(to.width);
    return readRows(
        context, count * 4, [&](int y) { return to.row(y); },
        [&](int y) { exchangeRedAndBlue(to.row(y), count); });
}

/// Whether a pixel is one number of few bits, with at most 256 looks.
bool isIndexed(const PngChunks& chunks) {
    return !chunks.isInterlaced && chunks.bitDepth <= 8 &&
           (chunks.colourType == SPNG_COLOR_TYPE_GRAYSCALE || chunks.colourType == SPNG_COLOR_TYPE_INDEXED);
}

using Looks = std::array<std::uint32_t, 256>;

/// What each number looks like, as the four bytes of a pixel. Numbers beyond the palette are opaque black.
Looks looksOf(spng_ctx* context, const PngChunks& chunks) {
    std::array<Pixel, 256> pixels;
    pixels.fill({0, 0, 0, 255});
    spng_trns transparency{};
    const bool transparent = spng_get_trns(context, &transparency) == 0;
    if (chunks.colourType == SPNG_COLOR_TYPE_INDEXED) {
        spng_plte palette{};
        spng_get_plte(context, &palette);
        for (std::size_t i = 0; i < std::min<std::size_t>(palette.n_entries, pixels.size()); ++i)
            pixels[i] = {palette.entries[i].blue, palette.entries[i].green, palette.entries[i].red, 255};
        for (std::size_t i = 0; transparent && i < transparency.n_type3_entries; ++i)
            pixels[i].alpha = transparency.type3_alpha[i];
    } else {
        const std::size_t brightest = (std::size_t{1} << chunks.bitDepth) - 1;
        for (std::size_t i = 0; i <= brightest; ++i) {
            const auto grey = static_cast<std::uint8_t>(i * 255 / brightest);
            pixels[i] = {grey, grey, grey, 255};
        }
        if (transparent)
            pixels[transparency.gray & brightest].alpha = 0;
    }
    Looks looks{};
    std::memcpy(looks.data(), pixels.data(), sizeof looks);
    return looks;
}

/// Writes a row of numbers of 1, 2, 4 or 8 bits, first pixel in the highest bits, as what they look like.
void putLooks(const std::vector<std::uint8_t>& numbers, int bits, const Looks& looks, std::uint8_t* to,
              std::size_t count) {
    const auto depth = static_cast<std::size_t>(bits);
    const std::uint32_t mask = (1U << bits) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t bit = i * depth;
        const std::uint32_t number = numbers[bit / 8] >> (8 - depth - bit % 8) & mask;
        std::memcpy(to + i * 4, &looks[number], 4);
    }
}

Outcome readIndexed(spng_ctx* context, const PngChunks& chunks, MutableBitmapView to) {
    const auto count = static_cast<std::size_t>(to.width);
    const Looks looks = looksOf(context, chunks);
    std::vector<std::uint8_t> numbers((count * static_cast<std::size_t>(chunks.bitDepth) + 7) / 8);
    return readRows(
        context, numbers.size(), [&](int) { return numbers.data(); },
        [&](int y) { putLooks(numbers, chunks.bitDepth, looks, to.row(y), count); });
}

/// Seven passes fill the rows bit by bit, so nothing may be turned before the last.
Outcome readNarrowInterlaced(spng_ctx* context, MutableBitmapView to) {
    const auto count = static_cast<std::size_t>(to.width);
    for (int y = 0; y < to.height; ++y)
        std::memset(to.row(y), 0, count * 4);
    const Outcome outcome = readRows(
        context, count * 4, [&](int y) { return to.row(y); }, [](int) {});
    for (int y = 0; y < to.height; ++y)
        exchangeRedAndBlue(to.row(y), count);
    return outcome;
}

Outcome readWide(spng_ctx* context, WideRows rows, int width) {
    const Outcome outcome = readRows(
        context, static_cast<std::size_t>(width) * 8, [&](int y) { return rows.row(y); }, [](int) {});
    rows.flush();
    return outcome;
}

std::optional<Chromaticities> chromaticities(Bytes chrm) {
    if (chrm.size() < 32)
        return std::nullopt;
    const auto place = [&](std::size_t offset) {
        return Chromaticities::Place{static_cast<double>(u32(chrm, offset)) / kGammaUnit,
                                     static_cast<double>(u32(chrm, offset + 4)) / kGammaUnit};
    };
    return Chromaticities{place(0), place(8), place(16), place(24)};
}

bool isNearSrgb(const std::optional<Chromaticities>& places) {
    if (!places)
        return true;
    const auto near = [](double a, double b) { return std::abs(a - b) < 0.005; };
    return near(places->red.x, 0.64) && near(places->red.y, 0.33) && near(places->green.x, 0.30) &&
           near(places->green.y, 0.60) && near(places->blue.x, 0.15) && near(places->blue.y, 0.06);
}

std::unique_ptr<ColourProfile> profileOf(const PngChunks& chunks) {
    const bool grey = chunks.colourType == SPNG_COLOR_TYPE_GRAYSCALE ||
                      chunks.colourType == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA;
    const ColourModel model = grey ? ColourModel::grey : ColourModel::rgb;
    const SampleDepth depth = chunks.bitDepth == kWideDepth ? SampleDepth::sixteen : SampleDepth::eight;
    if (!chunks.icc.empty())
        return ColourProfile::fromIcc(unpackedIcc(chunks.icc), model, depth);
    const std::uint32_t gamma = u32(chunks.gama, 0);
    if (chunks.isSrgb || gamma == 0)
        return nullptr;
    const std::optional<Chromaticities> places = chromaticities(chunks.chrm);
    if (gamma >= kUsualGammaLow && gamma <= kUsualGammaHigh && isNearSrgb(places))
        return nullptr;
    return ColourProfile::fromGamma(static_cast<double>(kGammaUnit) / gamma, places, model, depth);
}

bool hasAlpha(const PngChunks& chunks) {
    return chunks.hasTransparency || chunks.colourType == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA ||
           chunks.colourType == SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
}

constexpr const char* kNoPicture = "the file ends before its picture begins";

Error unreadable(const PngChunks& chunks, int reason) {
    if (chunks.isCutShort)
        return {kNoPicture};
    return {std::string("the PNG file cannot be read: ") + spng_strerror(reason)};
}

int formatFor(const PngChunks& chunks) {
    if (isIndexed(chunks))
        return SPNG_FMT_PNG;
    return chunks.bitDepth == kWideDepth ? SPNG_FMT_RGBA16 : SPNG_FMT_RGBA8;
}

/// Sets the library up to give row after row; its answer.
int start(spng_ctx* context, const PngChunks& chunks, Pieces& pieces) {
    if (chunks.isCutShort)  // the checksum of the last piece is not there
        spng_set_crc_action(context, SPNG_CRC_USE, SPNG_CRC_USE);
    if (const int answer = spng_set_png_stream(context, &Pieces::read, &pieces); answer != 0)
        return answer;
    const int flags = SPNG_DECODE_PROGRESSIVE | (isIndexed(chunks) ? 0 : SPNG_DECODE_TRNS);
    return spng_decode_image(context, nullptr, 0, formatFor(chunks), flags);
}

/// Reads the rows in the way that fits the file. Pictures of 16 bits are converted by the profile here.
Outcome readPixels(spng_ctx* context, const PngChunks& chunks, const ColourProfile* profile,
                   MutableBitmapView to, foundation::Workers& workers) {
    if (chunks.bitDepth == kWideDepth) {
        const int rowsHeld = chunks.isInterlaced ? to.height : kWideRowsHeld;
        return readWide(context, WideRows(to, profile, workers, rowsHeld), to.width);
    }
    if (isIndexed(chunks))
        return readIndexed(context, chunks, to);
    return chunks.isInterlaced ? readNarrowInterlaced(context, to) : readNarrow(context, to);
}

/// What could be had of a picture.
struct ReadPicture {
    Bitmap pixels;
    Outcome outcome;
};

/// Reads as many rows as there are, of files of every kind.
Result<ReadPicture> readByRows(const PngChunks& chunks, const ColourProfile* profile,
                               foundation::Workers& workers) {
    Pieces pieces(chunks.picture);
    const Context context(spng_ctx_new(0), spng_ctx_free);
    if (!context)
        return Error{"not enough memory to read the file"};
    if (const int answer = start(context.get(), chunks, pieces); answer != 0)
        return unreadable(chunks, answer);
    Result<Bitmap> pixels = Bitmap::create(static_cast<int>(chunks.width), static_cast<int>(chunks.height),
                                           hasAlpha(chunks) ? AlphaMode::straight : AlphaMode::opaque);
    if (!pixels)
        return pixels.error();
    Outcome outcome = readPixels(context.get(), chunks, profile, pixels->view(), workers);
    if (outcome.rows == 0)
        return unreadable(chunks, SPNG_EIDAT_STREAM);
    if (!outcome.whole && chunks.isInterlaced) {
        outcome.rows = pixels->height();  // what is missing lies between the rows that were read
        pixels->setAlphaMode(AlphaMode::straight);
    }
    return ReadPicture{std::move(*pixels), outcome};
}

Result<ReadPicture> read(const PngChunks& chunks, const ColourProfile* profile,
                         foundation::Workers& workers) {
    if (std::optional<Bitmap> whole = readWholePicture(chunks))
        return ReadPicture{std::move(*whole), {static_cast<int>(chunks.height), true}};
    return readByRows(chunks, profile, workers);
}

}  // namespace

Result<DecodedPicture> PngDecoder::decode(Bytes file) const {
    PngChunks chunks;
    if (Result<void> read = readPngChunks(file, chunks); !read)
        return read.error();
    if (std::optional<Error> refusal = budget().refusal(chunks.width, chunks.height))
        return *std::move(refusal);
    const std::unique_ptr<ColourProfile> profile = profileOf(chunks);
    Result<ReadPicture> found = read(chunks, profile.get(), workers());
    if (!found)
        return found.error();
    Result<Bitmap> bitmap = finished(
        {std::move(found->pixels), found->outcome.rows, ColourModel::rgb, exifOrientation(chunks.exif)},
        chunks.bitDepth == kWideDepth ? nullptr : profile.get(), workers());
    if (!bitmap)
        return bitmap.error();
    DecodedPicture picture;
    picture.representations.push_back(std::move(*bitmap));
    if (!found->outcome.whole)
        picture.notice = chunks.isCutShort ? kCutShort : kDamaged;
    return picture;
}

Result<PictureFacts> PngDecoder::facts(Bytes file) const {
    PngChunks chunks;
    if (Result<void> read = readPngChunks(file, chunks); !read)
        return read.error();
    PictureFacts facts;
    facts.format = PictureFormat::png;
    facts.width = chunks.width;
    facts.height = chunks.height;
    facts.pixels = facts.width * facts.height;
    facts.orientation = exifOrientation(chunks.exif);
    facts.bitsPerSample = chunks.bitDepth;
    facts.hasAlpha = hasAlpha(chunks);
    if (!chunks.icc.empty())
        facts.profile = profileName(unpackedIcc(chunks.icc));
    else if (chunks.isSrgb)
        facts.profile = "sRGB";
    return facts;
}

}  // namespace trimora::codecs
