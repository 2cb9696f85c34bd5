#pragma once

#include <QFont>
#include <QString>

#include "controls/ControlLayer.h"

namespace trimora::controls {

/// A layer with one line of text, centred between top and bottom. Text that is too long ends in an
/// ellipsis.
class TextLayer final : public ControlLayer {
 public:
    QString string;
    QFont font;
    QColor foregroundColor = Qt::white;
    Qt::Alignment alignment = Qt::AlignHCenter;  ///< across; left is left in every language

 protected:
    void paintContents(QPainter& painter, const LayerPresentation& shown) const override;
};

}  // namespace trimora::controls
