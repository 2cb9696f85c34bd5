#include "main/DemoStrokes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace trimora {
namespace {

using foundation::Point;
using foundation::Size;

constexpr Size kShown{800, 600};

bool isPainted(const std::vector<DemoStroke>& strokes, Point place) {
    for (const DemoStroke& stroke : strokes) {
        for (const Point& centre : stroke.places) {
            if (std::hypot(centre.x - place.x, centre.y - place.y) <= stroke.diameter / 2)
                return true;
        }
    }
    return false;
}

TEST(DemoStrokes, TheOpenBackgroundIsCovered) {
    const auto strokes = demoStrokes(kShown);
    for (const Point& place : {Point{5, 5}, Point{795, 5}, Point{5, 595}, Point{795, 595}, Point{100, 300},
                               Point{400, 60}, Point{400, 580}, Point{740, 300}})
        EXPECT_TRUE(isPainted(strokes, place)) << place.x << ", " << place.y;
}

TEST(DemoStrokes, TheFiguresAreLeftAlone) {
    const auto strokes = demoStrokes(kShown);
    for (const Point& place : {Point{360, 260}, Point{360, 450}, Point{600, 420}, Point{600, 280}}) {
        EXPECT_TRUE(isInDemoFigure(place, kShown)) << place.x << ", " << place.y;
        EXPECT_FALSE(isPainted(strokes, place)) << place.x << ", " << place.y;
    }
}

}  // namespace
}  // namespace trimora
