#include "editor/EmptyHint.h"

#include <QEvent>
#include <QPainter>

#include "controls/Icons.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
namespace palette = controls::palette;

EmptyHint::EmptyHint(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(QStringLiteral("Drop a picture here or open one"));
    setGeometry(parent->rect());
    parent->installEventFilter(this);
}

void EmptyHint::setHighlighted(bool highlighted) {
    highlighted_ = highlighted;
    update();
}

bool EmptyHint::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void EmptyHint::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen frame(highlighted_ ? palette::kAccent : palette::kFrame, metrics::kDropFrameWidth);
    frame.setDashPattern(
        {metrics::kDropDash / metrics::kDropFrameWidth, metrics::kDropDash / metrics::kDropFrameWidth});
    frame.setCapStyle(Qt::FlatCap);
    painter.setPen(frame);
    const int inset = metrics::kDropFrameInset;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), metrics::kDropFrameRadius,
                            metrics::kDropFrameRadius);

    QRect image(QPoint(), QSize(metrics::kDropImage, metrics::kDropImage));
    image.moveCenter(rect().center() - QPoint(0, metrics::kDropImage / 2));
    controls::icon(QStringLiteral("picture_drop")).paint(&painter, image);

    QFont words = font();
    words.setPointSizeF(metrics::kHintFont);
    painter.setFont(words);
    const int line = painter.fontMetrics().height() + metrics::kGap;
    QRect text(0, image.bottom() + metrics::kGap, width(), line);
    painter.setPen(palette::kText);
    painter.drawText(text, Qt::AlignCenter, QStringLiteral("Drop a picture here or open one"));
    painter.setPen(palette::kSecondaryText);
    painter.drawText(text.translated(0, line), Qt::AlignCenter, QStringLiteral("PNG, JPEG, TIFF or GIF"));
}

}  // namespace trimora::editor
