#include "editor/DragView.h"

#include <QDropEvent>
#include <QFile>
#include <QFontMetricsF>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QUrl>
#include <algorithm>
#include <numbers>
#include <utility>

#include "controls/ImageLayer.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/PathDrawing.h"
#include "cutengine/imageutil/BezierPath.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
namespace palette = controls::palette;
using cutengine::BezierPath;
using foundation::Rect;
using foundation::Size;

namespace {

DragViewDelegate::Files localFiles(const QMimeData& data) {
    DragViewDelegate::Files files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            files.emplace_back(QFile::encodeName(url.toLocalFile()).toStdString());
    }
    return files;
}

bool isUsable(const QMimeData& data) {
    return !localFiles(data).empty() || PromisedFiles::areIn(data);
}

constexpr double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

}  // namespace

DragView::DragView(foundation::QueueFactory& queues, std::filesystem::path caches, QWidget* parent)
    : QWidget(parent),
      promisedFiles_(queues, std::move(caches)),
      lineColor_(palette::kFrame),
      highlightedColor_(palette::kAccent) {
    setAcceptDrops(true);
}

void DragView::alsoTakeDropsOn(QWidget& widget) {
    widget.setAcceptDrops(true);
    widget.installEventFilter(this);
}

// ── What the owner sets ────────────────────────────────────────────────────────────────────────

void DragView::setImage(const QIcon& image, QSizeF size) {
    image_ = image;
    imageSize_ = size;
    update();
}

void DragView::setLineColor(const QColor& color) {
    lineColor_ = color;
    update();
}

void DragView::setHighlightedColor(const QColor& color) {
    highlightedColor_ = color;
    update();
}

void DragView::setStrTitle(const QString& title) {
    strTitle_ = title;
    setAccessibleName(title);
    update();
}

void DragView::setStrDescription(const QString& description) {
    strDescription_ = description;
    setAccessibleDescription(description);
    update();
}

void DragView::setStrInfoText(std::optional<QString> text) {
    strInfoText_ = std::move(text);
    update();
}

void DragView::setProgressMode(bool on) {
    progressMode_ = on;
    update();
}

void DragView::setProgress(float progress) {
    progress_ = progress;
    update();
}

void DragView::setHideAll(bool hide) {
    hideAll_ = hide;
    update();
}

// ── Drags ──────────────────────────────────────────────────────────────────────────────────────

bool DragView::event(QEvent* event) {
    return handleDrag(*event, *this) || QWidget::event(event);
}

bool DragView::eventFilter(QObject* watched, QEvent* event) {
    return handleDrag(*event, static_cast<const QWidget&>(*watched)) || QWidget::eventFilter(watched, event);
}

bool DragView::handleDrag(QEvent& event, const QWidget& under) {
    const auto answer = [&event](bool accepted) {
        auto& drag = static_cast<QDropEvent&>(event);
        drag.setDropAction(Qt::CopyAction);
        drag.setAccepted(accepted);
        return true;
    };
    const auto drag = [&event]() -> const QDropEvent& { return static_cast<QDropEvent&>(event); };
    switch (event.type()) {
        case QEvent::DragEnter:
            return answer(draggingEntered(drag()));
        case QEvent::DragMove:
            return answer(draggingUpdated(drag(), under));
        case QEvent::DragLeave:
            draggingExited();
            draggingEnded();
            return true;
        case QEvent::Drop:
            answer(performDragOperation(drag()));
            draggingEnded();
            return true;
        default:
            return false;
    }
}

bool DragView::draggingEntered(const QDropEvent& drag) {
    if (drag.source() != nullptr || !isUsable(*drag.mimeData()))
        return false;
    ++sessionNumber_;
    performed_ = false;
    mouseIn_ = true;
    update();
    return true;
}

bool DragView::draggingUpdated(const QDropEvent& drag, const QWidget& under) {
    const QPointF position = under.mapToGlobal(drag.position());
    if (sessionNumber_ == prevSessionNumber_ && position == mousePosition_)
        return true;
    mousePosition_ = position;
    const bool newSession = std::exchange(prevSessionNumber_, sessionNumber_) != sessionNumber_;
    if (delegate_ != nullptr)
        delegate_->draggingFilesPerform_newSession(localFiles(*drag.mimeData()), newSession);
    return true;
}

void DragView::draggingExited() {
    mouseIn_ = false;
    if (delegate_ != nullptr)
        delegate_->draggingFilesExited();
    update();
}

bool DragView::performDragOperation(const QDropEvent& drag) {
    performed_ = true;
    mouseIn_ = false;
    update();
    if (delegate_ == nullptr)
        return false;
    if (const DragViewDelegate::Files files = localFiles(*drag.mimeData()); !files.empty()) {
        delegate_->draggingFilesComplete_needsWait(files, false);
        return true;
    }
    const DragViewDelegate::Files promised = promisedFiles_.take(*drag.mimeData());
    delegate_->draggingFilesComplete_needsWait(promised, !promised.empty());
    return !promised.empty();
}

void DragView::draggingEnded() {
    if (!performed_ && delegate_ != nullptr)
        delegate_->draggingFilesCancelled();
}

