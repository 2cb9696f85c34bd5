#pragma once

#include <QAccessibleWidget>

namespace trimora::controls {

class ValueSlider;

/// A slider as screen readers see it: its role, name, value, range and step. What they set counts like a
/// key of the person's.
class ValueSliderAccess final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
    explicit ValueSliderAccess(ValueSlider& slider);

    /// Makes the toolkit use this class for every slider of ours. Again costs nothing.
    static void install();

    void* interface_cast(QAccessible::InterfaceType type) override;
    /// The value in words is what the bound field shows, such as "45%".
    [[nodiscard]] QString text(QAccessible::Text which) const override;

    [[nodiscard]] QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    [[nodiscard]] QVariant minimumValue() const override;
    [[nodiscard]] QVariant maximumValue() const override;
    [[nodiscard]] QVariant minimumStepSize() const override;

 private:
    ValueSlider& slider_;
};

}  // namespace trimora::controls
