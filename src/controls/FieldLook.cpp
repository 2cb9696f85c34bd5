#include "controls/FieldLook.h"

#include <QEvent>
#include <QLineEdit>

#include "controls/StyleSheet.h"

namespace trimora::controls {
namespace {

constexpr const char* kSheet = R"(
QLineEdit { background: @field; color: @text; border: 1px solid @field; border-radius: @radius;
    selection-background-color: @accent; }
QLineEdit:focus { border-color: @focus; }
QLineEdit:disabled { color: @disabled; }
)";

/// Belongs to its field.
class LookWhenShown final : public QObject {
 public:
    explicit LookWhenShown(QLineEdit& field) : QObject(&field) { field.installEventFilter(this); }

    bool eventFilter(QObject* field, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            field->removeEventFilter(this);
            static_cast<QLineEdit*>(field)->setStyleSheet(styleSheet(kSheet));
        }
        return false;
    }
};

}  // namespace

void giveFieldLook(QLineEdit& field) {
    new LookWhenShown(field);
}

}  // namespace trimora::controls
