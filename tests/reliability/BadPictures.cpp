#include "BadPictures.h"

#include <zlib.h>

#include <algorithm>
#include <array>

#include "foundation/Bitmap.h"

namespace trimora::reliability {

namespace samples = codecs::samples;
using foundation::AlphaMode;
using foundation::BitmapView;

namespace {

std::vector<NamedFile> soundFiles(int width, int height, unsigned inkNodes) {
    const auto quarters = samples::quarters(width, height);
    const auto fading = samples::fading(width - 8, height - 8);
    const auto small = samples::quarters(16, 12);
    const auto whole = quarters.view();
    samples::JpegOptions rotated;
    rotated.orientation = 6;
    rotated.icc = samples::wideProfile();
    samples::JpegOptions inks;
    inks.cmyk = true;
    inks.icc = samples::inkProfile(inkNodes);
    const auto tiff = [&](const samples::TiffOptions& options) { return samples::tiff({{whole, options}}); };
    samples::TiffOptions tiled;
    tiled.tile = 16;
    tiled.packing = 8;
    samples::TiffOptions deep;
    deep.bits = 16;
    deep.bigEndian = true;
    samples::TiffOptions planes;
    planes.separatePlanes = true;
    planes.packing = 32773;
    samples::TiffOptions packed;
    packed.packing = 5;
    samples::PngOptions profiled;
    profiled.icc = samples::wideProfile();
    samples::GifOptions interlaced;
    interlaced.interlaced = true;
    interlaced.left = 3;
    interlaced.screenWidth = 30;
    interlaced.screenHeight = 20;
    return {
        {"jpeg", samples::jpeg(whole, rotated)},
        {"jpeg-progressive", samples::jpeg(whole, {.progressive = true, .across = 2, .down = 2, .icc = {}})},
        {"jpeg-grey", samples::jpeg(whole, {.quality = 60, .grey = true, .icc = {}})},
        {"jpeg-inks", samples::jpeg(whole, inks)},
        {"png", samples::png(fading.view(), profiled)},
        {"png-16-interlaced", samples::png(fading.view(), {.bitDepth = 16, .interlaced = true, .icc = {}})},
        {"png-palette", samples::png(small.view(), {.bitDepth = 8, .colourType = 3, .icc = {}})},
        {"png-grey-key",
         samples::png(fading.view(), {.bitDepth = 8, .colourType = 0, .icc = {}, .key = true})},
        {"tiff", tiff({})},
        {"tiff-packed", tiff(packed)},
        {"tiff-tiled", tiff(tiled)},
        {"tiff-16-big-endian", tiff(deep)},
        {"tiff-planes-two-pages", samples::tiff({{whole, planes}, {whole, {}}})},
        {"gif", samples::gif(small.view())},
        {"gif-interlaced", samples::gif(small.view(), interlaced)},
    };
}

struct Breaking {
    const char* name;
    void (*apply)(Buffer& bytes);
};

void fillMiddle(Buffer& bytes, std::uint8_t value) {
    const std::size_t from = bytes.size() / 2;
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(from),
              bytes.begin() + static_cast<std::ptrdiff_t>(std::min(from + 64, bytes.size())), value);
}

constexpr Breaking kBreakings[] = {
    {"signature-only", [](Buffer& bytes) { bytes.resize(12); }},
    {"cut-at-quarter", [](Buffer& bytes) { bytes.resize(bytes.size() / 4); }},
    {"cut-at-half", [](Buffer& bytes) { bytes.resize(bytes.size() / 2); }},
    {"last-byte-missing", [](Buffer& bytes) { bytes.pop_back(); }},
    {"zeros-in-the-middle", [](Buffer& bytes) { fillMiddle(bytes, 0); }},
    {"ones-in-the-middle", [](Buffer& bytes) { fillMiddle(bytes, 255); }},
    {"ones-in-the-head",
     [](Buffer& bytes) { std::fill(bytes.begin() + 8, bytes.begin() + 40, std::uint8_t{255}); }},
    {"quarter-removed",
     [](Buffer& bytes) {
         const auto quarter = static_cast<std::ptrdiff_t>(bytes.size() / 4);
         bytes.erase(bytes.begin() + quarter, bytes.begin() + 2 * quarter);
     }},
    {"half-repeated",
     [](Buffer& bytes) {
         const Buffer half(bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2), bytes.end());
         bytes.insert(bytes.end(), half.begin(), half.end());
     }},
    {"every-97th-byte-turned",
     [](Buffer& bytes) {
         for (std::size_t i = 97; i < bytes.size(); i += 97)
             bytes[i] = static_cast<std::uint8_t>(~bytes[i]);
     }},
};

std::uint32_t bigEndianAt(const Buffer& bytes, std::size_t at) {
    return static_cast<std::uint32_t>(bytes[at]) << 24 | static_cast<std::uint32_t>(bytes[at + 1]) << 16 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 8 | bytes[at + 3];
}

void changeOnce(Buffer& bytes, std::mt19937_64& random) {
    if (bytes.size() < 16)
        return;
    const std::size_t at = random() % bytes.size();
    const auto position = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    const std::size_t length = 1 + random() % std::min<std::size_t>(bytes.size() - at, 64);
    constexpr std::array<std::uint8_t, 6> kTelling = {0, 1, 0x7F, 0x80, 0xFE, 0xFF};
    switch (random() % 7) {
        case 0:
            bytes[at] ^= static_cast<std::uint8_t>(1U << random() % 8);
            break;
        case 1:
            bytes[at] = static_cast<std::uint8_t>(random());
            break;
        case 2:  // a number at its limits
            for (std::size_t i = at; i < std::min(at + (random() % 2 == 0 ? 2 : 4), bytes.size()); ++i)
                bytes[i] = kTelling[random() % kTelling.size()];
            break;
        case 3:
            bytes.erase(position, position + static_cast<std::ptrdiff_t>(length));
            break;
        case 4: {
            const Buffer piece(position, position + static_cast<std::ptrdiff_t>(length));
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size()), piece.begin(),
                         piece.end());
            break;
        }
        case 5:
            std::generate(position, position + static_cast<std::ptrdiff_t>(length),
                          [&] { return static_cast<std::uint8_t>(random()); });
            break;
        default:
            bytes.resize(std::max<std::size_t>(16, at));
    }
}

