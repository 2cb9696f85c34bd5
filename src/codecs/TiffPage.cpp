#include "codecs/TiffPage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "codecs/PixelRows.h"
#include "codecs/WideRows.h"

namespace trimora::codecs {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Error;
using foundation::MutableBitmapView;
using foundation::Result;

constexpr int kWideRowsHeld = 64;
constexpr int kMostSamples = 64;
constexpr std::uint64_t kMostTileBytes = std::uint64_t{64} << 20;
constexpr std::uint32_t kFewestBandRows = 16;

enum class TiffAlpha : std::uint8_t { none, straight, premultiplied };

/// How the samples of a page lie in the file.
struct Layout {
    int width = 0;
    int height = 0;
    int bits = 0;
    int samples = 0;  ///< a pixel
    std::uint16_t photometric = 0;
    ColourModel model = ColourModel::rgb;
    TiffAlpha alpha = TiffAlpha::none;

    [[nodiscard]] int colours() const {
        return model == ColourModel::grey ? 1 : model == ColourModel::rgb ? 3 : 4;
    }
    [[nodiscard]] bool isWide() const { return bits == 16 && model != ColourModel::cmyk; }
    [[nodiscard]] std::size_t bytesPerPixel() const {
        return static_cast<std::size_t>(samples) * static_cast<std::size_t>(bits) / 8;
    }
};

ColourModel modelOf(std::uint16_t photometric) {
    switch (photometric) {
        case PHOTOMETRIC_MINISBLACK:
        case PHOTOMETRIC_MINISWHITE:
            return ColourModel::grey;
        case PHOTOMETRIC_SEPARATED:
            return ColourModel::cmyk;
        default:
            return ColourModel::rgb;
    }
}

/// What the first sample after the colours means. One of unstated meaning is not transparency.
TiffAlpha alphaOf(const TiffFile& file) {
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    if (file.tiff().GetFieldDefaulted(file.handle(), TIFFTAG_EXTRASAMPLES, &count, &kinds) != 1 || count == 0)
        return TiffAlpha::none;
    if (kinds[0] == EXTRASAMPLE_ASSOCALPHA)
        return TiffAlpha::premultiplied;
    return kinds[0] == EXTRASAMPLE_UNASSALPHA ? TiffAlpha::straight : TiffAlpha::none;
}

Layout layoutOf(const TiffFile& file) {
    Layout layout;
    layout.width = static_cast<int>(file.tag<std::uint32_t>(TIFFTAG_IMAGEWIDTH));
    layout.height = static_cast<int>(file.tag<std::uint32_t>(TIFFTAG_IMAGELENGTH));
    layout.bits = file.tag<std::uint16_t>(TIFFTAG_BITSPERSAMPLE);
    layout.samples = file.tag<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL);
    layout.photometric = file.tag<std::uint16_t>(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    layout.model = modelOf(layout.photometric);
    if (layout.model != ColourModel::cmyk && layout.samples > layout.colours())
        layout.alpha = alphaOf(file);
    return layout;
}

/// Whether the samples can be taken as they are, rather than through the library's conversion.
bool isPlain(const TiffFile& file, const Layout& layout) {
    const auto photometric = layout.photometric;
    const bool knownColours = photometric == PHOTOMETRIC_MINISBLACK ||
                              photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_RGB ||
                              photometric == PHOTOMETRIC_SEPARATED;
    const auto format = file.tag<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    return knownColours && (layout.bits == 8 || layout.bits == 16) && layout.samples >= layout.colours() &&
           layout.samples <= kMostSamples &&
           file.tag<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_CONTIG &&
           (format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID) &&
           (layout.model != ColourModel::cmyk ||
            file.tag<std::uint16_t>(TIFFTAG_INKSET, INKSET_CMYK) == INKSET_CMYK);
}

/// One pixel of a file of 8 bits a sample as B,G,R,A, or as its four inks.
void putPixel(const std::uint8_t* from, const Layout& layout, std::uint8_t* to) {
    switch (layout.model) {
        case ColourModel::grey:
            to[0] = to[1] = to[2] = from[0];
            break;
        case ColourModel::rgb:
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
            break;
        default:
            std::memcpy(to, from, 4);
            return;
    }
    to[3] = layout.alpha == TiffAlpha::none ? 255 : from[layout.colours()];
}

void invertColours(std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count * 4; ++i)
        row[i] = i % 4 == 3 ? row[i] : static_cast<std::uint8_t>(~row[i]);
}

