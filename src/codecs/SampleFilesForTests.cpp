#include "codecs/SampleFilesForTests.h"

#include <gif_lib.h>
#include <lcms2.h>
#include <png.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

#include <jpeglib.h>

#include "testing/TemporaryFolder.h"

namespace trimora::codecs::samples {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Pixel;

namespace {

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

Pixel at(BitmapView view, int x, int y) {
    const std::uint8_t* const p = view.row(y) + x * 4;
    return {p[0], p[1], p[2], p[3]};
}

int greyOf(Pixel p) {
    return (p.red * 30 + p.green * 59 + p.blue * 11 + 50) / 100;
}

}  // namespace

Bitmap quarters(int width, int height) {
    Bitmap picture = Bitmap::create(width, height, AlphaMode::opaque).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint8_t shade = byte(40 + 30 * x / width);
            const bool right = x >= width / 2;
            const bool low = y >= height / 2;
            Pixel pixel{shade, shade, shade, 255};
            if (!low && !right)
                pixel.red = 220;
            else if (!low)
                pixel.green = 200;
            else if (!right)
                pixel.blue = 210;
            picture.setPixel(x, y, pixel);
        }
    }
    return picture;
}

Bitmap fading(int width, int height) {
    Bitmap picture = Bitmap::create(width, height, AlphaMode::straight).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint8_t alpha = byte(x * 255 / std::max(width - 1, 1));
            Pixel pixel{byte(y * 7 % 256), byte(255 - y * 5 % 256), byte((x + y) * 3 % 256), alpha};
            picture.setPixel(x, y, alpha == 0 ? Pixel{} : pixel);
        }
    }
    return picture;
}

int largestDifference(BitmapView a, BitmapView b) {
    if (a.width != b.width || a.height != b.height)
        return 1000;
    int largest = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int i = 0; i < a.width * 4; ++i)
            largest = std::max(largest, std::abs(a.row(y)[i] - b.row(y)[i]));
    }
    return largest;
}

Buffer exif(int orientation, bool littleEndian) {
    const auto o = static_cast<std::uint8_t>(orientation);
    if (littleEndian)
        return {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0, 0x12, 0x01, 3, 0, 1, 0, 0, 0, o, 0, 0, 0, 0, 0, 0, 0};
    return {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 0x01, 0x12, 0, 3, 0, 0, 0, 1, 0, o, 0, 0, 0, 0, 0, 0};
}

namespace {

void writeJpegProfile(jpeg_compress_struct& info, const Buffer& icc) {
    if (!icc.empty())
        jpeg_write_icc_profile(&info, icc.data(), static_cast<unsigned>(icc.size()));
}

void writeJpegExif(jpeg_compress_struct& info, int orientation) {
    if (orientation == 0)
        return;
    Buffer marker = {'E', 'x', 'i', 'f', 0, 0};
    const Buffer block = exif(orientation);
    marker.insert(marker.end(), block.begin(), block.end());
    jpeg_write_marker(&info, JPEG_APP0 + 1, marker.data(), static_cast<unsigned>(marker.size()));
}

Buffer jpegRow(BitmapView picture, int y, const JpegOptions& options) {
    Buffer row;
    for (int x = 0; x < picture.width; ++x) {
        const Pixel p = at(picture, x, y);
        if (options.grey)
            row.push_back(byte(greyOf(p)));
        else if (options.cmyk)  // inverted inks: 255 is no ink
            row.insert(row.end(), {p.red, p.green, p.blue, 255});
        else
            row.insert(row.end(), {p.red, p.green, p.blue});
    }
    return row;
}

/// The usual progression with the last refinement sent over and over.
std::vector<jpeg_scan_info> manyScans(int count) {
    jpeg_scan_info first{};
    first.comps_in_scan = 1;
    std::vector<jpeg_scan_info> scans = {first};
    for (int i = 1; i <= count; ++i) {
        jpeg_scan_info next{};
        next.comps_in_scan = 1;
        next.Ss = next.Se = 1 + (i - 1) % 63;
        scans.push_back(next);
    }
    return scans;
}

}  // namespace