// ── Drawing ────────────────────────────────────────────────────────────────────────────────────

QFont DragView::lightFont(double points) const {
    constexpr double kPointsPerInch = 72;
    QFont light = font();
    light.setWeight(QFont::Light);
    // A point of the layout is a point of the view, which is no typographer's on most screens.
    light.setPointSizeF(std::max(points, 1.0) * kPointsPerInch / logicalDpiY());
    return light;
}

DragViewLayout DragView::currentLayout() const {
    const Measured now{size(),    font(),          logicalDpiY(),
                       strTitle_, strDescription_, image_.isNull() ? QSizeF() : imageSize_};
    if (!layout_ || measured_ != now) {
        layout_ = measuredLayout();
        measured_ = now;
    }
    return *layout_;
}

DragViewLayout DragView::measuredLayout() const {
    const Size view{static_cast<double>(width()), static_cast<double>(height())};
    const auto laidOut = [](const QFont& font, const QString& text) {
        return text.isEmpty() ? 0 : QFontMetricsF(font).size(0, text).height();
    };
    return DragViewLayout::of(
        view,
        {.titleHeight = laidOut(lightFont(DragViewLayout::titleFont(view)), strTitle_),
         .descriptionHeight = laidOut(lightFont(DragViewLayout::descriptionFont(view)), strDescription_),
         .image = image_.isNull() ? Size{} : Size{imageSize_.width(), imageSize_.height()}});
}

QRectF DragView::toWidget(const Rect& rect) const {
    return {rect.x, height() - rect.maxY(), rect.width, rect.height};
}

// Only what is touched: the arrow moves over bare ground, for ever.
void DragView::paintEvent(QPaintEvent* event) {
    if (hideAll_)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const DragViewLayout places = currentLayout();
    const QRectF touched = event->rect();
    constexpr double kLine = metrics::kDropFrameRadius + metrics::kDropFrameWidth;
    if (!toWidget(places.frame).adjusted(kLine, kLine, -kLine, -kLine).contains(touched))
        drawFrame(painter, places);
    if (progressMode_)
        drawProgress(painter, places);
    else if (toWidget(places.image).intersects(touched))
        drawImage(painter, places);
    drawTexts(painter, places, touched);
}

void DragView::drawFrame(QPainter& painter, const DragViewLayout& places) const {
    constexpr double kDash = metrics::kDropDash / metrics::kDropFrameWidth;
    QPen line(mouseIn_ ? highlightedColor_ : lineColor_, metrics::kDropFrameWidth);
    line.setDashPattern({kDash, kDash});
    line.setCapStyle(Qt::FlatCap);
    painter.setPen(line);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(toWidget(places.frame), metrics::kDropFrameRadius, metrics::kDropFrameRadius);
}

void DragView::drawImage(QPainter& painter, const DragViewLayout& places) const {
    controls::ImageLayer layer;
    layer.setFrame(places.image);
    layer.image = image_;
    layer.imageSize = {places.image.width, places.image.height};
    painter.save();
    painter.translate(0, height());
    painter.scale(1, -1);
    layer.paint(painter, 0);
    painter.restore();
}

void DragView::drawProgress(QPainter& painter, const DragViewLayout& places) const {
    if (places.gaugeRadius <= 0)
        return;
    const auto arc = [&](double from) {
        return controls::painterPath(BezierPath::bezierPathWithArcInCenter(
            places.gaugeCentre, places.gaugeRadius, radians(from), radians(180)));
    };
    painter.save();
    painter.translate(0, height());
    painter.scale(1, -1);
    const double done = std::clamp(static_cast<double>(progress_), 0.0, 1.0);
    // Nothing done is no sector: an arc that ends where it begins would be a whole turn.
    if (done > 0) {
        const QPainterPath rim = arc((1 - done) * 180);
        QPainterPath sector(QPointF(places.gaugeCentre.x, places.gaugeCentre.y));
        sector.lineTo(rim.elementAt(0));
        sector.connectPath(rim);
        sector.closeSubpath();
        painter.fillPath(sector, palette::kProgress);
    }
    painter.strokePath(arc(0), QPen(palette::kProgressLine, metrics::kDropFrameWidth));
    painter.restore();
}

void DragView::drawTexts(QPainter& painter, const DragViewLayout& places, const QRectF& touched) const {
    const Size view{static_cast<double>(width()), static_cast<double>(height())};
    constexpr int kCentred = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const auto draw = [&](const Rect& place, double points, int flags, const QString& text) {
        if (!toWidget(place).intersects(touched))
            return;
        painter.setFont(lightFont(points));
        painter.drawText(toWidget(place), flags, text);
    };
    painter.setPen(palette::kDropText);
    draw(places.title, DragViewLayout::titleFont(view), kCentred, strTitle_);
    draw(places.description, DragViewLayout::descriptionFont(view), kCentred, strDescription_);
    if (strInfoText_)
        draw(places.info, DragViewLayout::descriptionFont(view), Qt::AlignLeft | Qt::AlignTop, *strInfoText_);
}

}  // namespace trimora::editor