void putRow(const std::uint8_t* from, const Layout& layout, std::uint8_t* to, std::size_t count) {
    const auto step = static_cast<std::size_t>(layout.samples);
    for (std::size_t i = 0; i < count; ++i)
        putPixel(from + i * step, layout, to + i * 4);
    if (layout.photometric == PHOTOMETRIC_MINISWHITE)
        invertColours(to, count);
    if (layout.alpha == TiffAlpha::premultiplied)
        unpremultiply(to, count);
}

/// Inks of 16 bits, narrowed to 8.
void putWideInks(const std::uint16_t* from, const Layout& layout, std::uint8_t* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += layout.samples) {
        for (int ink = 0; ink < 4; ++ink)
            *to++ = narrowed(from[ink]);
    }
}

std::uint16_t wideDivided(std::uint16_t colour, std::uint16_t alpha) {
    if (alpha == 0)
        return 0;
    return static_cast<std::uint16_t>(
        std::min<std::uint64_t>((std::uint64_t{colour} * 65535 + alpha / 2) / alpha, 65535));
}

/// One row of 16 bits a sample as R,G,B,A of 16 bits, straight.
void putWideRow(const std::uint16_t* from, const Layout& layout, std::uint16_t* to, std::size_t count) {
    const int colours = layout.colours();
    const std::uint16_t flip = layout.photometric == PHOTOMETRIC_MINISWHITE ? 0xFFFF : 0;
    for (std::size_t i = 0; i < count; ++i, from += layout.samples, to += 4) {
        to[3] = layout.alpha == TiffAlpha::none ? std::uint16_t{0xFFFF} : from[colours];
        for (int c = 0; c < 3; ++c) {
            const auto value = static_cast<std::uint16_t>(from[colours == 1 ? 0 : c] ^ flip);
            to[c] = layout.alpha == TiffAlpha::premultiplied ? wideDivided(value, to[3]) : value;
        }
    }
}

/// Puts pieces of rows where they belong, whatever the depth.
class PlainTarget {
 public:
    PlainTarget(const Layout& layout, MutableBitmapView to, const ColourProfile* profile,
                foundation::Workers& workers, int rowsAtOnce)
        : layout_(layout), to_(to) {
        if (layout.isWide())
            wide_.emplace(to, profile, workers, rowsAtOnce);
    }

    void put(const std::uint8_t* samples, int x, int y, int count) {
        const auto pixels = static_cast<std::size_t>(count);
        const auto offset = static_cast<std::size_t>(x) * 4;
        if (layout_.bits == 8)
            putRow(samples, layout_, to_.row(y) + offset, pixels);
        else if (wide_)
            putWideRow(reinterpret_cast<const std::uint16_t*>(samples), layout_, wide_->row(y) + offset,
                       pixels);
        else
            putWideInks(reinterpret_cast<const std::uint16_t*>(samples), layout_, to_.row(y) + offset,
                        pixels);
    }

    void finish() {
        if (wide_)
            wide_->flush();
    }

 private:
    const Layout& layout_;
    MutableBitmapView to_;
    std::optional<WideRows> wide_;
};

/// Reads rows of strips; returns how many.
int readStrips(const TiffFile& file, const Layout& layout, PlainTarget& target) {
    const auto size =
        static_cast<std::size_t>(std::max<tmsize_t>(file.tiff().ScanlineSize(file.handle()), 0));
    if (size < static_cast<std::size_t>(layout.width) * layout.bytesPerPixel())
        return 0;
    std::vector<std::uint8_t> row(size);
    for (int y = 0; y < layout.height; ++y) {
        if (file.tiff().ReadScanline(file.handle(), row.data(), static_cast<std::uint32_t>(y), 0) < 0)
            return y;
        target.put(row.data(), 0, y, layout.width);
    }
    return layout.height;
}

/// Reads rows of tiles; returns how many rows of pixels are complete.
int readTiles(const TiffFile& file, const Layout& layout, PlainTarget& target) {
    const auto side = [&](std::uint32_t tag) {
        return static_cast<std::int64_t>(file.tag<std::uint32_t>(tag));
    };
    const std::int64_t tileWidth = side(TIFFTAG_TILEWIDTH);
    const std::int64_t tileHeight = side(TIFFTAG_TILELENGTH);
    const std::uint64_t size = file.tiff().TileSize64(file.handle());
    const std::size_t stride = static_cast<std::size_t>(tileWidth) * layout.bytesPerPixel();
    if (tileWidth < 1 || tileHeight < 1 || size > kMostTileBytes ||
        size < stride * static_cast<std::uint64_t>(tileHeight))
        return 0;
    std::vector<std::uint8_t> tile(size);
    for (std::int64_t top = 0; top < layout.height; top += tileHeight) {
        const int rows = static_cast<int>(std::min(tileHeight, layout.height - top));
        for (std::int64_t left = 0; left < layout.width; left += tileWidth) {
            if (file.tiff().ReadTile(file.handle(), tile.data(), static_cast<std::uint32_t>(left),
                                     static_cast<std::uint32_t>(top), 0, 0) < 0)
                return static_cast<int>(top);
            const int count = static_cast<int>(std::min(tileWidth, layout.width - left));
            for (int y = 0; y < rows; ++y)
                target.put(tile.data() + stride * static_cast<std::size_t>(y), static_cast<int>(left),
                           static_cast<int>(top) + y, count);
        }
    }
    return layout.height;
}

