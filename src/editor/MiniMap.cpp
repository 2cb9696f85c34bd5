#include "editor/MiniMap.h"

#include <QDrag>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/ArrowKeys.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "cutengine/imageutil/PictureActions.h"
#include "editor/PictureLayer.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
namespace palette = controls::palette;
using controls::ControlLayer;
using controls::ShapeLayer;
using cutengine::BezierPath;
using cutengine::PicturePtr;
using foundation::Point;
using foundation::Rect;
using foundation::Size;

namespace {

/// The area between two rectangles, as one path: filled, the inner one is left out.
BezierPath between(const Rect& outer, const Rect& inner) {
    BezierPath path = BezierPath::rectangle(outer);
    path.moveTo({inner.x, inner.y});
    path.lineTo({inner.maxX(), inner.y});
    path.lineTo({inner.maxX(), inner.maxY()});
    path.lineTo({inner.x, inner.maxY()});
    path.close();
    return path;
}

Rect inset(const Rect& rect, double by) {
    return {rect.x + by, rect.y + by, std::max(rect.width - 2 * by, 0.0),
            std::max(rect.height - 2 * by, 0.0)};
}

/// The nearest rectangle of whole device pixels: a thin line between two of them would blur.
Rect onPixels(const Rect& rect, double scaleFactor) {
    const auto snapped = [scaleFactor](double value) {
        return std::round(value * scaleFactor) / scaleFactor;
    };
    const double x = snapped(rect.x);
    const double y = snapped(rect.y);
    return {x, y, snapped(rect.maxX()) - x, snapped(rect.maxY()) - y};
}

}  // namespace

MiniMap::MiniMap(const Services& services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      layers_(*this, services.control),
      backMiniMapImage_(layers_.root().make<ControlLayer>()),
      miniMapImage_(layers_.root().make<PictureLayer>()),
      viewBorderScale_(layers_.root().make<ControlLayer>()),
      maskLayerScale_(viewBorderScale_.make<ShapeLayer>()),
      borderLayerScale_(viewBorderScale_.make<ShapeLayer>()),
      testboirder_(viewBorderScale_.make<ControlLayer>()),
      openPictureViewScale_(layers_.root().make<ControlLayer>()),
      caption_(openPictureViewScale_.make<controls::TextLayer>()) {
    layers_.root().backgroundColor = palette::kRaised;
    layers_.root().cornerRadius = metrics::kCornerRadius;
    layers_.root().borderColor = palette::kFocus;
    backMiniMapImage_.backgroundColor = palette::kWindow;
    backMiniMapImage_.cornerRadius = metrics::kCornerRadius;
    viewBorderScale_.hidden = true;
    maskLayerScale_.fillColor = palette::kMapShade;
    borderLayerScale_.lineWidth = metrics::kMapEdge;
    borderLayerScale_.fillColor = palette::kMapEdge;
    openPictureViewScale_.backgroundColor = palette::kField;
    openPictureViewScale_.cornerRadius = metrics::kCornerRadius;
    caption_.foregroundColor = palette::kSecondaryText;
    caption_.alignment = Qt::AlignHCenter;
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(tr("Mini-map"));
    setToolTip(tr("Click or drag to move the view; drag the picture out to copy the result elsewhere"));
    resize(sizeHint());
    layOut();  // a hidden widget hears of its size only when it is shown
}

MiniMap::~MiniMap() = default;

const ControlLayer& MiniMap::miniMapImage() const {
    return miniMapImage_;
}

QSize MiniMap::sizeHint() const {
    const int around = 2 * metrics::kGap;
    return {metrics::kMiniMap + around,
            metrics::kMiniMap + around + metrics::kGap + metrics::kMiniMapCaption};
}

// ── The picture ────────────────────────────────────────────────────────────────────────────────

void MiniMap::setPicture(PicturePtr picture) {
    picture_ = std::move(picture);
    border_ = {};
    viewBorderScale_.hidden = picture_ == nullptr;
    takeScaled(nullptr);
    scaledFor_ = {};
    fitPicture();
    showCaption();
}

void MiniMap::showCaption() {
    caption_.string =
        picture_ == nullptr
            ? QString()
            : QStringLiteral("%1 \u00d7 %2").arg(picture_->pixelWidth()).arg(picture_->pixelHeight());
    setAccessibleDescription(caption_.string);
    update();
}

void MiniMap::fitPicture() {
    fit_ = MiniMapFit::of(picture_ == nullptr ? Size{} : picture_->size(), miniMapImage_.frame().size());
    miniMapImage_.pictureFrame = fit_.picture(miniMapImage_.frame().size());
    placeBorder();
    scalePicture();
}

void MiniMap::scalePicture() {
    const double scale = devicePixelRatioF();
    const Rect place = miniMapImage_.pictureFrame;
    const QSize wanted(std::max(1, static_cast<int>(std::lround(place.width * scale))),
                       std::max(1, static_cast<int>(std::lround(place.height * scale))));
    if (picture_ == nullptr || wanted == scaledFor_)
        return;
    scaledFor_ = wanted;
    scaling_ = std::make_shared<int>();
    foundation::QueueFactory& queues = services_.queues;
    queues.backgroundQueue().async(
        [this, &queues, picture = picture_, wanted, current = std::weak_ptr(scaling_)] {
            PicturePtr scaled = cutengine::resize(picture, wanted.width(), wanted.height(), queues.workers());
            queues.mainQueue().async([this, scaled = std::move(scaled), current] {
                if (!current.expired())
                    takeScaled(scaled);
            });
        });
}

void MiniMap::takeScaled(const PicturePtr& scaled) {
    scaling_.reset();
    miniMapImage_.picture = scaled;
    update();
}

// ── The part in view ───────────────────────────────────────────────────────────────────────────

void MiniMap::showBorder(float sootnX, float sootnY, float sizeW, float sizeH) {
    border_ = {sootnX, sootnY, sizeW, sizeH};
    placeBorder();
}

void MiniMap::placeBorder() {
    const Size frame = miniMapImage_.frame().size();
    testboirder_.setFrame(fit_.border(frame, border_.sootnX, border_.sootnY, border_.sizeW, border_.sizeH));
    // A view larger than the picture shows all of it; the line stays on the picture.
    const Rect shown = fit_.picture(frame);
    const Rect edge = onPixels(intersected(testboirder_.frame(), shown), devicePixelRatioF());
    maskLayerScale_.path = between(shown, edge);
    borderLayerScale_.path = between(edge, inset(edge, borderLayerScale_.lineWidth));
    update();
}

Point MiniMap::shareAt(QPointF place) const {
    const Rect frame = miniMapImage_.frame();
    return fit_.share(frame.size(), {place.x() - frame.x, height() - place.y() - frame.y});
}

Point MiniMap::shownCentre() const {
    const Rect border = testboirder_.frame();
    return fit_.share(miniMapImage_.frame().size(),
                      {border.x + border.width / 2, border.y + border.height / 2});
}

void MiniMap::wantCentre(Point share) {
    if (centreWanted_)
        centreWanted_(share);
}

// ── Input ──────────────────────────────────────────────────────────────────────────────────────

void MiniMap::mousePressEvent(QMouseEvent* event) {
    const Rect frame = miniMapImage_.frame();
    const Point place{event->position().x(), height() - event->position().y()};
    if (event->button() != Qt::LeftButton || picture_ == nullptr || !frame.contains(place)) {
        QWidget::mousePressEvent(event);
        return;
    }
    centreAtPress_ = shownCentre();
    wantCentre(shareAt(event->position()));
}

void MiniMap::mouseMoveEvent(QMouseEvent* event) {
    if (!centreAtPress_)
        return;
    const int far = metrics::kDragOut;
    if (supply_ && !rect().adjusted(-far, -far, far, far).contains(event->position().toPoint()))
        dragOut();
    else
        wantCentre(shareAt(event->position()));
}

void MiniMap::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        centreAtPress_.reset();
}

