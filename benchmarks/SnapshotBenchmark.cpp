// A mask of 2000 x 2000 with ten strokes: kept as a PNG file in memory and read back, by everything
// that can, from nothing and after one more stroke; and the snapshot for the screen after one more dab of the
// brush.

#include <png.h>
#include <spng.h>

#include <QBuffer>
#include <QImage>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <random>
#include <string>
#include <vector>

#include "Comparison.h"
#include "cutengine/kernels/MaskCodec.h"
#include "cutengine/kernels/MaskSnapshot.h"
#include "cutengine/kernels/StrokePainter.h"
#include "foundation/Bitmap.h"

namespace trimora::benchmarks {
namespace {

using namespace cutengine::kernels;
using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;
using Bytes = std::vector<std::uint8_t>;

constexpr int kSide = 2000;

std::vector<Rect> randomStroke(std::mt19937& random) {
    const auto between = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
    };
    const double d = between(10, 200);
    double x = between(100, 1900);
    double y = between(100, 1900);
    double heading = between(0, 2 * M_PI);
    const double bend = between(-0.004, 0.004);
    std::vector<Rect> stamps;
    for (double done = 0; done < 1500; done += d / 66) {
        stamps.push_back({x - d / 2, y - d / 2, d, d});
        heading += bend * d / 66;
        x += d / 66 * std::cos(heading);
        y += d / 66 * std::sin(heading);
    }
    return stamps;
}

Bitmap tenStrokes(const BrushStamp* soft) {
    std::mt19937 random(3);
    Bitmap plane = std::move(Bitmap::createFilled(kSide, kSide, Pixel{0, 0, 0, 255})).value();
    for (int k = 0; k < 10; ++k) {
        const Pixel fill{0, 0, 0, static_cast<std::uint8_t>(k % 4 == 3 ? 255 : 0)};
        paintStamps(plane.view(), randomStroke(random), {fill, soft});
    }
    return plane;
}

void appendBytes(png_structp png, png_bytep data, png_size_t size) {
    auto* const file = static_cast<Bytes*>(png_get_io_ptr(png));
    file->insert(file->end(), data, data + size);
}

Bytes byLibpng(const Bitmap& plane, int level, int filters) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, appendBytes, nullptr);
    png_set_compression_level(png, level);
    if (filters != 0)
        png_set_filter(png, 0, filters);
    png_set_IHDR(png, info, kSide, kSide, 8, PNG_COLOR_TYPE_RGBA, 0, 0, 0);
    png_write_info(png, info);
    for (int y = 0; y < kSide; ++y)
        png_write_row(png, plane.row(y));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

Bytes bySpng(const Bitmap& plane, int level) {
    spng_ctx* const context = spng_ctx_new(SPNG_CTX_ENCODER);
    spng_set_option(context, SPNG_ENCODE_TO_BUFFER, 1);
    spng_set_option(context, SPNG_IMG_COMPRESSION_LEVEL, level);
    spng_ihdr header{kSide, kSide, 8, SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 0, 0, 0};
    spng_set_ihdr(context, &header);
    static_assert(kSide * 4 % 64 == 0, "rows without padding");
    spng_encode_image(context, plane.row(0), std::size_t{kSide} * kSide * 4, SPNG_FMT_PNG,
                      SPNG_ENCODE_FINALIZE);
    std::size_t size = 0;
    int failure = 0;
    auto* const buffer = static_cast<std::uint8_t*>(spng_get_png_buffer(context, &size, &failure));
    Bytes file(buffer, buffer + size);
    std::free(buffer);  // NOLINT: the library's buffer is given back so
    spng_ctx_free(context);
    return file;
}

Bytes byQt(const Bitmap& plane) {
    const QImage image(plane.row(0), kSide, kSide, static_cast<qsizetype>(plane.stride()),
                       QImage::Format_ARGB32_Premultiplied);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return {buffer.data().begin(), buffer.data().end()};
}

Bytes byOpenCv(const Bitmap& plane) {
    const cv::Mat image(kSide, kSide, CV_8UC4, const_cast<std::uint8_t*>(plane.row(0)), plane.stride());
    Bytes file;
    cv::imencode(".png", image, file);
    return file;
}

std::string named(const std::string& name, const Bytes& file) {
    return name + ", " + std::to_string(file.size()) + " bytes";
}

void compareWriting(const std::string& job, const Bitmap& plane) {
    const auto keep = std::make_shared<Bytes>();
    const auto add = [&](Comparison& table, const std::string& name, const std::function<Bytes()>& write) {
        table.add(named(name, write()), [keep, write] { *keep = write(); });
    };
    Comparison table(job, 9, Timed::byProcessor);
    table.warm();
    add(table, "Trimora", [&] { return std::move(encodeMask(plane.view())).value(); });
    add(table, "libpng 6", [&] { return byLibpng(plane, 6, 0); });
    add(table, "libpng 1, no filter", [&] { return byLibpng(plane, 1, PNG_FILTER_NONE); });
    add(table, "libspng 1", [&] { return bySpng(plane, 1); });
    add(table, "Qt", [&] { return byQt(plane); });
    add(table, "OpenCV", [&] { return byOpenCv(plane); });
    table.print();
}

Bytes readByLibpng(const Bytes& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    png_image_begin_read_from_memory(&image, file.data(), file.size());
    image.format = PNG_FORMAT_BGRA;
    Bytes pixels(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr);
    return pixels;
}