int readPlain(const TiffFile& file, const Layout& layout, MutableBitmapView to, const ColourProfile* profile,
              foundation::Workers& workers) {
    const bool tiled = file.tiff().IsTiled(file.handle()) != 0;
    const std::uint32_t rowsAtOnce = tiled ? file.tag<std::uint32_t>(TIFFTAG_TILELENGTH) : kWideRowsHeld;
    PlainTarget target(layout, to, profile, workers,
                       static_cast<int>(std::clamp<std::uint32_t>(
                           rowsAtOnce, 1, static_cast<std::uint32_t>(layout.height))));
    const int rows = tiled ? readTiles(file, layout, target) : readStrips(file, layout, target);
    target.finish();
    return rows;
}

/// The library's own conversion, band by band: bands end where strips or tiles do, so that none is decoded
/// twice. Returns how many rows could be read.
int readConverted(const TiffFile& file, MutableBitmapView to) {
    std::array<char, 1024> reason{};
    TIFFRGBAImage image;
    if (file.tiff().RGBAImageBegin(&image, file.handle(), 1, reason.data()) == 0)
        return 0;
    image.req_orientation = image.orientation;  // turning is done later, with every other format
    const auto height = static_cast<std::uint32_t>(to.height);
    const std::uint32_t unit = std::clamp<std::uint32_t>(
        file.tag<std::uint32_t>(
            file.tiff().IsTiled(file.handle()) != 0 ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, height),
        1, height);
    const std::uint32_t bandRows = std::min(height, (kFewestBandRows + unit - 1) / unit * unit);
    const auto count = static_cast<std::size_t>(to.width);
    std::vector<std::uint32_t> raster(count * bandRows);
    std::uint32_t y = 0;
    for (; y < height; y += bandRows) {
        const std::uint32_t rows = std::min(bandRows, height - y);
        image.row_offset = static_cast<int>(y);
        if (file.tiff().RGBAImageGet(&image, raster.data(), static_cast<std::uint32_t>(to.width), rows) == 0)
            break;
        for (std::uint32_t i = 0; i < rows; ++i) {
            std::uint8_t* const row = to.row(static_cast<int>(y + i));
            std::memcpy(row, raster.data() + count * i, count * 4);
            exchangeRedAndBlue(row, count);
            unpremultiply(row, count);
        }
    }
    file.tiff().RGBAImageEnd(&image);
    return static_cast<int>(std::min(y, height));
}

}  // namespace

Result<Bitmap> decodeTiffPage(const TiffFile& file, bool& whole, foundation::Workers& workers) {
    const Layout layout = layoutOf(file);
    const bool plain = isPlain(file, layout);
    // The library's conversion may find transparency where the tags tell of none.
    const bool opaque = plain && layout.alpha == TiffAlpha::none;
    Result<Bitmap> pixels =
        Bitmap::create(layout.width, layout.height, opaque ? AlphaMode::opaque : AlphaMode::straight);
    if (!pixels)
        return pixels;
    const ColourModel model = plain || layout.model == ColourModel::grey ? layout.model : ColourModel::rgb;
    const bool wide = plain && layout.isWide();
    const auto profile =
        ColourProfile::fromIcc(file.icc(), model, wide ? SampleDepth::sixteen : SampleDepth::eight);
    const int rows = plain ? readPlain(file, layout, pixels->view(), profile.get(), workers)
                           : readConverted(file, pixels->view());
    if (rows == 0)
        return Error{"the TIFF file cannot be read: " +
                     (file.complaint().empty() ? std::string("its kind is not known") : file.complaint())};
    whole = rows == layout.height;
    const Orientation orientation = orientationOf(file.tag<std::uint16_t>(TIFFTAG_ORIENTATION, 1));
    return finished({std::move(*pixels), rows, model, orientation}, wide ? nullptr : profile.get(), workers);
}

}  // namespace trimora::codecs
