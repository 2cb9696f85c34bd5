#pragma once

#include <QPointer>
#include <QWidget>
#include <string>

#include "util/ObjectRuntime.h"

namespace trimora::util {

class TextField;

/// A control with a number that a person sets, such as a slider: a value in a range, a target that is
/// told, and perhaps a text field that mirrors the value. (The toolkit's own sliders count in whole
/// steps; this value is any real number.)
///
/// Setting the value from code tells nobody but the field; sendAction() tells the target. Main thread
/// only.
class ValueControl : public QWidget {
 public:
    explicit ValueControl(QWidget* parent = nullptr);
    ~ValueControl() override;

    [[nodiscard]] double minValue() const { return minValue_; }
    [[nodiscard]] double maxValue() const { return maxValue_; }
    /// Both move the value into the new range. The minimum wins where it exceeds the maximum.
    void setMinValue(double minValue);
    void setMaxValue(double maxValue);

    [[nodiscard]] double doubleValue() const { return value_; }
    [[nodiscard]] float floatValue() const { return static_cast<float>(value_); }

    /// Sets the value, clamped to the range, and shows the value given in the bounded field.
    void setFloatValue(float value);
    void setDoubleValue(double value);

    /// How far the value has come from the minimum to the maximum, 0..1; 0 where they are the same.
    [[nodiscard]] double fraction() const;

    /// The field that mirrors the value. Setting it here is one half of TextField::setControl().
    void setBoundedField(TextField* field);
    [[nodiscard]] TextField* boundedField() const;

    /// Who is told, and by which selector; the target outlives the control or is taken off (null).
    void setTarget(RuntimeObject* target) { target_ = target; }
    void setAction(std::string selector) { action_ = std::move(selector); }
    [[nodiscard]] RuntimeObject* target() const { return target_; }

    /// Sends the action to the target with this control (a ValueControl*) as argument.
    void sendAction();

 protected:
    /// The value, or the range, is another one now: the place to repaint.
    virtual void valueDidChange() { update(); }

 private:
    double minValue_ = 0;
    double maxValue_ = 1;
    double value_ = 0;
    QPointer<TextField> boundedField_;
    RuntimeObject* target_ = nullptr;
    std::string action_;
};

}  // namespace trimora::util
