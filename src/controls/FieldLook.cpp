#include "controls/FieldLook.h"

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

QString fieldLook() {
    return QStringLiteral(
               "QLineEdit { background: %1; color: %2; border: 1px solid %1; border-radius: %3px;"
               " selection-background-color: %4; }"
               "QLineEdit:focus { border-color: %5; } QLineEdit:disabled { color: %6; }")
        .arg(palette::kField.name(QColor::HexArgb), palette::kText.name(QColor::HexArgb))
        .arg(metrics::kCornerRadius)
        .arg(palette::kAccent.name(QColor::HexArgb), palette::kFocusOnField.name(QColor::HexArgb),
             palette::kDisabledText.name(QColor::HexArgb));
}

}  // namespace trimora::controls
