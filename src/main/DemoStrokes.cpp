#include "main/DemoStrokes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace trimora {

using foundation::Point;
using foundation::Size;

namespace {

using Outline = std::vector<Point>;

// The figures' outlines, clockwise, in thousandths of the picture's width from its top left corner.
constexpr double kUnits = 1000;
const Outline kChick = {{318, 149}, {345, 156}, {372, 168}, {410, 160}, {450, 154}, {490, 160}, {522, 170},
                        {550, 156}, {578, 149}, {586, 200}, {612, 240}, {624, 285}, {620, 335}, {598, 395},
                        {622, 435}, {636, 490}, {634, 550}, {614, 606}, {570, 654}, {500, 676}, {440, 680},
                        {380, 674}, {325, 650}, {285, 600}, {260, 545}, {250, 490}, {262, 445}, {296, 400},
                        {276, 350}, {266, 295}, {278, 240}, {312, 205}};
const Outline kVase = {{708, 308}, {730, 302}, {752, 301}, {776, 302}, {797, 308}, {793, 350},
                       {800, 395}, {825, 438}, {848, 488}, {855, 530}, {846, 580}, {825, 625},
                       {812, 657}, {782, 663}, {752, 664}, {720, 663}, {692, 657}, {676, 620},
                       {659, 570}, {650, 520}, {662, 475}, {692, 432}, {711, 390}, {714, 350}};

constexpr double kBroadBrush = 60;
constexpr double kFineBrush = 20;
constexpr double kStep = 4;  // from one place of a stroke to the next

std::vector<Outline> figures(Size shown) {
    std::vector<Outline> scaled = {kChick, kVase};
    for (Outline& outline : scaled) {
        for (Point& corner : outline)
            corner = {corner.x * shown.width / kUnits, corner.y * shown.width / kUnits};
    }
    return scaled;
}

double distanceToEdge(Point p, Point from, Point to) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double along = ((p.x - from.x) * dx + (p.y - from.y) * dy) / (dx * dx + dy * dy);
    const double t = std::clamp(along, 0.0, 1.0);
    return std::hypot(p.x - from.x - t * dx, p.y - from.y - t * dy);
}

/// From a place to the outline; negative inside it (even-odd rule).
double distanceTo(const Outline& outline, Point p) {
    double nearest = std::numeric_limits<double>::max();
    bool inside = false;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point from = outline[i];
        const Point to = outline[(i + 1) % outline.size()];
        nearest = std::min(nearest, distanceToEdge(p, from, to));
        const bool crosses = (from.y > p.y) != (to.y > p.y);
        if (crosses && p.x < from.x + (p.y - from.y) / (to.y - from.y) * (to.x - from.x))
            inside = !inside;
    }
    return inside ? -nearest : nearest;
}

double distanceToFigures(const std::vector<Outline>& all, Point p) {
    double nearest = std::numeric_limits<double>::max();
    for (const Outline& outline : all)
        nearest = std::min(nearest, distanceTo(outline, p));
    return nearest;
}

/// Level strokes over everything that the brush can reach without touching a figure.
void sweep(std::vector<DemoStroke>& strokes, const std::vector<Outline>& all, Size shown, double diameter) {
    for (double y = 0; y < shown.height + diameter; y += diameter * 0.7) {
        DemoStroke stroke{diameter, {}};
        for (double x = 0; x <= shown.width + kStep; x += kStep) {
            const Point place{x, std::min(y, shown.height)};
            if (distanceToFigures(all, place) >= diameter / 2)
                stroke.places.push_back(place);
            else if (!stroke.places.empty())
                strokes.push_back(std::exchange(stroke, {diameter, {}}));
        }
        if (!stroke.places.empty())
            strokes.push_back(std::move(stroke));
    }
}

/// The corner moved outwards, away from both its edges, by `distance`.
Point movedOut(Point before, Point corner, Point after, double distance) {
    const auto normal = [](Point from, Point to) {
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        return Point{(to.y - from.y) / length, (from.x - to.x) / length};
    };
    const Point a = normal(before, corner);
    const Point b = normal(corner, after);
    const double reach = distance / (1 + a.x * b.x + a.y * b.y);
    return {corner.x + (a.x + b.x) * reach, corner.y + (a.y + b.y) * reach};
}

DemoStroke roundFigure(const Outline& outline, double diameter) {
    DemoStroke stroke{diameter, {}};
    const std::size_t n = outline.size();
    for (std::size_t i = 0; i <= n; ++i) {
        stroke.places.push_back(
            movedOut(outline[(i + n - 1) % n], outline[i % n], outline[(i + 1) % n], diameter / 2));
    }
    return stroke;
}

}  // namespace

std::vector<DemoStroke> demoStrokes(Size shown) {
    const std::vector<Outline> all = figures(shown);
    std::vector<DemoStroke> strokes;
    sweep(strokes, all, shown, kBroadBrush);
    sweep(strokes, all, shown, kFineBrush);
    for (const Outline& outline : all)
        strokes.push_back(roundFigure(outline, kFineBrush));
    return strokes;
}

bool isInDemoFigure(Point place, Size shown) {
    return distanceToFigures(figures(shown), place) <= 0;
}

}  // namespace trimora
