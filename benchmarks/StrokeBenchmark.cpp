// A stroke 2,000 pixels long into a mask of 2000 x 2000, by every painter that can do it: the same
// stamps, each replacing what lies under it in proportion to its coverage.

#include <cairo.h>
#include <pixman.h>

#include <QImage>
#include <QPainter>
#include <QRadialGradient>
#include <array>
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

// A stamp drawn beforehand, once for every quarter of a pixel that it may lie beside whole pixels. Drawing it
// is all that remains to be timed; it lies up to an eighth of a pixel beside its place.
class Sprites {
 public:
    Sprites(double diameter, const BrushStamp* soft) {
        for (int k = 0; k < kSteps * kSteps; ++k) {
            const double x = 1 + k % kSteps / double{kSteps};
            const double y = 1 + k / kSteps / double{kSteps};
            const QRectF rect(x, y, diameter, diameter);
            const int side = static_cast<int>(std::ceil(diameter)) + 3;
            QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(soft == nullptr ? QBrush(Qt::black) : QBrush(gradientOf(rect, *soft)));
            painter.drawEllipse(rect);
            painter.end();
            images_[static_cast<std::size_t>(k)] = std::move(image);
        }
    }

    // Calls draw(sprite's number, left, top) for a stamp.
    template <typename Draw>
    static void place(const Rect& stamp, const Draw& draw) {
        const auto x = static_cast<int>(std::lround(stamp.x * kSteps));
        const auto y = static_cast<int>(std::lround((kSide - stamp.maxY()) * kSteps));
        const int acrossStep = ((x % kSteps) + kSteps) % kSteps;
        const int downStep = ((y % kSteps) + kSteps) % kSteps;
        draw(static_cast<std::size_t>(downStep * kSteps + acrossStep), (x - acrossStep) / kSteps - 1,
             (y - downStep) / kSteps - 1);
    }

    [[nodiscard]] const QImage& image(std::size_t number) const { return images_[number]; }
    static constexpr int kSteps = 4;

 private:
    std::array<QImage, kSteps * kSteps> images_;
};

std::function<void()> byQtSprites(const std::vector<Rect>& stamps, const BrushStamp* soft) {
    const auto plane = std::make_shared<QImage>(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
    plane->fill(Qt::black);
    const auto sprites = std::make_shared<Sprites>(stamps.front().width, soft);
    return [plane, sprites, &stamps, restores = false]() mutable {
        QPainter painter(plane.get());
        painter.setCompositionMode(restores ? QPainter::CompositionMode_SourceOver
                                            : QPainter::CompositionMode_DestinationOut);
        restores = !restores;
        for (const Rect& stamp : stamps)
            Sprites::place(stamp, [&](std::size_t number, int x, int y) {
                painter.drawImage(QPoint(x, y), sprites->image(number));
            });
    };
}

using PixmanImage = std::unique_ptr<pixman_image_t, decltype(&pixman_image_unref)>;

PixmanImage pixmanOf(QImage& image) {
    return {pixman_image_create_bits(PIXMAN_a8r8g8b8, image.width(), image.height(),
                                     reinterpret_cast<std::uint32_t*>(image.bits()),
                                     static_cast<int>(image.bytesPerLine())),
            &pixman_image_unref};
}

std::function<void()> byPixmanSprites(const std::vector<Rect>& stamps, const BrushStamp* soft) {
    struct Drawing {
        QImage plane{kSide, kSide, QImage::Format_ARGB32_Premultiplied};
        std::vector<QImage> pictures;
        std::vector<PixmanImage> sprites;
    };
    const auto drawing = std::make_shared<Drawing>();
    drawing->plane.fill(Qt::black);
    const Sprites drawn(stamps.front().width, soft);
    for (std::size_t k = 0; k < Sprites::kSteps * Sprites::kSteps; ++k)
        drawing->pictures.push_back(drawn.image(k).copy());
    for (QImage& picture : drawing->pictures)
        drawing->sprites.push_back(pixmanOf(picture));
    return [drawing, &stamps, restores = false]() mutable {
        const PixmanImage plane = pixmanOf(drawing->plane);
        const pixman_op_t how = restores ? PIXMAN_OP_OVER : PIXMAN_OP_OUT_REVERSE;
        restores = !restores;
        for (const Rect& stamp : stamps)
            Sprites::place(stamp, [&](std::size_t number, int x, int y) {
                const QImage& picture = drawing->pictures[number];
                pixman_image_composite32(how, drawing->sprites[number].get(), nullptr, plane.get(), 0, 0, 0,
                                         0, x, y, picture.width(), picture.height());
            });
    };
}

void compare(double diameter, float hardness, Shape shape) {
    const BrushStamp stamp(200, hardness);
    const BrushStamp* const soft = hardness < 0.985F ? &stamp : nullptr;
    const auto stamps = stroke(diameter, static_cast<double>(hardness), shape);
    const std::string kind = soft == nullptr ? "hard " : "soft ";
    Comparison table(kind + nameOf(shape) + " stroke, d = " + std::to_string(std::lround(diameter)) + ", " +
                         std::to_string(stamps.size()) + " stamps",
                     9, Timed::byProcessor);
    table.warm();
    table.add("Trimora", byTrimora(stamps, soft));
    table.add("Qt painter", byQt(stamps, soft));
    table.add("Cairo", byCairo(stamps, soft));
    if (soft == nullptr)
        table.add("OpenCV circle", byOpenCv(stamps));
    table.add("Qt, stamps drawn beforehand", byQtSprites(stamps, soft));
    table.add("pixman, stamps drawn beforehand", byPixmanSprites(stamps, soft));
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