void MiniMap::keyPressEvent(QKeyEvent* event) {
    const QPoint way = controls::arrowStep(*event);
    if (way.isNull() || picture_ == nullptr) {
        QWidget::keyPressEvent(event);
        return;
    }
    const double step = event->modifiers() & Qt::ShiftModifier ? metrics::kLongMapStep : metrics::kMapStep;
    const auto moved = [step](double from, int direction, float inView) {
        const int sign = (direction > 0) - (direction < 0);
        return std::clamp(from + sign * step * std::min(static_cast<double>(inView), 1.0), 0.0, 1.0);
    };
    const Point centre = shownCentre();
    wantCentre({moved(centre.x, way.x(), border_.sizeW), moved(centre.y, -way.y(), border_.sizeH)});
}

void MiniMap::dragOut() {
    wantCentre(*std::exchange(centreAtPress_, std::nullopt));
    outgoing_ = std::make_shared<const ScratchFolder>(services_.caches);
    auto carried = std::make_unique<OutgoingPictureData>(supply_, outgoing_);
    const QPixmap shown = miniMapImage_.pixmap(devicePixelRatioF());
    if (startDrag_) {
        startDrag_(std::move(carried), shown);
        return;
    }
    auto* const drag = new QDrag(this);
    drag->setMimeData(carried.release());
    drag->setPixmap(shown);
    drag->exec(Qt::CopyAction);
}

// ── Look ───────────────────────────────────────────────────────────────────────────────────────

void MiniMap::layOut() {
    layers_.fitToWidget();
    const double gap = metrics::kGap;
    const double caption = metrics::kMiniMapCaption;
    const double side = std::max(std::min(width() - 2 * gap, height() - 3 * gap - caption), 0.0);
    const Rect frame{(width() - side) / 2, 2 * gap + caption, side, side};
    backMiniMapImage_.setFrame(frame);
    miniMapImage_.setFrame(frame);
    viewBorderScale_.setFrame(frame);
    openPictureViewScale_.setFrame({gap, gap, std::max(width() - 2 * gap, 0.0), caption});
    caption_.setFrame(openPictureViewScale_.bounds());
    fitPicture();
}

void MiniMap::resizeEvent(QResizeEvent* /*event*/) {
    layOut();
}

void MiniMap::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void MiniMap::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void MiniMap::paintEvent(QPaintEvent* /*event*/) {
    scalePicture();  // the screen may have another scale factor since
    caption_.font = font();
    layers_.root().borderWidth = hasFocus() ? metrics::kFocusLine : 0;
    QPainter painter(this);
    layers_.paint(painter);
}

}  // namespace trimora::editor