Buffer jpeg(BitmapView picture, const JpegOptions& options) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = static_cast<JDIMENSION>(picture.width);
    info.image_height = static_cast<JDIMENSION>(picture.height);
    info.input_components = options.grey ? 1 : options.cmyk ? 4 : 3;
    info.in_color_space = options.grey ? JCS_GRAYSCALE : options.cmyk ? JCS_CMYK : JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, options.quality, TRUE);
    info.comp_info[0].h_samp_factor = options.across;
    info.comp_info[0].v_samp_factor = options.down;
    info.restart_in_rows = options.restartRows;
    info.optimize_coding = options.ownCodes ? TRUE : FALSE;
    if (options.progressive)
        jpeg_simple_progression(&info);
    std::vector<jpeg_scan_info> scans;
    if (options.emptyScans > 0) {
        scans = manyScans(options.emptyScans);
        info.scan_info = scans.data();
        info.num_scans = static_cast<int>(scans.size());
    }
    jpeg_start_compress(&info, TRUE);
    writeJpegExif(info, options.orientation);
    writeJpegProfile(info, options.icc);
    for (int y = 0; y < picture.height; ++y) {
        Buffer row = jpegRow(picture, y, options);
        JSAMPROW pointer = row.data();
        jpeg_write_scanlines(&info, &pointer, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    Buffer file(memory, memory + size);
    std::free(memory);
    return file;
}

namespace {

void append16(Buffer& to, int value) {
    to.push_back(static_cast<std::uint8_t>(value >> 8));
    to.push_back(static_cast<std::uint8_t>(value));
}

void appendSample(Buffer& to, int value, int bitDepth) {
    if (bitDepth == 16)
        append16(to, value * 257);
    else
        to.push_back(byte(value));
}

/// One row of one sample a pixel, `bitDepth` bits each.
Buffer packedRow(const std::vector<int>& values, int bitDepth) {
    Buffer row(values.size() * static_cast<std::size_t>(bitDepth) / 8 + 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t bit = i * static_cast<std::size_t>(bitDepth);
        row[bit / 8] =
            static_cast<std::uint8_t>(row[bit / 8] | values[i] << (8 - bitDepth - static_cast<int>(bit % 8)));
    }
    return row;
}

using Palette = std::map<std::uint32_t, int>;

std::uint32_t keyOf(Pixel p) {
    return static_cast<std::uint32_t>(p.red) << 24 | static_cast<std::uint32_t>(p.green) << 16 |
           static_cast<std::uint32_t>(p.blue) << 8 | p.alpha;
}

Palette paletteOf(BitmapView picture) {
    Palette palette;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x)
            palette.emplace(keyOf(at(picture, x, y)), static_cast<int>(palette.size()));
    }
    return palette;
}

Buffer pngRow(BitmapView picture, int y, const PngOptions& options, const Palette& palette) {
    std::vector<int> small;
    Buffer row;
    for (int x = 0; x < picture.width; ++x) {
        const Pixel p = at(picture, x, y);
        if (options.colourType == PNG_COLOR_TYPE_PALETTE)
            small.push_back(palette.at(keyOf(p)));
        else if (options.bitDepth < 8)
            small.push_back(greyOf(p) >> (8 - options.bitDepth));
        else if ((options.colourType & PNG_COLOR_MASK_COLOR) == 0)
            appendSample(row, greyOf(p), options.bitDepth);
        else
            for (const int value : {p.red, p.green, p.blue})
                appendSample(row, value, options.bitDepth);
        if ((options.colourType & PNG_COLOR_MASK_ALPHA) != 0)
            appendSample(row, p.alpha, options.bitDepth);
    }
    return small.empty() ? row : packedRow(small, options.bitDepth);
}

void setPalette(png_structp png, png_infop info, const Palette& palette) {
    std::vector<png_color> colours(palette.size());
    Buffer alphas(palette.size());
    for (const auto& [key, index] : palette) {
        const auto i = static_cast<std::size_t>(index);
        colours[i] = {static_cast<png_byte>(key >> 24), static_cast<png_byte>(key >> 16),
                      static_cast<png_byte>(key >> 8)};
        alphas[i] = static_cast<std::uint8_t>(key);
    }
    png_set_PLTE(png, info, colours.data(), static_cast<int>(colours.size()));
    if (std::any_of(alphas.begin(), alphas.end(), [](int alpha) { return alpha != 255; }))
        png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
}

