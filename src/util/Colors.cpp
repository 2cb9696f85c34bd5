#include "util/Colors.h"

#include <QPainter>
#include <algorithm>

namespace trimora::util {
namespace {

constexpr int kSquare = 8;
constexpr double kGreyLevel = 0.85;

QImage checkerboardTile() {
    QImage tile(2 * kSquare, 2 * kSquare, QImage::Format_RGB32);
    tile.fill(Qt::white);
    QPainter painter(&tile);
    const QColor grey = QColor::fromRgbF(kGreyLevel, kGreyLevel, kGreyLevel);
    painter.fillRect(0, 0, kSquare, kSquare, grey);
    painter.fillRect(kSquare, kSquare, kSquare, kSquare, grey);
    return tile;
}

float fraction(double value) {
    return static_cast<float>(std::clamp(value, 0.0, 1.0));
}

}  // namespace

QColor r_g_b(double r, double g, double b) {
    return r_g_b_a(r, g, b, 1.0);
}

QColor r_g_b_a(double r, double g, double b, double a) {
    const double whole = r > 1 || g > 1 || b > 1 ? 255 : 1;
    return QColor::fromRgbF(fraction(r / whole), fraction(g / whole), fraction(b / whole), fraction(a));
}

QColor randomColor(QRandomGenerator& generator) {
    const int red = generator.bounded(256);
    const int green = generator.bounded(256);
    return QColor(red, green, generator.bounded(256));
}

QImage pixel(const QColor& color) {
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

const QBrush& patternBackground() {
    static const QBrush pattern(checkerboardTile());
    return pattern;
}

}  // namespace trimora::util