std::string faultOf(const foundation::Bitmap& bitmap) {
    const BitmapView view = bitmap.view();
    if (view.isEmpty())
        return "an empty bitmap";
    if (view.alphaMode == AlphaMode::straight)
        return "straight alpha";
    for (int y = 0; y < view.height; ++y) {
        const std::uint8_t* const row = view.row(y);
        for (int x = 0; x < view.width; ++x) {
            const std::uint8_t* const pixel = row + static_cast<std::ptrdiff_t>(4) * x;
            if (view.alphaMode == AlphaMode::opaque ? pixel[3] != 255
                                                    : std::max({pixel[0], pixel[1], pixel[2]}) > pixel[3])
                return "a pixel that cannot be";
        }
    }
    return {};
}

}  // namespace

const std::vector<NamedFile>& soundFiles() {
    static const std::vector<NamedFile> files = soundFiles(61, 47, 9);
    return files;
}

std::vector<NamedFile> smallSoundFiles() {
    return soundFiles(21, 18, 3);
}

std::vector<NamedFile> brokenFiles() {
    std::vector<NamedFile> files;
    for (const NamedFile& sound : soundFiles()) {
        for (const Breaking& breaking : kBreakings) {
            files.push_back({sound.name + "." + breaking.name, sound.bytes});
            breaking.apply(files.back().bytes);
        }
    }
    return files;
}

bool putChecksumsRight(Buffer& png) {
    bool wereWrong = false;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const std::size_t length = bigEndianAt(png, at);
        if (length > png.size() - at - 12)
            break;
        const auto checksum = crc32_z(0, png.data() + at + 4, length + 4);
        wereWrong |= bigEndianAt(png, at + 8 + length) != checksum;
        for (std::size_t i = 0; i < 4; ++i)
            png[at + 8 + length + i] = static_cast<std::uint8_t>(checksum >> (24 - 8 * i));
        at += length + 12;
    }
    return wereWrong;
}

Buffer mutant(std::mt19937_64& random) {
    const NamedFile& sound = soundFiles()[random() % soundFiles().size()];
    Buffer bytes = sound.bytes;
    for (std::uint64_t i = 1 + random() % 8; i > 0; --i)
        changeOnce(bytes, random);
    if (sound.name.starts_with("png") && random() % 2 == 0)
        putChecksumsRight(bytes);
    return bytes;
}

std::vector<NamedFile> filesOfSize(std::uint32_t side) {
    std::vector<NamedFile> files;
    const auto digits = [side](Buffer& bytes, std::size_t at, int count, bool bigEndian) {
        const std::uint64_t most = (std::uint64_t{1} << (8 * count)) - 1;
        const std::uint64_t value = std::min<std::uint64_t>(side, most);
        for (int i = 0; i < count; ++i)
            bytes[at + static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(value >> (8 * (bigEndian ? count - 1 - i : i)));
    };
    Buffer png = samples::png(samples::fading(8, 8).view());
    digits(png, 16, 4, true);
    digits(png, 20, 4, true);
    putChecksumsRight(png);
    files.push_back({"png", png});
    Buffer jpeg = samples::jpeg(samples::quarters(8, 8).view());
    constexpr std::uint8_t kFrame[] = {0xFF, 0xC0};
    const auto frame = std::search(jpeg.begin(), jpeg.end(), std::begin(kFrame), std::end(kFrame));
    const auto at = static_cast<std::size_t>(frame - jpeg.begin());
    digits(jpeg, at + 5, 2, true);
    digits(jpeg, at + 7, 2, true);
    files.push_back({"jpeg", jpeg});
    Buffer gif = samples::gif(samples::quarters(8, 8).view());
    digits(gif, 6, 2, false);
    digits(gif, 8, 2, false);
    files.push_back({"gif", gif});
    // One directory right after the head: width, height, and no pixels.
    Buffer tiff = {'I', 'I', 42, 0, 8, 0, 0, 0, 2, 0};
    for (const std::uint8_t tag : {0, 1}) {
        tiff.insert(tiff.end(), {tag, 1, 4, 0, 1, 0, 0, 0, 0, 0, 0, 0});
        digits(tiff, tiff.size() - 4, 4, false);
    }
    tiff.insert(tiff.end(), {0, 0, 0, 0});
    files.push_back({"tiff", tiff});
    return files;
}

std::string faultOf(const foundation::Result<cutengine::DecodedPicture>& outcome) {
    if (!outcome)
        return outcome.error().message.empty() ? "no message" : "";
    if (outcome->representations.empty())
        return "no picture and no message";
    std::uint64_t pixels = 0;
    for (const foundation::Bitmap& bitmap : outcome->representations) {
        if (std::string fault = faultOf(bitmap); !fault.empty())
            return fault;
        pixels += static_cast<std::uint64_t>(bitmap.width()) * static_cast<std::uint64_t>(bitmap.height());
    }
    return pixels > kAdmittedPixels ? "more pixels than admitted" : "";
}

}  // namespace trimora::reliability
