// Opening and saving a picture of 24 megapixels beside the format's library alone and three programs'
// libraries. Everybody reads from memory and writes to memory; every result is B,G,R,A or R,G,B,A of 8 bits.

#include <png.h>
#include <spng.h>
#include <vips/vips.h>

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <utility>
#include <vector>

#include <jpeglib.h>

#include "Comparison.h"
#include "Photograph.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PngEncoder.h"
#include "foundation/ThreadQueues.h"

namespace {

using namespace trimora;
using foundation::Bitmap;
using Buffer = std::vector<std::uint8_t>;

constexpr int kUsualWidth = 6000;
constexpr int kUsualHeight = 4000;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

cv::Mat wrapped(Bitmap& bitmap) {
    return {bitmap.height(), bitmap.width(), CV_8UC4, bitmap.row(0), bitmap.stride()};
}

QImage wrappedForQt(Bitmap& bitmap) {
    return {bitmap.row(0), bitmap.width(), bitmap.height(), static_cast<qsizetype>(bitmap.stride()),
            QImage::Format_ARGB32};
}

void decodeByJpegTurbo(const Buffer& file, Bitmap& to) {
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, file.data(), file.size());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_BGRA;
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = to.row(static_cast<int>(info.output_scanline));
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
}

void decodeByLibpng(const Buffer& file, Bitmap& to) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0)
        fail("libpng");
    image.format = PNG_FORMAT_BGRA;
    if (png_image_finish_read(&image, nullptr, to.row(0), static_cast<png_int_32>(to.stride()), nullptr) == 0)
        fail("libpng");
}

void decodeBySpng(const Buffer& file, Buffer& to) {
    spng_ctx* const context = spng_ctx_new(0);
    spng_set_png_buffer(context, file.data(), file.size());
    if (spng_decode_image(context, to.data(), to.size(), SPNG_FMT_RGBA8, SPNG_DECODE_TRNS) != 0)
        fail("libspng");
    spng_ctx_free(context);
}

void decodeByQt(const Buffer& file, int width) {
    QBuffer device;
    device.setData(reinterpret_cast<const char*>(file.data()), static_cast<int>(file.size()));
    QImageReader reader(&device);
    const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.width() != width)
        fail("Qt");
}

void decodeByOpenCv(const Buffer& file, int width) {
    cv::Mat picture = cv::imdecode(file, cv::IMREAD_UNCHANGED);
    if (picture.channels() == 3)
        cv::cvtColor(picture, picture, cv::COLOR_BGR2BGRA);
    if (picture.cols != width)
        fail("OpenCV");
}

void decodeByUs(codecs::PictureFileDecoder& decoder, const Buffer& file) {
    if (!decoder.decodeBytes(file))
        fail("Trimora");
}

void compareLoading(const std::string& name, const Buffer& file, const std::string& libraryName,
                    const std::function<void()>& library, codecs::PictureFileDecoder& decoder, int width) {
    benchmarks::Comparison("load " + name)
        .add("Trimora", [&] { decodeByUs(decoder, file); })
        .add(libraryName + " alone", library)
        .add("Qt", [&] { decodeByQt(file, width); })
        .add("OpenCV", [&] { decodeByOpenCv(file, width); })
        .print();
}

std::size_t encodeByUs(codecs::PngEncoder& encoder, Bitmap& picture) {
    Buffer file;
    const auto outcome = encoder.encodePng(picture.view(), [&](std::span<const std::uint8_t> bytes) {
        file.insert(file.end(), bytes.begin(), bytes.end());
        return foundation::Result<void>();
    });
    return outcome ? file.size() : 0;
}

std::size_t encodeByQt(Bitmap& picture) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    wrappedForQt(picture).save(&device, "PNG");
    return static_cast<std::size_t>(device.size());
}

std::size_t encodeByOpenCv(Bitmap& picture) {
    Buffer file;
    cv::imencode(".png", wrapped(picture), file);
    return file.size();
}

