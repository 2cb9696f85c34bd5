#include "util/ValueControl.h"

#include <algorithm>

#include "util/TextField.h"

namespace trimora::util {

ValueControl::ValueControl(QWidget* parent) : QWidget(parent) {}

ValueControl::~ValueControl() = default;

void ValueControl::setMinValue(double minValue) {
    minValue_ = minValue;
    setDoubleValue(value_);
}

void ValueControl::setMaxValue(double maxValue) {
    maxValue_ = maxValue;
    setDoubleValue(value_);
}

void ValueControl::setDoubleValue(double value) {
    value_ = std::max(minValue_, std::min(maxValue_, value));
    valueDidChange();
}

void ValueControl::setFloatValue(float value) {
    setDoubleValue(static_cast<double>(value));
    if (boundedField_)
        boundedField_->setFloatValue(value);
}

double ValueControl::fraction() const {
    return maxValue_ > minValue_ ? (value_ - minValue_) / (maxValue_ - minValue_) : 0;
}

void ValueControl::setBoundedField(TextField* field) {
    boundedField_ = field;
}

TextField* ValueControl::boundedField() const {
    return boundedField_;
}

void ValueControl::sendAction() {
    if (target_ != nullptr && !action_.empty())
        target_->performSelector(action_, this);
}

}  // namespace trimora::util