Bytes readBySpng(const Bytes& file) {
    spng_ctx* const context = spng_ctx_new(0);
    spng_set_png_buffer(context, file.data(), file.size());
    Bytes pixels(std::size_t{kSide} * kSide * 4);
    spng_decode_image(context, pixels.data(), pixels.size(), SPNG_FMT_RGBA8, 0);
    spng_ctx_free(context);
    return pixels;
}

void compareReading(const std::string& job, const Bitmap& plane) {
    const Bytes ours = std::move(encodeMask(plane.view())).value();
    const Bytes theirs = byLibpng(plane, 6, 0);
    const auto keep = std::make_shared<Bytes>();
    Comparison table(job, 9, Timed::byProcessor);
    table.warm();
    table.add("Trimora, its own file", [&] { (void)decodeMask(ours, kSide); });
    table.add("Trimora, libpng's file", [&] { (void)decodeMask(theirs, kSide); });
    table.add("libpng", [&, keep] { *keep = readByLibpng(theirs); });
    table.add("libspng", [&, keep] { *keep = readBySpng(theirs); });
    table.add("Qt", [&] { (void)QImage::fromData(theirs.data(), static_cast<int>(theirs.size())); });
    table.add("OpenCV", [&] { (void)cv::imdecode(theirs, cv::IMREAD_UNCHANGED); });
    table.print();
}

// A mask before and after one more stroke, 200 pixels long.
struct OneMore {
    std::array<const Bitmap*, 2> planes;
    foundation::IntRect changed;
};

void compareRecording(const std::string& job, const OneMore& stroke) {
    const auto files = std::make_shared<MaskFiles>();
    (void)files->write(stroke.planes[0]->view(), stroke.planes[0]->view().bounds());
    const auto keep = std::make_shared<Bytes>();
    const auto turn = std::make_shared<std::size_t>(0);
    Comparison table(job, 31, Timed::byProcessor);
    table.add("Trimora, what changed",
              [=] { *keep = files->write(stroke.planes[++*turn % 2]->view(), stroke.changed).value(); });
    table.add("Trimora, from nothing", [=] { *keep = encodeMask(stroke.planes[1]->view()).value(); });
    table.add("libpng 1, no filter", [=] { *keep = byLibpng(*stroke.planes[1], 1, PNG_FILTER_NONE); });
    table.add("Qt", [=] { *keep = byQt(*stroke.planes[1]); });
    table.print();
}

void compareUndoing(const std::string& job, const OneMore& stroke) {
    const auto files = std::make_shared<MaskFiles>();
    std::array<Bytes, 2> ours;
    std::array<Bytes, 2> theirs;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        ours[i] = files->write(stroke.planes[i]->view(), stroke.planes[i]->view().bounds()).value();
        theirs[i] = byLibpng(*stroke.planes[i], 6, 0);
    }
    const auto turn = std::make_shared<std::size_t>(1);
    Comparison table(job, 31, Timed::byProcessor);
    table.add("Trimora, what differs",
              [=, &ours] { (void)files->read(ours[++*turn % 2], kSide, foundation::IntRect{}); });
    table.add("Trimora, all of it", [&] { (void)decodeMask(ours[0], kSide); });
    table.add("libpng", [&] { (void)readByLibpng(theirs[0]); });
    table.add("Qt", [&] { (void)QImage::fromData(theirs[0].data(), static_cast<int>(theirs[0].size())); });
    table.print();
}

void compareOneMoreStroke(const std::string& kind, const Bitmap& before, const BrushStamp* soft) {
    constexpr double kDiameter = 70;
    constexpr int kLength = 200;
    Bitmap after = std::move(before.clone()).value();
    std::vector<Rect> stamps;
    for (double done = 0; done < kLength; done += kDiameter / 66)
        stamps.push_back({700 + done * 0.8, 900 + done * 0.6, kDiameter, kDiameter});
    const auto changed = paintStamps(after.view(), stamps, {Pixel{}, soft});
    const OneMore stroke{{&before, &after}, changed};
    compareRecording("one more " + kind + " stroke of 200 pixels, recorded", stroke);
    compareUndoing("one more " + kind + " stroke of 200 pixels, undone and redone", stroke);
}

void compareSnapshots(const Bitmap& plane) {
    const auto snapshotter = std::make_shared<MaskSnapshotter>();
    (void)snapshotter->take(plane.view(), {});
    Comparison table("snapshot for the screen", 9, Timed::byProcessor);
    table.add("Trimora, 30 x 30 changed", [=, &plane] {
        (void)snapshotter->take(plane.view(), {700, 700, 30, 30});
    });
    table.add("Trimora, 256 x 256 changed", [=, &plane] {
        (void)snapshotter->take(plane.view(), {700, 700, 256, 256});
    });
    table.add("Trimora, the whole plane",
              [=, &plane] { (void)snapshotter->take(plane.view(), plane.view().bounds()); });
    table.add("a copy of the plane", [&plane] { (void)plane.clone(); });
    table.print();
}

}  // namespace
}  // namespace trimora::benchmarks

int main() {
    using namespace trimora::benchmarks;
    const trimora::cutengine::kernels::BrushStamp soft(200, 0.5F);
    const Bitmap hard = tenStrokes(nullptr);
    const Bitmap smooth = tenStrokes(&soft);
    compareWriting("mask of ten hard strokes to PNG", hard);
    compareReading("mask of ten hard strokes from PNG", hard);
    compareWriting("mask of ten soft strokes to PNG", smooth);
    compareReading("mask of ten soft strokes from PNG", smooth);
    compareOneMoreStroke("hard", hard, nullptr);
    compareOneMoreStroke("soft", smooth, &soft);
    compareSnapshots(hard);
}