std::size_t encodeByVips(Bitmap& picture) {
    VipsImage* const image = vips_image_new_from_memory(
        picture.row(0), picture.stride() * static_cast<std::size_t>(picture.height()),
        static_cast<int>(picture.stride() / 4), picture.height(), 4, VIPS_FORMAT_UCHAR);
    void* file = nullptr;
    std::size_t size = 0;
    if (vips_pngsave_buffer(image, &file, &size, nullptr) != 0)
        fail("libvips");
    g_free(file);
    g_object_unref(image);
    return size;
}

void compareSaving(const std::string& name, Bitmap& picture, codecs::PngEncoder& alone,
                   codecs::PngEncoder& shared) {
    std::printf("bytes of %s: Trimora %zu, Qt %zu, OpenCV %zu, libvips %zu\n", name.c_str(),
                encodeByUs(shared, picture), encodeByQt(picture), encodeByOpenCv(picture),
                encodeByVips(picture));
    benchmarks::Comparison("save " + name, 3)
        .add("Trimora, every core", [&] { encodeByUs(shared, picture); })
        .add("Trimora, one core", [&] { encodeByUs(alone, picture); })
        .add("Qt", [&] { encodeByQt(picture); })
        .add("OpenCV", [&] { encodeByOpenCv(picture); })
        .add("libvips", [&] { encodeByVips(picture); })
        .print();
}

/// The picture with a soft hole: opaque, clear and half-clear parts, as a cut-out has.
Bitmap cutOut(const Bitmap& picture) {
    Bitmap made = picture.clone().value();
    made.setAlphaMode(foundation::AlphaMode::straight);
    const int width = picture.width();
    const int height = picture.height();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int away = std::abs(x - width / 2) + std::abs(y - height / 2);
            const int alpha = std::clamp((away - width / 4) * 2, 0, 255);
            foundation::Pixel pixel = picture.pixel(x, y);
            pixel.alpha = static_cast<std::uint8_t>(alpha);
            made.setPixel(x, y, alpha == 0 ? foundation::Pixel{} : pixel);
        }
    }
    return made;
}

Buffer bytesOf(const char* path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Bitmap pictureFrom(codecs::PictureFileDecoder& decoder, const char* path) {
    auto decoded = decoder.decodeBytes(bytesOf(path));
    if (!decoded)
        fail(path);
    return std::move(decoded->representations.front());
}

}  // namespace

// usage: picture_files_benchmark [PICTURE]   (an opaque one; without it one of 24 megapixels is made up)
int main(int argc, char** argv) {
    if (VIPS_INIT(argv[0]) != 0)
        fail("libvips");
    QImageReader::setAllocationLimit(0);
    foundation::InlineWorkers one;
    foundation::ThreadWorkers all;
    codecs::PictureFileDecoder decoder(all);
    Bitmap picture =
        argc > 1 ? pictureFrom(decoder, argv[1]) : benchmarks::photograph(kUsualWidth, kUsualHeight);
    const int width = picture.width();
    Bitmap cut = cutOut(picture);
    Bitmap target = Bitmap::create(width, picture.height()).value();
    Buffer tight(static_cast<std::size_t>(width) * static_cast<std::size_t>(picture.height()) * 4);

    Buffer file;
    cv::imencode(".jpg", wrapped(picture), file, {cv::IMWRITE_JPEG_QUALITY, 92});
    compareLoading(
        "a JPEG", file, "libjpeg-turbo", [&] { decodeByJpegTurbo(file, target); }, decoder, width);
    for (Bitmap* const source : {&picture, &cut}) {
        cv::imencode(".png", wrapped(*source), file);
        const std::string name = source == &cut ? "a cut-out as PNG" : "a PNG";
        compareLoading(
            name, file, "libpng", [&] { decodeByLibpng(file, target); }, decoder, width);
        compareLoading(
            name, file, "libspng", [&] { decodeBySpng(file, tight); }, decoder, width);
    }
    codecs::PngEncoder alone(one);
    codecs::PngEncoder shared(all);
    compareSaving("a picture", picture, alone, shared);
    compareSaving("a cut-out", cut, alone, shared);
}
