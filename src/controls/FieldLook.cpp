#include "controls/FieldLook.h"

#include <QEvent>
#include <QLineEdit>
#include <QString>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {
namespace {

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

/// Belongs to its field.
class LookWhenShown final : public QObject {
 public:
    explicit LookWhenShown(QLineEdit& field) : QObject(&field) { field.installEventFilter(this); }

    bool eventFilter(QObject* field, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            field->removeEventFilter(this);
            static_cast<QLineEdit*>(field)->setStyleSheet(fieldLook());
        }
        return false;
    }
};

}  // namespace

void giveFieldLook(QLineEdit& field) {
    new LookWhenShown(field);
}

}  // namespace trimora::controls
