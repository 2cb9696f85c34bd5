#include "util/SpinningProgress.h"

#include <QPainter>
#include <algorithm>

namespace trimora::util {
namespace {

constexpr int kStrokes = 12;
constexpr int kMillisecondsPerTurn = 1000;
constexpr double kLargestRadius = 16;  // points; a smaller view makes the wheel smaller
constexpr double kInnerShare = 0.55;   // where a stroke begins, as a share of the radius
constexpr double kStrokeShare = 0.14;  // its width
constexpr double kFaintest = 0.15;     // opacity of the stroke that is the longest behind

}  // namespace

SpinningProgress::SpinningProgress(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(QStringLiteral("Working"));
    turning_.setStartValue(0);
    turning_.setEndValue(kStrokes);
    turning_.setDuration(kMillisecondsPerTurn);
    turning_.setLoopCount(-1);
    connect(&turning_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void SpinningProgress::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const double radius = std::min({kLargestRadius, width() / 2.0, height() / 2.0});
    const int first = turning_.currentValue().toInt();
    for (int behind = 0; behind < kStrokes; ++behind) {
        QColor colour = palette().color(QPalette::WindowText);
        colour.setAlphaF(colour.alphaF() * std::max(kFaintest, 1.0 - static_cast<double>(behind) / kStrokes));
        painter.setPen(QPen(colour, radius * kStrokeShare, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 / kStrokes * (first - behind));
        painter.drawLine(QPointF(0, -radius * kInnerShare), QPointF(0, -radius * (1 - kStrokeShare / 2)));
        painter.restore();
    }
}

void SpinningProgress::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    turning_.start();
}

void SpinningProgress::hideEvent(QHideEvent* event) {
    turning_.stop();
    QWidget::hideEvent(event);
}

}  // namespace trimora::util
