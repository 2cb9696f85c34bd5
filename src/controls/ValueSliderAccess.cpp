#include "controls/ValueSliderAccess.h"

#include "controls/AccessFactory.h"
#include "controls/ValueSlider.h"
#include "util/TextField.h"

namespace trimora::controls {
ValueSliderAccess::ValueSliderAccess(ValueSlider& slider)
    : QAccessibleWidget(&slider, QAccessible::Slider), slider_(slider) {}

void ValueSliderAccess::install() {
    installAccess<ValueSlider, ValueSliderAccess>();
}

void* ValueSliderAccess::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString ValueSliderAccess::text(QAccessible::Text which) const {
    if (which != QAccessible::Value)
        return QAccessibleWidget::text(which);
    const util::TextField* const field = slider_.boundedField();
    return field != nullptr ? field->text() : QString::number(slider_.doubleValue());
}

QVariant ValueSliderAccess::currentValue() const {
    return slider_.doubleValue();
}

void ValueSliderAccess::setCurrentValue(const QVariant& value) {
    slider_.stepTo(value.toDouble());
}

QVariant ValueSliderAccess::minimumValue() const {
    return slider_.minValue();
}

QVariant ValueSliderAccess::maximumValue() const {
    return slider_.maxValue();
}

QVariant ValueSliderAccess::minimumStepSize() const {
    return slider_.singleStep();
}

}  // namespace trimora::controls
