#include "sample/Plumage.h"

#include <array>
#include <numbers>

namespace trimora::sample {
namespace {

using foundation::Point;

constexpr Point kHead{1790, 1230};
constexpr double kHeadWidth = 570;
constexpr double kHeadHeight = 480;
constexpr Point kBody{1780, 1960};
constexpr double kBodyWidth = 690;
constexpr double kBodyHeight = 640;
constexpr int kSegments = 7;

Point eye(double side) {
    return {kFace.x + side * kEyeDistance, kEyeHeight};
}

double distance(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

double nearestEye(Point place) {
    return std::min(distance(place, eye(-1)), distance(place, eye(1)));
}

bool onHead(Point place) {
    return std::hypot((place.x - kHead.x) / kHeadWidth, (place.y - kHead.y) / kHeadHeight) < 1.02;
}

/// The way the down lies: out from the nearest eye on the face disc, else out from the face and down.
double directionAt(Point place) {
    const Point near = eye(place.x < kFace.x ? -1 : 1);
    const float onDisc = smoothStep(430, 250, nearestEye(place));
    const double dx = std::lerp((place.x - kFace.x) * (onHead(place) ? 1.0 : 0.75), place.x - near.x, onDisc);
    const double fall = onHead(place) ? 60 : 420;
    const double dy = std::lerp(place.y - kFace.y + fall, place.y - near.y, onDisc);
    return std::atan2(dy, dx);
}

Colour plumeAt(Point place) {
    const double fromEye = nearestEye(place);
    const float patch = cloud(place.x / 210, place.y / 170, 71, 3);
    const float bars =
        smoothStep(0.25, 0.75, std::sin(place.y / 34 + 3.5 * patch + std::abs(place.x - kBody.x) / 190));
    Colour down = mixed({0.44F, 0.34F, 0.24F}, {0.68F, 0.58F, 0.45F}, 0.5F + patch);
    const float flank =
        smoothStep(250, 560, std::abs(place.x - kBody.x) + 90 * patch) * smoothStep(1560, 1750, place.y);
    down = mixed(down, {0.24F, 0.17F, 0.115F}, 0.75F * flank);
    down = down * (1 - 0.32F * bars * smoothStep(1650, 1900, place.y));
    const float crown = smoothStep(1180, 860, place.y + 70 * patch);
    down = mixed(down, {0.27F, 0.20F, 0.145F}, 0.7F * crown);
    const float disc = smoothStep(345, 300, fromEye + 25 * patch);
    const float rim =
        smoothStep(300, 345, fromEye) * smoothStep(430, 360, fromEye) * smoothStep(1700, 1500, place.y);
    down = mixed(down, {0.16F, 0.11F, 0.075F}, 0.75F * rim);
    down = mixed(down, {0.80F, 0.74F, 0.65F}, 0.92F * disc);
    return mixed(down, {0.17F, 0.12F, 0.09F}, 0.75F * smoothStep(205, 150, fromEye));
}

/// Light on a round body: key from the upper left, a little sky, lamps behind at the right edge.
Colour lightAt(Point place) {
    const bool head = onHead(place);
    const Point centre = head ? kHead : kBody;
    const double u = (place.x - centre.x) / (head ? kHeadWidth : kBodyWidth);
    const double v = (place.y - centre.y) / (head ? kHeadHeight : kBodyHeight);
    const double z = std::sqrt(std::max(0.03, 1 - u * u - v * v));
    const auto key = static_cast<float>(std::max(0.0, -0.55 * u - 0.50 * v + 0.67 * z));
    const auto edge = static_cast<float>(std::pow(1 - std::min(1.0, z), 2.5));
    const auto fromRight = static_cast<float>(std::clamp(0.35 + 0.8 * u - 0.3 * v, 0.0, 1.0));
    const float underHead = head ? 1 : 0.62F + 0.38F * smoothStep(1640, 1950, place.y);
    const float grounded = 0.45F + 0.55F * smoothStep(2620, 2250, place.y);
    const Colour front = Colour{1.0F, 0.96F, 0.90F} * (0.92F * key) + Colour{0.20F, 0.195F, 0.19F};
    return (front * underHead + Colour{1.7F, 0.86F, 0.34F} * (edge * fromRight)) * grounded;
}

Strand grown(Point root, double length, double width, Random& random) {
    const double direction = directionAt(root) + 0.34 * static_cast<double>(random.bell());
    const double curl = direction + 0.55 * static_cast<double>(random.bell());
    const Point bend{root.x + std::cos(direction) * length * 0.5,
                     root.y + std::sin(direction) * length * 0.5};
    const Point tip{bend.x + std::cos(curl) * length * 0.5,
                    bend.y + std::sin(curl) * length * 0.5 + 0.06 * length};
    const Colour lit = plumeAt(root) * lightAt(root) * random.between(0.72F, 1.22F);
    return {root, bend, tip, width, lit * 0.50F, lit * 1.18F, 1};
}

/// A short piece of a strand, straight enough to be one.
struct Piece {
    Point from;
    Point to;
    double fromWidth;
    double toWidth;
    Colour colour;
    float alpha;
};

void paintPiece(Band& band, const Piece& piece) {
    const double dx = piece.to.x - piece.from.x;
    const double dy = piece.to.y - piece.from.y;
    const double square = std::max(dx * dx + dy * dy, 1e-9);
    const double side = band.pixelSide();
    const double reach = piece.fromWidth / 2 + side;
    const Box box{std::min(piece.from.x, piece.to.x) - reach, std::min(piece.from.y, piece.to.y) - reach,
                  std::max(piece.from.x, piece.to.x) + reach, std::max(piece.from.y, piece.to.y) + reach};
    band.paint(box, [&](ScenePixel& pixel, Point place) {
        const double along = ((place.x - piece.from.x) * dx + (place.y - piece.from.y) * dy) / square;
        if (along < 0 || along >= 1)
            return;
        const double away =
            std::abs((place.x - piece.from.x) * dy - (place.y - piece.from.y) * dx) / std::sqrt(square);
        const double half = std::lerp(piece.fromWidth, piece.toWidth, along) / 2;
        const double covered = std::clamp((half - away) / side + 0.5, 0.0, std::min(1.0, 2 * half / side));
        if (covered > 0)
            pixel.coverWithSubject(piece.colour, piece.alpha * static_cast<float>(covered));
    });
}

Point along(const Strand& strand, double t) {
    const double u = 1 - t;
    return {u * u * strand.root.x + 2 * u * t * strand.bend.x + t * t * strand.tip.x,
            u * u * strand.root.y + 2 * u * t * strand.bend.y + t * t * strand.tip.y};
}

void paintStrand(Band& band, const Strand& strand) {
    const auto [top, bottom] = std::minmax({strand.root.y, strand.bend.y, strand.tip.y});
    if (!band.reaches(top - strand.width, bottom + strand.width))
        return;
    for (int i = 0; i < kSegments; ++i) {
        const double from = static_cast<double>(i) / kSegments;
        const double to = static_cast<double>(i + 1) / kSegments;
        const Colour tint = mixed(strand.rootColour, strand.tipColour, static_cast<float>(from));
        paintPiece(band, {along(strand, from), along(strand, to), strand.width * (1 - 0.85 * from * from),
                          strand.width * (1 - 0.85 * to * to), tint, strand.alpha});
    }
}

}  // namespace

Plumage::Plumage() {
    Random random(3);
    growWisps(kBody, kBodyWidth, kBodyHeight, 2600, random);
    growOver(kBody, kBodyWidth, kBodyHeight, 30000, random);
    growEarTufts(random);
    growWisps(kHead, kHeadWidth, kHeadHeight, 1700, random);
    growOver(kHead, kHeadWidth, kHeadHeight, 24000, random);
    // Like tiles on a roof: what lies farther from the face lies lower.
    const auto fromFace = [](const Strand& strand) {
        const double away = distance(strand.root, kFace);
        return onHead(strand.root) ? std::min(away, nearestEye(strand.root) + 130) : away + 500;
    };
    std::stable_sort(strands_.begin(), strands_.end(),
                     [&](const Strand& a, const Strand& b) { return fromFace(a) > fromFace(b); });
}

void Plumage::growOver(Point centre, double halfWidth, double halfHeight, int count, Random& random) {
    for (int i = 0; i < count; ++i) {
        const double turn = 2 * std::numbers::pi * random.unit();
        const double out = std::sqrt(random.unit());
        const Point root{centre.x + std::cos(turn) * out * halfWidth,
                         centre.y + std::sin(turn) * out * halfHeight};
        const float onFace = smoothStep(420, 200, nearestEye(root));
        const double length = random.between(75, 135) * (1 - 0.45 * onFace);
        if (nearestEye(root) > 128)
            strands_.push_back(grown(root, length, random.between(5.5F, 10.5F) * (1 - 0.4 * onFace), random));
    }
}

void Plumage::growWisps(Point centre, double halfWidth, double halfHeight, int count, Random& random) {
    for (int i = 0; i < count; ++i) {
        const double turn = 2 * std::numbers::pi * random.unit();
        const double out = random.between(0.93F, 1.0F);
        const Point root{centre.x + std::cos(turn) * out * halfWidth,
                         centre.y + std::sin(turn) * out * halfHeight};
        Strand wisp = grown(root, random.between(110, 215), random.between(2.2F, 4.5F), random);
        wisp.alpha = random.between(0.35F, 0.8F);
        strands_.push_back(wisp);
    }
}

void Plumage::growEarTufts(Random& random) {
    for (const double side : {-1.0, 1.0}) {
        for (int i = 0; i < 700; ++i) {
            const Point root{kHead.x + side * (330 + 75 * static_cast<double>(random.bell())),
                             kHead.y - 360 + 55 * static_cast<double>(random.bell())};
            Strand tuft = grown(root, random.between(120, 250), random.between(5, 9), random);
            const double reach = random.between(120, 250);
            const double lean = 0.55 + 0.16 * static_cast<double>(random.bell());
            tuft.bend = {root.x + side * reach * 0.35, root.y - reach * 0.55};
            tuft.tip = {root.x + side * reach * lean, root.y - reach};
            strands_.push_back(tuft);
        }
    }
}

// Fills what shows between the strands.
void Plumage::paintUndercoat(Band& band) const {
    const auto fill = [&band](Point centre, double halfWidth, double halfHeight) {
        band.paint(Box::around(centre, halfWidth, halfHeight), [&](ScenePixel& pixel, Point place) {
            const double out =
                std::hypot((place.x - centre.x) / halfWidth, (place.y - centre.y) / halfHeight);
            const float alpha = smoothStep(1.0, 0.96, out);
            if (alpha > 0)
                pixel.coverWithSubject(plumeAt(place) * lightAt(place) * 0.4F, alpha);
        });
    };
    fill(kBody, kBodyWidth, kBodyHeight);
    fill(kHead, kHeadWidth, kHeadHeight);
}

void Plumage::paint(Band& band) const {
    paintUndercoat(band);
    for (const Strand& strand : strands_)
        paintStrand(band, strand);
}

}  // namespace trimora::sample
