#include "controls/ControlLayer.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <numbers>

#include "controls/GradientLayer.h"
#include "controls/ImageLayer.h"
#include "controls/PathDrawing.h"
#include "controls/ShapeLayer.h"
#include "controls/TextLayer.h"

namespace trimora::controls {
namespace {

using cutengine::BezierPath;

/// The layer as it looks in a picture of its own size at a scale factor, y turned at the picture's edge.
QImage painted(const ControlLayer& layer, double now = 0, double scaleFactor = 1) {
    const QSizeF size(layer.frame().width, layer.frame().height);
    QImage image((size * scaleFactor).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scaleFactor);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(0, size.height());
    painter.scale(1, -1);
    layer.paint(painter, now);
    return image;
}

/// Counted from the bottom left.
QColor pixel(const QImage& image, int x, int y) {
    return image.pixelColor(x, image.height() - 1 - y);
}

TEST(ControlLayer, PaintsItsSublayersInOrderEachInItsFrame) {
    ControlLayer layer;
    layer.setFrame({0, 0, 20, 10});
    layer.backgroundColor = Qt::red;
    auto& low = layer.make<ControlLayer>();
    low.setFrame({0, 0, 10, 5});
    low.backgroundColor = Qt::green;
    auto& high = layer.make<ControlLayer>();
    high.setFrame({5, 0, 10, 5});
    high.backgroundColor = Qt::blue;
    const QImage image = painted(layer);
    EXPECT_EQ(pixel(image, 2, 2), QColor(Qt::green));
    EXPECT_EQ(pixel(image, 7, 2), QColor(Qt::blue));
    EXPECT_EQ(pixel(image, 7, 7), QColor(Qt::red));
}

TEST(ControlLayer, InsertsAtAnIndexAndMovesBetweenSuperlayers) {
    ControlLayer first;
    ControlLayer second;
    const auto moving = std::make_shared<ControlLayer>();
    auto& staying = first.make<ControlLayer>();
    first.insertSublayer(moving, 0);
    ASSERT_EQ(first.sublayers().size(), 2U);
    EXPECT_EQ(first.sublayers()[0], moving);
    EXPECT_EQ(first.sublayers()[1].get(), &staying);
    second.addSublayer(moving);
    EXPECT_EQ(first.sublayers().size(), 1U);
    moving->removeFromSuperlayer();
    moving->removeFromSuperlayer();
    EXPECT_TRUE(second.sublayers().empty());
}

TEST(ControlLayer, ScalesAboutItsAnchorPoint) {
    ControlLayer layer;
    layer.setFrame({0, 0, 20, 20});
    auto& box = layer.make<ControlLayer>();
    box.setFrame({5, 5, 10, 10});
    box.backgroundColor = Qt::white;
    const PropertyAnimation shrink{.from = 1.0, .to = 0.4, .timing = {.duration = 1, .fillForwards = true}};
    box.addAnimation(shrink, "scale", 0);
    EXPECT_EQ(pixel(painted(layer, 5), 8, 8), QColor(Qt::white));
    EXPECT_EQ(pixel(painted(layer, 5), 7, 7).alpha(), 0);
    box.anchorPoint = {0, 0};
    EXPECT_EQ(pixel(painted(layer, 5), 5, 5), QColor(Qt::white));
    EXPECT_EQ(pixel(painted(layer, 5), 9, 9).alpha(), 0);
}

TEST(ControlLayer, AnAnimationOfTheSameKeyReplacesTheOneBefore) {
    ControlLayer layer;
    const PropertyAnimation fade{
        .keyPath = KeyPath::opacity, .from = 0.0, .to = 0.0, .timing = {.duration = 9, .fillForwards = true}};
    layer.addAnimation(fade, "fade", 0);
    EXPECT_EQ(layer.presentation(1).opacity, 0);
    layer.addAnimation(PropertyAnimation{.from = 2.0, .to = 2.0, .timing = {.duration = 9}}, "fade", 1);
    EXPECT_EQ(layer.presentation(2).opacity, 1);
    EXPECT_EQ(layer.presentation(2).scale, 2);
    layer.removeAnimation("fade");
    EXPECT_FALSE(layer.hasAnimation("fade"));
    EXPECT_EQ(layer.presentation(2).scale, 1);
}

TEST(ControlLayer, IsAnimatingWhileAnyVisibleSublayerMoves) {
    ControlLayer layer;
    auto& moving = layer.make<ControlLayer>();
    moving.addAnimation(PropertyAnimation{.from = 1.0, .to = 2.0, .timing = {.duration = 1}}, "scale", 10);
    EXPECT_TRUE(layer.isAnimating(10.5));
    EXPECT_FALSE(layer.isAnimating(11));
    moving.hidden = true;
    EXPECT_FALSE(layer.isAnimating(10.5));
}

TEST(ControlLayer, AMaskCutsTheLayerAndItsSublayers) {
    ControlLayer layer;
    layer.setFrame({0, 0, 20, 20});
    layer.make<ControlLayer>().backgroundColor = Qt::white;
    layer.sublayers()[0]->setFrame({0, 0, 20, 20});
    layer.mask = BezierPath::oval({0, 0, 20, 20});
    const QImage image = painted(layer);
    EXPECT_EQ(pixel(image, 10, 10), QColor(Qt::white));
    EXPECT_EQ(pixel(image, 1, 1).alpha(), 0);
}

TEST(ControlLayer, OpacityReachesSublayers) {
    ControlLayer layer;
    layer.setFrame({0, 0, 4, 4});
    layer.opacity = 0.5;
    auto& box = layer.make<ControlLayer>();
    box.setFrame({0, 0, 4, 4});
    box.backgroundColor = Qt::white;
    box.opacity = 0.5;
    EXPECT_NEAR(pixel(painted(layer), 2, 2).alpha(), 64, 1);
}

TEST(ControlLayer, TheBorderLiesInsideTheEdge) {
    ControlLayer layer;
    layer.setFrame({0, 0, 20, 20});
    auto& box = layer.make<ControlLayer>();
    box.setFrame({5, 5, 10, 10});
    box.borderWidth = 2;
    box.borderColor = Qt::white;
    const QImage image = painted(layer);
    EXPECT_EQ(pixel(image, 4, 10).alpha(), 0);
    EXPECT_EQ(pixel(image, 5, 10), QColor(Qt::white));
    EXPECT_EQ(pixel(image, 6, 10), QColor(Qt::white));
    EXPECT_EQ(pixel(image, 7, 10).alpha(), 0);
}

TEST(GradientLayer, RunsFromStartToEndWithYUpwards) {
    GradientLayer layer;
    layer.setFrame({0, 0, 8, 100});
    layer.colors = {Qt::black, Qt::white};
    const QImage image = painted(layer);
    EXPECT_LT(pixel(image, 4, 0).red(), 4);
    EXPECT_NEAR(pixel(image, 4, 50).red(), 128, 3);
    EXPECT_GT(pixel(image, 4, 99).red(), 251);
}

TEST(GradientLayer, WhiteFadingToClearStaysWhite) {
    GradientLayer layer;
    layer.setFrame({0, 0, 8, 100});
    layer.colors = {Qt::white, Qt::transparent};
    const QColor half = pixel(painted(layer), 4, 50);
    EXPECT_NEAR(half.alpha(), 127, 3);
    EXPECT_GE(half.red(), 252);
}

TEST(GradientLayer, AnimatedColoursTakeThePlaceOfItsOwn) {
    GradientLayer layer;
    layer.setFrame({0, 0, 8, 8});
    layer.colors = {Qt::black, Qt::black};
    const std::vector<QColor> dark{Qt::black, Qt::black};
    const std::vector<QColor> bright{Qt::white, Qt::white};
    const PropertyAnimation sweep{.keyPath = KeyPath::colors,
                                  .from = dark,
                                  .to = bright,
                                  .timing = {.duration = 1},
                                  .curve = TimingCurve::linear()};
    layer.addAnimation(sweep, "animate1Gradient", 0);
    EXPECT_NEAR(pixel(painted(layer, 0.5), 4, 4).red(), 128, 2);
    EXPECT_EQ(pixel(painted(layer, 1), 4, 4).red(), 0);
}

TEST(ShapeLayer, FillsAndStrokesItsPath) {
    ShapeLayer layer;
    layer.setFrame({0, 0, 20, 20});
    layer.path = BezierPath::rectangle({5, 5, 10, 10});
    layer.fillColor = Qt::red;
    layer.strokeColor = Qt::blue;
    layer.lineWidth = 2;
    const QImage image = painted(layer);
    EXPECT_EQ(pixel(image, 10, 10), QColor(Qt::red));
    EXPECT_EQ(pixel(image, 4, 10), QColor(Qt::blue));
    EXPECT_EQ(pixel(image, 5, 10), QColor(Qt::blue));
    EXPECT_EQ(pixel(image, 3, 10).alpha(), 0);
}

TEST(TextLayer, StandsUprightInTheMiddle) {
    TextLayer layer;
    layer.setFrame({0, 0, 60, 40});
    layer.string = "L";
    layer.font.setPixelSize(24);
    const QImage image = painted(layer);
    // The foot of an L is at its bottom: the lower half holds more ink.
    int upper = 0;
    int lower = 0;
    for (int x = 0; x < 60; ++x) {
        for (int y = 0; y < 40; ++y)
            (y >= 20 ? upper : lower) += pixel(image, x, y).alpha();
    }
    EXPECT_GT(upper, 0);
    EXPECT_GT(lower, upper * 5 / 4);
}

TEST(ImageLayer, ShowsItsImageInTheMiddleAtItsOwnSizeAtEveryScale) {
    QPixmap white(64, 64);
    white.fill(Qt::white);
    ImageLayer layer;
    layer.setFrame({0, 0, 20, 20});
    layer.image = QIcon(white);
    layer.imageSize = {8, 8};
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage image = painted(layer, 0, scale);
        const auto at = [scale](double v) { return static_cast<int>(v * scale); };
        EXPECT_EQ(pixel(image, at(6), at(6)), QColor(Qt::white)) << scale;
        EXPECT_EQ(pixel(image, at(14) - 1, at(14) - 1), QColor(Qt::white)) << scale;
        EXPECT_EQ(pixel(image, at(6) - 1, at(10)).alpha(), 0) << scale;
        EXPECT_EQ(pixel(image, at(14), at(10)).alpha(), 0) << scale;
    }
}

TEST(PathDrawing, StrokeInsideStaysWithinTheShapeAndTheRectangle) {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    BezierPath path = BezierPath::rectangle({4, 4, 12, 12});
    path.lineWidth = 3;
    strokeInsideWithinRect(painter, path, Qt::white, {0, 0, 10, 20});
    painter.end();
    EXPECT_EQ(image.pixelColor(4, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(6, 10), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(7, 10).alpha(), 0);
    EXPECT_EQ(image.pixelColor(3, 10).alpha(), 0);
    EXPECT_EQ(image.pixelColor(15, 10).alpha(), 0);
}

}  // namespace
}  // namespace trimora::controls
