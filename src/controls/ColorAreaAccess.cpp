#include "controls/ColorAreaAccess.h"

#include <QAccessibleWidget>

#include "controls/AccessFactory.h"
#include "controls/ColorArea.h"

namespace trimora::controls {
namespace {

class ColorAreaInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
    explicit ColorAreaInterface(ColorArea& area)
        : QAccessibleWidget(
              &area, area.height() > 3 * area.width() ? QAccessible::Slider : QAccessible::ColorChooser),
          area_(area) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && role() == QAccessible::Slider)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? hexText(area_.colorAtMarker()) : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return area_.markerFrame().y; }
    QVariant minimumValue() const override { return 0.0; }
    QVariant maximumValue() const override { return area_.height() - area_.markerFrame().height; }
    QVariant minimumStepSize() const override { return 1.0; }
    void setCurrentValue(const QVariant& value) override {
        if (area_.onPress)
            area_.onPress(
                {area_.markerFrame().centre().x, value.toDouble() + area_.markerFrame().height / 2});
    }

 private:
    ColorArea& area_;
};

}  // namespace

void installColorAreaAccess() {
    installAccess<ColorArea, ColorAreaInterface>();
}

}  // namespace trimora::controls
