#include <cairo.h>

#include <QImage>
#include <QPainter>
#include <cstring>
#include <opencv2/imgproc.hpp>
#include <string>

#include "Comparison.h"
#include "PaintedMask.h"
#include "Photograph.h"
#include "cutengine/kernels/ViewRenderer.h"
#include "foundation/ThreadQueues.h"

namespace {

using namespace trimora;
namespace kernels = cutengine::kernels;
using foundation::AffineTransform;
using foundation::Bitmap;
using foundation::BitmapView;

constexpr int kViewWidth = 1600;
constexpr int kViewHeight = 1000;

QImage wrapped(BitmapView view, QImage::Format format) {
    return {view.pixels, view.width, view.height, static_cast<qsizetype>(view.stride), format};
}

/// What all contestants draw from: the picture at the level that suits the zoom, as ours chooses it.
struct Scene {
    BitmapView picture;
    BitmapView tile;
    Bitmap cutOut;  ///< the picture with its mask put in: what the peers may keep ready between strokes
    double scale;   ///< device pixels per pixel of the level
    double x;       ///< device place of the level's top left corner
    double y;
};

/// Qt's way: the checkerboard, then the picture with its mask already in its alpha.
void paintWithQt(QImage& target, const Scene& scene) {
    QPainter painter(&target);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(target.rect(), QBrush(wrapped(scene.tile, QImage::Format_RGB32)));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(scene.x, scene.y);
    painter.scale(scene.scale, scene.scale);
    painter.drawImage(0, 0, wrapped(scene.cutOut.view(), QImage::Format_ARGB32_Premultiplied));
}

/// Qt's way with a mask that has just changed: the picture, its alpha multiplied by the stretched mask,
/// put over the checkerboard.
void paintMaskedWithQt(QImage& target, QImage& layer, const QImage& mask, const Scene& scene) {
    QPainter masked(&layer);
    masked.setCompositionMode(QPainter::CompositionMode_Source);
    masked.fillRect(layer.rect(), Qt::transparent);
    masked.setRenderHint(QPainter::SmoothPixmapTransform);
    masked.translate(scene.x, scene.y);
    masked.scale(scene.scale, scene.scale);
    masked.drawImage(0, 0, wrapped(scene.picture, QImage::Format_RGB32));
    masked.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    masked.drawImage(QRectF(0, 0, scene.picture.width, scene.picture.height), mask);
    masked.end();
    QPainter painter(&target);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(target.rect(), QBrush(wrapped(scene.tile, QImage::Format_RGB32)));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(0, 0, layer);
}

void paintWithCairo(cairo_surface_t* target, cairo_surface_t* cutOut, cairo_surface_t* tile,
                    const Scene& scene) {
    cairo_t* const context = cairo_create(target);
    cairo_set_source_surface(context, tile, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    cairo_paint(context);
    cairo_set_operator(context, CAIRO_OPERATOR_OVER);
    cairo_translate(context, scene.x, scene.y);
    cairo_scale(context, scene.scale, scene.scale);
    cairo_set_source_surface(context, cutOut, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_BILINEAR);
    cairo_paint(context);
    cairo_destroy(context);
}

cairo_surface_t* surfaceOf(BitmapView view, cairo_format_t format) {
    return cairo_image_surface_create_for_data(const_cast<unsigned char*>(view.pixels), format, view.width,
                                               view.height, static_cast<int>(view.stride));
}

/// OpenCV's way: picture and mask warped, then blended over the checkerboard.
void paintWithOpenCv(cv::Mat& target, const cv::Mat& picture, const cv::Mat& mask, const cv::Mat& pattern,
                     const Scene& scene) {
    const auto warp = [&](const cv::Mat& from, cv::Mat& to) {
        const double scale = scene.scale * scene.picture.width / from.cols;
        const double down = scene.scale * scene.picture.height / from.rows;
        const cv::Matx23d toView(scale, 0, scene.x + scale / 2 - 0.5, 0, down, scene.y + down / 2 - 0.5);
        cv::warpAffine(from, to, toView, target.size(), cv::INTER_LINEAR);
    };
    static cv::Mat shown;
    static cv::Mat weight;
    static cv::Mat weights[2];
    warp(picture, shown);
    warp(mask, weight);
    weight.convertTo(weights[0], CV_32F, 1.0 / 255);
    cv::subtract(1.0, weights[0], weights[1]);
    cv::blendLinear(shown, pattern, weights[0], weights[1], target);
}

/// The level with the mask stretched over it as alpha.
Bitmap cutOutOf(BitmapView level, const cv::Mat& mask) {
    Bitmap cutOut = Bitmap::create(level.width, level.height).value();
    cv::Mat stretched;
    cv::resize(mask, stretched, {level.width, level.height}, 0, 0, cv::INTER_LINEAR);
    for (int y = 0; y < level.height; ++y) {
        for (int x = 0; x < level.width; ++x) {
            const int alpha = stretched.at<std::uint8_t>(y, x);
            const std::uint8_t* const from = level.row(y) + 4 * x;
            const auto premultiplied = [&](int i) {
                return static_cast<std::uint8_t>((from[i] * alpha + 127) / 255);
            };
            cutOut.setPixel(
                x, y,
                {premultiplied(0), premultiplied(1), premultiplied(2), static_cast<std::uint8_t>(alpha)});
        }
    }
    return cutOut;
}

Bitmap checkerboard() {
    Bitmap tile = Bitmap::createFilled(16, 16, {90, 90, 90, 255}, foundation::AlphaMode::opaque).value();
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            if ((x / 8 + y / 8) % 2 == 0)
                tile.setPixel(x, y, {120, 120, 120, 255});
        }
    }
    return tile;
}

}  // namespace

