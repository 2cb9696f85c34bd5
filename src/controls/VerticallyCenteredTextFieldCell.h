#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace trimora::controls {

/// Draws one line of text in the middle between top and bottom of its frame. Coordinates are the
/// toolkit's, y-down, like the painter's.
class VerticallyCenteredTextFieldCell {
 public:
    QString title;
    QFont font;
    QColor color = Qt::white;
    Qt::Alignment alignment = Qt::AlignLeft;  ///< across

    /// Where in `bounds` the text goes: as wide as that, as high as a line, and never higher.
    [[nodiscard]] QRectF titleRectForBounds(const QRectF& bounds) const;
    void drawInteriorWithFrame_inView(const QRectF& frame, QPainter& view) const;
};

}  // namespace trimora::controls