void setKey(png_structp png, png_infop info, Pixel p, int bitDepth) {
    const int scale = bitDepth == 16 ? 257 : 1;
    const auto sample = [&](int value) { return static_cast<png_uint_16>(value * scale); };
    png_color_16 key{0, sample(p.red), sample(p.green), sample(p.blue), sample(greyOf(p))};
    png_set_tRNS(png, info, nullptr, 0, &key);
}

void appendTo(png_structp png, png_bytep data, png_size_t size) {
    auto* const file = static_cast<Buffer*>(png_get_io_ptr(png));
    file->insert(file->end(), data, data + size);
}

}  // namespace

Buffer png(BitmapView picture, const PngOptions& options) {
    Buffer file;
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(writer);
    png_set_write_fn(writer, &file, appendTo, nullptr);
    png_set_IHDR(writer, info, static_cast<png_uint_32>(picture.width),
                 static_cast<png_uint_32>(picture.height), options.bitDepth, options.colourType,
                 options.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    Palette palette;
    if (options.colourType == PNG_COLOR_TYPE_PALETTE) {
        palette = paletteOf(picture);
        setPalette(writer, info, palette);
    }
    if (options.key)
        setKey(writer, info, at(picture, 0, 0), options.bitDepth);
    if (!options.icc.empty())
        png_set_iCCP(writer, info, "profile", 0, options.icc.data(),
                     static_cast<png_uint_32>(options.icc.size()));
    std::vector<Buffer> rows;
    std::vector<png_bytep> pointers;
    rows.reserve(static_cast<std::size_t>(picture.height));
    pointers.reserve(rows.capacity());
    for (int y = 0; y < picture.height; ++y)
        rows.push_back(pngRow(picture, y, options, palette));
    for (Buffer& row : rows)
        pointers.push_back(row.data());
    png_write_info(writer, info);
    png_write_image(writer, pointers.data());
    png_write_end(writer, nullptr);
    png_destroy_write_struct(&writer, &info);
    return file;
}

void insertChunk(Buffer& png, std::string_view type, Bytes contents) {
    constexpr std::ptrdiff_t kAfterHeader = 8 + 25;
    Buffer chunk;
    const auto append32 = [&](std::uint64_t value) {
        append16(chunk, static_cast<int>(value >> 16 & 0xFFFF));
        append16(chunk, static_cast<int>(value & 0xFFFF));
    };
    append32(contents.size());
    chunk.insert(chunk.end(), type.begin(), type.end());
    chunk.insert(chunk.end(), contents.begin(), contents.end());
    std::uint32_t checksum = 0xFFFFFFFFU;
    for (std::size_t i = 4; i < chunk.size(); ++i) {
        checksum ^= chunk[i];
        for (int bit = 0; bit < 8; ++bit)
            checksum = checksum >> 1 ^ ((checksum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    append32(checksum ^ 0xFFFFFFFFU);
    png.insert(png.begin() + kAfterHeader, chunk.begin(), chunk.end());
}

Bitmap readByLibpng(const Buffer& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0)
        return {};
    image.format = PNG_FORMAT_BGRA;
    Bitmap bitmap =
        Bitmap::create(static_cast<int>(image.width), static_cast<int>(image.height), AlphaMode::straight)
            .value();
    if (png_image_finish_read(&image, nullptr, bitmap.row(0), static_cast<png_int_32>(bitmap.stride()),
                              nullptr) == 0)
        return {};
    return bitmap;
}

namespace {

/// The samples of one pixel, 0..255, in the order in which a page of this kind holds them.
std::vector<int> tiffSamples(Pixel p, const TiffOptions& options) {
    const auto multiplied = [&](int value) {
        return options.alpha == EXTRASAMPLE_ASSOCALPHA ? (value * p.alpha + 127) / 255 : value;
    };
    std::vector<int> samples;
    switch (options.photometric) {
        case PHOTOMETRIC_MINISBLACK:
            samples = {multiplied(greyOf(p))};
            break;
        case PHOTOMETRIC_MINISWHITE:
            samples = {255 - greyOf(p)};
            break;
        case PHOTOMETRIC_SEPARATED:
            return {255 - p.red, 255 - p.green, 255 - p.blue, 0};
        default:
            samples = {multiplied(p.red), multiplied(p.green), multiplied(p.blue)};
    }
    if (options.alpha >= 0)
        samples.push_back(p.alpha);
    return samples;
}

Buffer tiffPixels(BitmapView picture, const TiffOptions& options, int left, int top, int width, int height) {
    Buffer data;
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x) {
            const Pixel p = at(picture, std::min(x, picture.width - 1), std::min(y, picture.height - 1));
            for (const int value : tiffSamples(p, options)) {
                if (options.bits == 16) {
                    const auto wide = static_cast<std::uint16_t>(value * 257);
                    const auto* const raw = reinterpret_cast<const std::uint8_t*>(&wide);
                    data.insert(data.end(), raw, raw + 2);
                } else {
                    data.push_back(byte(value));
                }
            }
        }
    }
    return data;
}

void writeTiffTiles(TIFF* tiff, BitmapView picture, const TiffOptions& options) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, options.tile);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, options.tile);
    for (int y = 0; y < picture.height; y += options.tile) {
        for (int x = 0; x < picture.width; x += options.tile) {
            Buffer data = tiffPixels(picture, options, x, y, options.tile, options.tile);
            TIFFWriteTile(tiff, data.data(), static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 0,
                          0);
        }
    }
}

