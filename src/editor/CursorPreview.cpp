#include "editor/CursorPreview.h"

#include <QPainter>
#include <cmath>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "foundation/Log.h"
#include "util/BitmapImage.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
using cutengine::BrushCursorShape;

static_assert(CursorPreview::kCursorRectDelta == BrushCursorShape::kMargin);

CursorPreview::CursorPreview(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(tr("Brush size"));
    resize(sizeHint());
    hide();
}

BrushCursorShape CursorPreview::shapeFor(float diameter) {
    const auto even = static_cast<float>(std::lround(diameter) & ~1L);
    BrushCursorShape shape = BrushCursorShape::forDiameter(even);
    shape.side = static_cast<double>(2 * kCursorRectDelta + diameter);
    return shape;
}

void CursorPreview::showCursor(float diameter) {
    shape_ = shapeFor(diameter);
    imageCursor_ = {};
    update();
}

QPixmap CursorPreview::imageCursor() {
    const double scale = devicePixelRatioF();
    const bool isDrawn = !imageCursor_.isNull() && imageCursor_.devicePixelRatio() == scale;
    if (shape_ && !isDrawn) {
        const auto drawn = drawBrushCursor(*shape_, scale);
        if (!drawn) {
            foundation::log::warning("no brush preview: %s", drawn.error().message.c_str());
            return {};
        }
        imageCursor_ = QPixmap::fromImage(util::sharedImage(drawn->view()).copy());
        imageCursor_.setDevicePixelRatio(scale);
    }
    return imageCursor_;
}

QSize CursorPreview::sizeHint() const {
    return {metrics::kBrushPreview, metrics::kBrushPreview};
}

void CursorPreview::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(controls::palette::kScrim);
    painter.drawRoundedRect(rect(), metrics::kCornerRadius, metrics::kCornerRadius);
    const QPixmap shown = imageCursor();
    if (shown.isNull())
        return;
    // On whole device pixels, or the thin line would blur.
    const double scale = devicePixelRatioF();
    const auto onGrid = [scale](double value) { return std::round(value * scale) / scale; };
    const QSizeF size = shown.deviceIndependentSize();
    painter.drawPixmap(QPointF(onGrid((width() - size.width()) / 2), onGrid((height() - size.height()) / 2)),
                       shown);
}

}  // namespace trimora::editor
