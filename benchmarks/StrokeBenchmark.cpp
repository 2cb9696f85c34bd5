// A stroke 2,000 pixels long into a mask of 2000 x 2000, by every painter that can do it: the same
// stamps, each replacing what lies under it in proportion to its coverage.

#include <cairo.h>

#include <QImage>
#include <QPainter>
#include <QRadialGradient>
#include <cmath>
#include <functional>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "Comparison.h"
#include "cutengine/kernels/BrushStamp.h"
#include "cutengine/kernels/StrokePainter.h"
#include "foundation/Bitmap.h"

namespace trimora::benchmarks {
namespace {

using cutengine::kernels::BrushStamp;
using cutengine::kernels::paintStamps;
using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;

constexpr int kSide = 2000;
constexpr double kLength = 2000;
constexpr Pixel kOpaque{0, 0, 0, 255};
constexpr Pixel kCut{};

enum class Shape : std::uint8_t { level, slanted, curved };

const char* nameOf(Shape shape) {
    switch (shape) {
        case Shape::level:
            return "level";
        case Shape::slanted:
            return "slanted";
        case Shape::curved:
            break;
    }
    return "curved";
}

std::vector<Rect> stroke(double diameter, double hardness, Shape shape) {
    const double step = diameter / 6 / (hardness + 10);
    std::vector<Rect> stamps;
    double x = shape == Shape::slanted ? 300.3 : 0.3;
    double y = shape == Shape::slanted ? 300.7 : 1000.7;
    for (double done = 0; done < kLength; done += step) {
        stamps.push_back({x - diameter / 2, y - diameter / 2, diameter, diameter});
        const double heading = shape == Shape::level     ? 0
                               : shape == Shape::slanted ? 0.75
                                                         : std::cos(done / 150);
        x += step * std::cos(heading);
        y += step * std::sin(heading);
    }
    return stamps;
}

// Each painter owns its plane. Every second run restores what the run before has cut.
std::function<void()> byTrimora(const std::vector<Rect>& stamps, const BrushStamp* soft) {
    const auto plane =
        std::make_shared<Bitmap>(std::move(Bitmap::createFilled(kSide, kSide, kOpaque)).value());
    return [plane, &stamps, soft, restores = false]() mutable {
        paintStamps(plane->view(), stamps, {restores ? kOpaque : kCut, soft});
        restores = !restores;
    };
}

QRadialGradient gradientOf(const QRectF& rect, const BrushStamp& soft) {
    QRadialGradient gradient(rect.center(), rect.width() / 2);
    gradient.setColorAt(0, Qt::black);
    gradient.setColorAt(static_cast<double>(soft.hardness()), Qt::black);
    gradient.setColorAt(1, Qt::transparent);
    return gradient;
}

std::function<void()> byQt(const std::vector<Rect>& stamps, const BrushStamp* soft) {
    const auto plane = std::make_shared<QImage>(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
    plane->fill(Qt::black);
    return [plane, &stamps, soft, restores = false]() mutable {
        QPainter painter(plane.get());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(restores ? Qt::black : Qt::transparent);
        painter.setCompositionMode(soft == nullptr ? QPainter::CompositionMode_Source
                                   : restores      ? QPainter::CompositionMode_SourceOver
                                                   : QPainter::CompositionMode_DestinationOut);
        restores = !restores;
        for (const Rect& stamp : stamps) {
            const QRectF rect(stamp.x, kSide - stamp.maxY(), stamp.width, stamp.height);
            if (soft != nullptr)
                painter.setBrush(gradientOf(rect, *soft));
            painter.drawEllipse(rect);
        }
    };
}

// A Cairo surface and what draws on it.
struct CairoPlane {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kSide, kSide);
    cairo_t* context = cairo_create(surface);
    CairoPlane(const CairoPlane&) = delete;
    CairoPlane& operator=(const CairoPlane&) = delete;
    CairoPlane() {
        cairo_set_source_rgba(context, 0, 0, 0, 1);
        cairo_paint(context);
    }
    ~CairoPlane() {
        cairo_destroy(context);
        cairo_surface_destroy(surface);
    }
};

void drawWithCairo(cairo_t* context, const Rect& stamp, const BrushStamp* soft) {
    const double x = stamp.centre().x;
    const double y = kSide - stamp.centre().y;
    cairo_arc(context, x, y, stamp.width / 2, 0, 2 * M_PI);
    if (soft == nullptr)
        return cairo_fill(context);
    cairo_pattern_t* const pattern = cairo_pattern_create_radial(x, y, 0, x, y, stamp.width / 2);
    cairo_pattern_add_color_stop_rgba(pattern, 0, 0, 0, 0, 1);
    cairo_pattern_add_color_stop_rgba(pattern, static_cast<double>(soft->hardness()), 0, 0, 0, 1);
    cairo_pattern_add_color_stop_rgba(pattern, 1, 0, 0, 0, 0);
    cairo_set_source(context, pattern);
    cairo_fill(context);
    cairo_pattern_destroy(pattern);
}

std::function<void()> byCairo(const std::vector<Rect>& stamps, const BrushStamp* soft) {
    const auto plane = std::make_shared<CairoPlane>();
    return [plane, &stamps, soft, restores = false]() mutable {
        cairo_t* const context = plane->context;
        cairo_set_operator(context, soft == nullptr ? CAIRO_OPERATOR_SOURCE
                                    : restores      ? CAIRO_OPERATOR_OVER
                                                    : CAIRO_OPERATOR_DEST_OUT);
        cairo_set_source_rgba(context, 0, 0, 0, restores ? 1 : 0);
        restores = !restores;
        for (const Rect& stamp : stamps)
            drawWithCairo(context, stamp, soft);
        cairo_surface_flush(plane->surface);
    };
}

std::function<void()> byOpenCv(const std::vector<Rect>& stamps) {
    const auto plane = std::make_shared<cv::Mat>(kSide, kSide, CV_8UC4, cv::Scalar(0, 0, 0, 255));
    return [plane, &stamps, restores = false]() mutable {
        constexpr int kShift = 4;  // bits of a pixel's fraction
        const auto fixed = [](double value) { return static_cast<int>(std::lround(value * (1 << kShift))); };
        const cv::Scalar colour(0, 0, 0, restores ? 255 : 0);
        restores = !restores;
        for (const Rect& stamp : stamps) {
            const foundation::Point centre = stamp.centre();
            cv::circle(*plane, {fixed(centre.x - 0.5), fixed(kSide - centre.y - 0.5)}, fixed(stamp.width / 2),
                       colour, cv::FILLED, cv::LINE_AA, kShift);
        }
    };
}

void compare(double diameter, float hardness, Shape shape) {
    const BrushStamp stamp(200, hardness);
    const BrushStamp* const soft = hardness < 0.985F ? &stamp : nullptr;
    const auto stamps = stroke(diameter, static_cast<double>(hardness), shape);
    const std::string kind = soft == nullptr ? "hard " : "soft ";
    Comparison table(kind + nameOf(shape) + " stroke, d = " + std::to_string(std::lround(diameter)) + ", " +
                     std::to_string(stamps.size()) + " stamps");
    table.add("Trimora", byTrimora(stamps, soft));
    table.add("Qt painter", byQt(stamps, soft));
    table.add("Cairo", byCairo(stamps, soft));
    if (soft == nullptr)
        table.add("OpenCV circle", byOpenCv(stamps));
    table.print();
}

}  // namespace
}  // namespace trimora::benchmarks

int main() {
    using namespace trimora::benchmarks;
    for (const Shape shape : {Shape::level, Shape::slanted, Shape::curved}) {
        for (const double diameter : {10.0, 20.0, 70.0, 200.0})
            compare(diameter, 1, shape);
        for (const double diameter : {20.0, 70.0, 200.0})
            compare(diameter, 0.5F, shape);
    }
}