void writeTiffPlanes(TIFF* tiff, BitmapView picture, const TiffOptions& options, int samples) {
    for (int plane = 0; plane < samples; ++plane) {
        for (int y = 0; y < picture.height; ++y) {
            const Buffer all = tiffPixels(picture, options, 0, y, picture.width, 1);
            Buffer row;
            for (std::size_t i = static_cast<std::size_t>(plane); i < all.size();
                 i += static_cast<std::size_t>(samples))
                row.push_back(all[i]);
            TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y),
                              static_cast<std::uint16_t>(plane));
        }
    }
}

void writeTiffPage(TIFF* tiff, BitmapView picture, const TiffOptions& options) {
    const int samples = static_cast<int>(tiffSamples({}, options).size());
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, options.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, options.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, options.packing);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, options.orientation);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, options.dotsPerInch);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, options.dotsPerInch);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
                 options.separatePlanes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (options.alpha >= 0 && options.photometric != PHOTOMETRIC_SEPARATED) {
        const auto kind = static_cast<std::uint16_t>(options.alpha);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    if (!options.icc.empty())
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(options.icc.size()),
                     options.icc.data());
    if (options.tile > 0) {
        writeTiffTiles(tiff, picture, options);
        return;
    }
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 7);
    if (options.separatePlanes) {
        writeTiffPlanes(tiff, picture, options, samples);
        return;
    }
    for (int y = 0; y < picture.height; ++y) {
        Buffer row = tiffPixels(picture, options, 0, y, picture.width, 1);
        TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0);
    }
}

}  // namespace

Buffer tiff(const std::vector<TiffPicture>& pages) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.path() / "pages.tiff";
    TIFFSetWarningHandler(nullptr);
    TIFF* const tiff = TIFFOpen(path.c_str(), pages.front().options.bigEndian ? "wb" : "wl");
    for (const TiffPicture& page : pages) {
        writeTiffPage(tiff, page.straight, page.options);
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

namespace {

constexpr int kTransparentIndex = 255;

void writeGifFrame(GifFileType* gif, BitmapView picture, const GifOptions& options, const Palette& palette) {
    GraphicsControlBlock control{0, false, 10, kTransparentIndex};
    std::array<GifByteType, 4> block{};
    EGifGCBToExtension(&control, block.data());
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(block.size()), block.data());
    EGifPutImageDesc(gif, options.left, options.top, picture.width, picture.height, options.interlaced,
                     nullptr);
    std::vector<int> order;
    if (options.interlaced) {
        constexpr std::array<std::pair<int, int>, 4> kSweeps = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
        for (const auto& [first, step] : kSweeps) {
            for (int y = first; y < picture.height; y += step)
                order.push_back(y);
        }
    } else {
        for (int y = 0; y < picture.height; ++y)
            order.push_back(y);
    }
    for (const int y : order) {
        Buffer row;
        for (int x = 0; x < picture.width; ++x) {
            const Pixel p = at(picture, x, y);
            row.push_back(byte(p.alpha == 0 ? kTransparentIndex : palette.at(keyOf(p))));
        }
        EGifPutLine(gif, row.data(), picture.width);
    }
}

}  // namespace

