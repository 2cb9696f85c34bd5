#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QMouseEvent>
#include <QPointF>
#include <QRectF>
#include <QWidget>

/// What any view can do beside what the toolkit gives it. Points are the toolkit's: y down, origin at
/// the top left corner of the view named. Main thread only.
namespace trimora::util {

/// Marks the view, and every view below it, as drawn on a layer of its own. The toolkit draws all
/// views of a window into one, so nothing looks different; wantsLayer() reads the mark.
void setWantsLayerToViewAndSubViews(QWidget& view, bool wantsLayer);
void setWantsLayerToAllSubviews(QWidget& view);
[[nodiscard]] bool wantsLayer(const QWidget& view);

/// The view's subviews and all theirs, depth first.
[[nodiscard]] QList<QWidget*> allSubviews(const QWidget& view);

/// Deletes every subview, and all that they hold.
void removeAllSubviews(QWidget& view);

/// Cuts the view to a rectangle with corners of this radius. It holds for the bounds of now.
void setMaskWithCornerRadius(QWidget& view, double radius);

/// Fills the view with the colour behind what it draws.
void setBackgroundColor(QWidget& view, const QColor& color);
/// The same, and marks the view as drawn on a layer of its own.
void layerBackground(QWidget& view, const QColor& color);

/// Shows the image in the view's bounds of now, behind its subviews, in place of an image set before:
/// scaled to fill them with its proportions kept, what is too much cut off on both sides. A view
/// that draws opaquely itself hides it.
void setImageLayer(QWidget& view, const QImage& image);

/// What the view shows, as an image of its bounds' size in points, at its screen's scale factor.
[[nodiscard]] QImage imageRepresentation(QWidget& view);
/// The same at a scale factor of the caller's.
[[nodiscard]] QImage imageRepresentation(QWidget& view, double scaleFactor);
/// The same for a view whose drawing was never made a layer: here there is no difference.
[[nodiscard]] QImage imageRepresentationOld(QWidget& view);
/// What the window shows where the view is, with all that covers the view.
[[nodiscard]] QImage imageRepresentationWindowScreenshot(QWidget& view);

/// A point of the view, and the view's bounds, in the coordinates of its window.
[[nodiscard]] QPointF pointInFrame(const QWidget& view, QPointF point);
[[nodiscard]] QRectF coordInFrame(const QWidget& view);

/// Where a mouse event happened, in the coordinates of the view, whichever view received it.
[[nodiscard]] QPointF locationInView(const QSinglePointEvent& event, const QWidget& view);

/// While a mouse button is held: the view gets every drag, and the release that ends it, wherever they
/// happen in the program and whichever view was pressed. Does nothing while no button is held.
void lockMouse(QWidget& view);

/// Blocks the view in the name of `key` with an RKBlocker, which is made where there is none yet.
void blockWithoutProgress(QWidget& view, const QString& key);
/// Takes the key back from every RKBlocker in the view.
void unblock(QWidget& view, const QString& key);

/// The next visible view below this one, among the subviews of its parent, that lies under the point
/// (in this view's coordinates); none where there is none.
[[nodiscard]] QWidget* nextViewForEvent(const QWidget& view, QPointF location);

/// Hands the press of a mouse button on to that view; returns whether there was one.
bool handleMouseDown(QWidget& view, const QMouseEvent& event);

}  // namespace trimora::util
