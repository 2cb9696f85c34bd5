#include "controls/ReferencePictureForTests.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace trimora::controls {
namespace {

constexpr double kBlock = 4;     // points
constexpr double kAllowed = 32;  // levels of 255, on average over a block
constexpr int kShift = 1;        // pixels that a block may have moved, in each direction

int distance(QRgb a, QRgb b) {
    return std::max(
        {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

double difference(const QImage& shown, const QImage& kept, const QRect& block, QPoint shift) {
    const QRect place = block.translated(shift);
    if (!kept.rect().contains(place))
        return 255;
    int sum = 0;
    for (int y = 0; y < block.height(); ++y) {
        const auto* const a = reinterpret_cast<const QRgb*>(shown.constScanLine(block.y() + y)) + block.x();
        const auto* const b = reinterpret_cast<const QRgb*>(kept.constScanLine(place.y() + y)) + place.x();
        for (int x = 0; x < block.width(); ++x)
            sum += distance(a[x], b[x]);
    }
    return static_cast<double>(sum) / (block.width() * block.height());
}

bool differs(const QImage& shown, const QImage& kept, const QRect& block) {
    if (difference(shown, kept, block, {}) <= kAllowed)
        return false;
    for (int y = -kShift; y <= kShift; ++y) {
        for (int x = -kShift; x <= kShift; ++x) {
            if (difference(shown, kept, block, {x, y}) <= kAllowed)
                return false;
        }
    }
    return true;
}

}  // namespace

std::vector<QRect> differences(const QImage& shown, const QImage& kept, double scale) {
    if (shown.size() != kept.size())
        return {shown.rect()};
    const QImage a = shown.convertToFormat(QImage::Format_RGB32);
    const QImage b = kept.convertToFormat(QImage::Format_RGB32);
    const int side = static_cast<int>(std::lround(kBlock * scale));
    std::vector<QRect> found;
    for (int y = 0; y < a.height(); y += side) {
        for (int x = 0; x < a.width(); x += side) {
            const QRect block = QRect(x, y, side, side) & a.rect();
            if (differs(a, b, block))
                found.push_back(block);
        }
    }
    return found;
}

}  // namespace trimora::controls
