#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "controls/LayerHost.h"
#include "cutengine/Colour.h"

namespace trimora::controls {

/// One of the two areas of the colour picker: a rectangle of colours with a marker on it.
///
/// It shows what its layer paints and tells where it is pressed and dragged; what the marker stands on
/// is for its owner to say. Places are y-up, from the area's bottom left corner. The marker's place is
/// that of its lower left corner, and its centre lies where the person pointed.
///
/// A press of the left button is a press; moving with it held is a pan; letting go after a pan is a
/// press at that place, so that what the marker comes to rest on counts. Arrow keys press one point
/// further on, ten with Shift. A screen reader hears the colour under the marker; along a strip it also
/// finds a value that it can set. Main thread only.
class ColorArea final : public QWidget {
 public:
    ColorArea(const ControlContext& context, const QSize& size, const QSize& marker, QWidget* parent);

    std::function<void(foundation::Point)> onPress;
    std::function<void(foundation::Point)> onPan;

    [[nodiscard]] ControlLayer& layer() { return layers_.root(); }

    [[nodiscard]] const foundation::Rect& markerFrame() const { return marker_; }
    /// Moves the marker so that its centre is there, inside the area or not.
    void setMarkerCentre(foundation::Point centre);
    /// The nearest place at which the marker's centre can be with the marker wholly inside the area.
    [[nodiscard]] foundation::Point clamped(foundation::Point centre) const;

    /// The colour of the one point whose lower left corner is there, read from what the layer paints.
    [[nodiscard]] cutengine::Colour colorOfPoint(foundation::Point point) const;
    /// The colour at the marker's place.
    [[nodiscard]] cutengine::Colour colorAtMarker() const;
    /// The place whose colour is the nearest to this one.
    [[nodiscard]] foundation::Point placeOf(const cutengine::Colour& colour) const;

 protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    [[nodiscard]] foundation::Point location(const QPointF& position) const;
    [[nodiscard]] QImage rendered(foundation::Point origin, const QSize& size) const;

    LayerHost layers_;
    foundation::Rect marker_;
    bool panned_ = false;
};

/// "#RRGGBB" in capitals; what is outside 0..1 is taken as the nearest end.
[[nodiscard]] QString hexText(const cutengine::Colour& colour);

/// The colour of "#RRGGBB", with or without the sign and in any case; none for any other text.
[[nodiscard]] std::optional<cutengine::Colour> colourOfHexText(const QString& text);

}  // namespace trimora::controls