int main() {
    foundation::InlineWorkers one;
    foundation::ThreadWorkers two(2);
    const Bitmap picture = benchmarks::photograph(6000, 4000);
    const Bitmap plane = benchmarks::paintedMask(2000, 1333, 12);
    const Bitmap tile = checkerboard();
    const auto mask = kernels::MaskSnapshotter().take(plane.view(), plane.view().bounds());
    kernels::MipPyramid levels;
    benchmarks::Comparison("smaller copies of 24 MP")
        .add("Trimora, one core", [&] { levels = kernels::MipPyramid::build(picture.view(), one); })
        .add("Trimora, two cores", [&] { levels = kernels::MipPyramid::build(picture.view(), two); })
        .add("OpenCV resize by area, halving",
             [&] {
                 cv::setNumThreads(1);
                 const BitmapView view = picture.view();
                 cv::Mat last(view.height, view.width, CV_8UC4, const_cast<std::uint8_t*>(view.pixels),
                              view.stride);
                 for (cv::Mat next; last.cols > 1; last = next, next = cv::Mat())
                     cv::resize(last, next, {(last.cols + 1) / 2, (last.rows + 1) / 2}, 0, 0, cv::INTER_AREA);
             })
        .print();

    cv::Mat cvMask(plane.height(), plane.width(), CV_8UC1);
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < plane.width(); ++x)
            cvMask.at<std::uint8_t>(y, x) = plane.pixel(x, y).alpha;
    }
    Bitmap target = Bitmap::create(kViewWidth, kViewHeight).value();
    QImage qtTarget(kViewWidth, kViewHeight, QImage::Format_RGB32);
    QImage qtLayer(kViewWidth, kViewHeight, QImage::Format_ARGB32_Premultiplied);
    cairo_surface_t* const cairoTarget =
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, kViewWidth, kViewHeight);
    cairo_surface_t* const cairoTile = surfaceOf(tile.view(), CAIRO_FORMAT_RGB24);
    cv::Mat cvTarget(kViewHeight, kViewWidth, CV_8UC4);
    cv::Mat cvPattern(kViewHeight, kViewWidth, CV_8UC4);
    for (int y = 0; y < kViewHeight; ++y) {
        for (int x = 0; x < kViewWidth; ++x)
            std::memcpy(cvPattern.ptr(y, x), tile.view().row(y % 16) + 4 * (x % 16), 4);
    }

    for (const double zoom : {0.2537, 0.25, 1.0, 3.7}) {
        kernels::ViewScene scene;
        scene.picture = &levels;
        scene.pictureSize = {6000, 4000};
        scene.mask = mask.get();
        scene.tile = tile.view();
        // The subject's left edge in the middle of the view, a third of a pixel off.
        const double left = kViewWidth / 2.0 - 700 * zoom + 1 / 3.0;
        const double bottom = kViewHeight / 2.0 - 2000 * zoom + 1 / 3.0;
        scene.pictureToView = {zoom, 0, 0, zoom, zoom < 0.5 ? 40.3 : left, bottom};
        scene.backgroundToView = scene.pictureToView;

        int index = 0;
        while (zoom * 2 * (1 << index) <= 1)
            ++index;
        const BitmapView level = levels.level(index);
        const Scene peers{level,
                          tile.view(),
                          cutOutOf(level, cvMask),
                          zoom * (1 << index),
                          scene.pictureToView.tx,
                          kViewHeight - (bottom + 4000 * zoom)};
        cairo_surface_t* const cairoCutOut = surfaceOf(peers.cutOut.view(), CAIRO_FORMAT_ARGB32);
        const cv::Mat cvPicture(level.height, level.width, CV_8UC4, const_cast<std::uint8_t*>(level.pixels),
                                level.stride);

        const auto frame = [&](foundation::Workers& workers) {
            kernels::renderView(scene, target.view(), target.view().bounds(), workers);
        };
        benchmarks::Comparison("frame of 1600 x 1000 at zoom " + std::to_string(zoom), 31,
                               benchmarks::Timed::byProcessor)
            .warm()
            .add("Trimora, one core", [&] { frame(one); })
            .add("Qt painter",
                 [&] {
                     paintMaskedWithQt(qtTarget, qtLayer,
                                       wrapped(plane.view(), QImage::Format_ARGB32_Premultiplied), peers);
                 })
            .add("Qt painter, mask put in beforehand", [&] { paintWithQt(qtTarget, peers); })
            .add("Cairo, mask put in beforehand",
                 [&] { paintWithCairo(cairoTarget, cairoCutOut, cairoTile, peers); })
            .add("OpenCV", [&] { paintWithOpenCv(cvTarget, cvPicture, cvMask, cvPattern, peers); })
            .print();
        cairo_surface_destroy(cairoCutOut);

        kernels::MipPyramid blurred = kernels::MipPyramid::build(picture.view(), one);
        kernels::ViewScene overPicture = scene;
        overPicture.backgroundHidden = false;
        overPicture.background = &blurred;
        benchmarks::Comparison("  two cores, by the clock", 31)
            .warm()
            .add("Trimora, one core", [&] { frame(one); })
            .add("Trimora, two cores", [&] { frame(two); })
            .print();
        benchmarks::Comparison("  variants", 31, benchmarks::Timed::byProcessor)
            .warm()
            .add("Trimora, over the checkerboard", [&] { frame(one); })
            .add("Trimora, over a picture",
                 [&] { kernels::renderView(overPicture, target.view(), target.view().bounds(), one); })
            .add("Trimora, 256 x 256 of it",
                 [&] {
                     kernels::renderView(scene, target.view(), {700, 400, 256, 256}, one);
                 })
            .print();
    }
    cairo_surface_destroy(cairoTile);
    cairo_surface_destroy(cairoTarget);
}
