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
const Outline kChick = {{318, 150}, {336, 158}, {372, 190}, {410, 170}, {450, 163}, {490, 168}, {524, 188},
                        {552, 160}, {577, 152}, {577, 200}, {600, 240}, {614, 285}, {612, 335}, {592, 395},
                        {612, 432}, {627, 490}, {626, 550}, {606, 604}, {564, 650}, {500, 672}, {440, 676},
                        {380, 670}, {330, 646}, {292, 600}, {268, 545}, {260, 490}, {272, 445}, {306, 400},
                        {288, 350}, {277, 295}, {292, 240}, {322, 205}};
const Outline kVase = {{708, 306}, {730, 302}, {752, 301}, {776, 302}, {797, 306}, {790, 350}, {793, 385},
                       {806, 415}, {825, 440}, {846, 488}, {855, 530}, {846, 580}, {825, 625}, {812, 660},
                       {782, 664}, {752, 665}, {720, 664}, {692, 660}, {676, 620}, {659, 570}, {650, 520},
                       {664, 475}, {692, 434}, {713, 390}, {716, 350}};

constexpr double kBroadBrush = 60;
constexpr double kFineBrush = 20;
constexpr double kStep = 4;  // from one place of a stroke to the next

/// The outline with each corner cut off at a quarter of its edges, which bends it.
Outline bent(const Outline& outline) {
    Outline result;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point a = outline[i];
        const Point b = outline[(i + 1) % outline.size()];
        result.push_back({a.x + (b.x - a.x) / 4, a.y + (b.y - a.y) / 4});
        result.push_back({b.x - (b.x - a.x) / 4, b.y - (b.y - a.y) / 4});
    }
    return result;
}

std::vector<Outline> figures(Size shown) {
    std::vector<Outline> scaled = {bent(bent(kChick)), bent(bent(kVase))};
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
