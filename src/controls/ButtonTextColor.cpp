#include "controls/ButtonTextColor.h"

#include <QAbstractButton>

namespace trimora::controls {

QColor textColor(const QAbstractButton& button) {
    return button.palette().color(QPalette::Active, QPalette::ButtonText);
}

void setTextColor(QAbstractButton& button, const QColor& color) {
    QPalette colors = button.palette();
    colors.setColor(QPalette::Active, QPalette::ButtonText, color);
    colors.setColor(QPalette::Inactive, QPalette::ButtonText, color);
    button.setPalette(colors);
}

}  // namespace trimora::controls