Buffer gif(BitmapView picture, const GifOptions& options) {
    Buffer file;
    int code = 0;
    GifFileType* const gif = EGifOpen(
        &file,
        [](GifFileType* self, const GifByteType* data, int size) {
            auto* const to = static_cast<Buffer*>(self->UserData);
            to->insert(to->end(), data, data + size);
            return size;
        },
        &code);
    EGifSetGifVersion(gif, true);
    const Palette palette = paletteOf(picture);
    std::array<GifColorType, 256> colours{};
    for (const auto& [key, index] : palette)
        colours[static_cast<std::size_t>(index)] = {static_cast<GifByteType>(key >> 24),
                                                    static_cast<GifByteType>(key >> 16),
                                                    static_cast<GifByteType>(key >> 8)};
    ColorMapObject* const map = GifMakeMapObject(256, colours.data());
    EGifPutScreenDesc(gif, options.screenWidth > 0 ? options.screenWidth : picture.width,
                      options.screenHeight > 0 ? options.screenHeight : picture.height, 8, 0, map);
    GifFreeMapObject(map);
    if (options.commentBytes > 0)
        EGifPutComment(gif, std::string(options.commentBytes, 'c').c_str());
    for (int frame = 0; frame < options.frames; ++frame)
        writeGifFrame(gif, picture, options, palette);
    EGifCloseFile(gif, &code);
    return file;
}

namespace {

Buffer saved(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    Buffer bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    // Its date: the same seed is to make the same files tomorrow.
    std::fill_n(bytes.begin() + 24, 12, std::uint8_t{0});
    return bytes;
}

}  // namespace

Buffer srgbProfile() {
    return saved(cmsCreate_sRGBProfile());
}

Buffer wideProfile() {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
    cmsToneCurve* const curve = cmsBuildGamma(nullptr, 563.0 / 256);
    const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    auto* const profile = cmsCreateRGBProfile(&white, &primaries, curves.data());
    cmsFreeToneCurve(curve);
    return saved(profile);
}

Buffer greyProfile(double gamma) {
    cmsToneCurve* const curve = cmsBuildGamma(nullptr, gamma);
    auto* const profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
    cmsFreeToneCurve(curve);
    return saved(profile);
}

Buffer inkProfile(unsigned nodes) {
    auto* const profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 4.3);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    auto* const srgb = cmsCreate_sRGBProfile();
    auto* const lab = cmsCreateLab4Profile(nullptr);
    auto* const toLab = cmsCreateTransform(srgb, TYPE_RGB_16, lab, TYPE_Lab_16, INTENT_PERCEPTUAL, 0);
    cmsPipeline* const pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* const table = cmsStageAllocCLut16bit(nullptr, nodes, 4, 3, nullptr);
    cmsStageSampleCLut16bit(
        table,
        [](const cmsUInt16Number* inks, cmsUInt16Number* out, void* transform) -> cmsInt32Number {
            std::array<cmsUInt16Number, 3> rgb{};
            for (std::size_t i = 0; i < 3; ++i)
                rgb[i] = static_cast<cmsUInt16Number>((65535U - inks[i]) * (65535U - inks[3]) / 65535U);
            cmsDoTransform(transform, rgb.data(), out, 1);
            return TRUE;
        },
        toLab, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 4, nullptr));
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, nullptr));
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    cmsDeleteTransform(toLab);
    cmsCloseProfile(lab);
    cmsCloseProfile(srgb);
    return saved(profile);
}

}  // namespace trimora::codecs::samples
