#include "util/ActionBlock.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPainterPath>
#include <QPalette>
#include <QRegion>
#include <QVariant>

#include "util/FillingImage.h"
#include "util/RKBlocker.h"

namespace trimora::util {
namespace {

constexpr const char* kWantsLayer = "wantsLayer";

QList<QWidget*> subviews(const QWidget& view) {
    return view.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
}

/// The subviews that are of this class. (The toolkit's own search by type takes every widget for one
/// of a class without a meta object.)
template <typename View>
QList<View*> subviewsOfClass(const QWidget& view) {
    QList<View*> found;
    for (QWidget* const child : subviews(view)) {
        if (auto* const match = dynamic_cast<View*>(child))
            found.append(match);
    }
    return found;
}

/// Sends a mouse event of another view to this one, where it has other coordinates.
void sendCopy(const QMouseEvent& event, QWidget& view) {
    QMouseEvent copy(event.type(), locationInView(event, view), event.scenePosition(), event.globalPosition(),
                     event.button(), event.buttons(), event.modifiers());
    QCoreApplication::sendEvent(&view, &copy);
}

/// Gives a view the drags and the release of the program's mouse until the buttons are let go. (The
/// window system already sends them all to the window that was pressed.)
class MouseLock final : public QObject {
 public:
    explicit MouseLock(QWidget& view) : QObject(&view), view_(view) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool released = event->type() == QEvent::MouseButtonRelease;
        if (!watched->isWidgetType() || (!released && event->type() != QEvent::MouseMove))
            return false;
        if (released && static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton) {
            QCoreApplication::instance()->removeEventFilter(this);
            deleteLater();
        }
        if (watched != &view_)
            sendCopy(*static_cast<QMouseEvent*>(event), view_);
        return watched != &view_;
    }

 private:
    QWidget& view_;
};

}  // namespace

void setWantsLayerToViewAndSubViews(QWidget& view, bool wantsLayer) {
    view.setProperty(kWantsLayer, wantsLayer);
    for (QWidget* const below : allSubviews(view))
        below->setProperty(kWantsLayer, wantsLayer);
}

void setWantsLayerToAllSubviews(QWidget& view) {
    setWantsLayerToViewAndSubViews(view, true);
}

bool wantsLayer(const QWidget& view) {
    return view.property(kWantsLayer).toBool();
}

QList<QWidget*> allSubviews(const QWidget& view) {
    return view.findChildren<QWidget*>();
}

void removeAllSubviews(QWidget& view) {
    qDeleteAll(subviews(view));
}

void setMaskWithCornerRadius(QWidget& view, double radius) {
    QPainterPath path;
    path.addRoundedRect(view.rect(), radius, radius);
    view.setMask(QRegion(path.toFillPolygon().toPolygon()));
}

void setBackgroundColor(QWidget& view, const QColor& color) {
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, color);
    view.setPalette(palette);
    view.setAutoFillBackground(true);
}

void layerBackground(QWidget& view, const QColor& color) {
    view.setProperty(kWantsLayer, true);
    setBackgroundColor(view, color);
}

void setImageLayer(QWidget& view, const QImage& image) {
    qDeleteAll(subviewsOfClass<FillingImage>(view));
    auto* const layer = new FillingImage(image, &view);
    layer->setGeometry(view.rect());
    layer->lower();
    layer->show();
}

QImage imageRepresentation(QWidget& view) {
    return view.grab().toImage();
}

QImage imageRepresentation(QWidget& view, double scaleFactor) {
    QImage image((QSizeF(view.size()) * scaleFactor).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scaleFactor);
    image.fill(Qt::transparent);
    view.render(&image);
    return image;
}

QImage imageRepresentationOld(QWidget& view) {
    return imageRepresentation(view);
}

QImage imageRepresentationWindowScreenshot(QWidget& view) {
    return view.window()->grab(coordInFrame(view).toRect()).toImage();
}

QPointF pointInFrame(const QWidget& view, QPointF point) {
    return view.mapTo(view.window(), point);
}

QRectF coordInFrame(const QWidget& view) {
    return {pointInFrame(view, {}), QSizeF(view.size())};
}

QPointF locationInView(const QSinglePointEvent& event, const QWidget& view) {
    return view.mapFromGlobal(event.globalPosition());
}

void lockMouse(QWidget& view) {
    if (QGuiApplication::mouseButtons() != Qt::NoButton)
        new MouseLock(view);
}

void blockWithoutProgress(QWidget& view, const QString& key) {
    QList<RKBlocker*> blockers = subviewsOfClass<RKBlocker>(view);
    if (blockers.isEmpty()) {
        blockers.append(new RKBlocker(&view));
        blockers.first()->show();
    }
    blockers.first()->block(key);
}

void unblock(QWidget& view, const QString& key) {
    for (RKBlocker* const blocker : subviewsOfClass<RKBlocker>(view))
        blocker->unblock(key);
}

QWidget* nextViewForEvent(const QWidget& view, QPointF location) {
    if (view.parentWidget() == nullptr)
        return nullptr;
    const QList<QWidget*> siblings = subviews(*view.parentWidget());  // from the lowest to the topmost
    const QPointF place = view.mapToParent(location);
    for (auto next = siblings.indexOf(&view) - 1; next >= 0; --next) {
        QWidget* const sibling = siblings[next];
        if (sibling->isVisible() && sibling->geometry().contains(place.toPoint()))
            return sibling;
    }
    return nullptr;
}

bool handleMouseDown(QWidget& view, const QMouseEvent& event) {
    QWidget* const next = nextViewForEvent(view, event.position());
    if (next == nullptr)
        return false;
    sendCopy(event, *next);
    return true;
}

}  // namespace trimora::util
