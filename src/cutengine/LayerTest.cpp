#include "cutengine/Layer.h"

#include <gtest/gtest.h>

#include "cutengine/Checkerboard.h"
#include "cutengine/Colour.h"

namespace trimora::cutengine {
namespace {

using foundation::AffineTransform;
using foundation::Pixel;
using foundation::Point;

TEST(Layer, CentreOfTheLayerGoesWhereTheTranslationSays) {
    const Layer layer({100, 60});
    const AffineTransform map = layer.toView({2, 0, 0, 2, 300, 200});
    EXPECT_EQ(map.apply({50, 30}), (Point{300, 200}));
    EXPECT_EQ(map.apply({0, 0}), (Point{200, 140}));
}

TEST(Layer, AnimationBeginsAtWhatIsShownEvenInTheMiddleOfAnother) {
    Layer layer({10, 10});
    layer.animateTransform(AffineTransform::translation(100, 0), 0, 1);
    const AffineTransform halfway = layer.presentation(0.5);
    layer.animateTransform(AffineTransform::translation(0, 0), 0.5, 1);
    EXPECT_EQ(layer.presentation(0.5), halfway);
    EXPECT_EQ(layer.transform(), AffineTransform{});
    EXPECT_EQ(layer.presentation(1.5), AffineTransform{});
}

TEST(Layer, WithoutAnimationsTheFinalTransformIsShown) {
    Layer layer({10, 10});
    layer.animateTransform(AffineTransform::scale(3, 3), 0, 1);
    layer.removeAllAnimations();
    EXPECT_EQ(layer.presentation(0.1), AffineTransform::scale(3, 3));
    EXPECT_FALSE(layer.isAnimating(0.1));
}

TEST(Layer, SublayersAreRemovedAllAtOnce) {
    Layer layer;
    layer.addSublayer(std::make_shared<Layer>());
    layer.addSublayer(std::make_shared<Layer>());
    layer.removeAllSublayers();
    EXPECT_TRUE(layer.sublayers().empty());
}

TEST(Colour, IsPremultipliedRoundedAndClamped) {
    EXPECT_EQ(premultipliedPixel({1, 0.5, 0, 1}), (Pixel{0, 128, 255, 255}));
    EXPECT_EQ(premultipliedPixel({1, 1, 1, 0}), Pixel{});
    EXPECT_EQ(premultipliedPixel({7, -1, 0.25, 0.5}), (Pixel{32, 0, 128, 128}));
}

TEST(Checkerboard, SquaresAreWholeDevicePixels) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const auto tile = makeCheckerboardTile(scale);
        const int square = tile.width() / 2;
        EXPECT_EQ(square, static_cast<int>(8 * scale));
        EXPECT_EQ(tile.pixel(0, 0), tile.pixel(square, square));
        EXPECT_EQ(tile.pixel(square, 0), tile.pixel(0, square));
        EXPECT_NE(tile.pixel(0, 0), tile.pixel(square, 0));
    }
}

}  // namespace
}  // namespace trimora::cutengine
