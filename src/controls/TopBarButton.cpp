#include "controls/TopBarButton.h"

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

TopBarButton::TopBarButton(const ControlContext& context, QWidget* parent)
    : LabelButton(context, Hover::still, parent) {
    body().cornerRadius = metrics::kCornerRadius;
}

void TopBarButton::showState() {
    body().backgroundColor = isDown()    ? palette::kField
                             : mouseIn() ? palette::kRaised
                                         : QColor(Qt::transparent);
    showLabel(palette::kText);
}

}  // namespace trimora::controls
