#pragma once

#include "controls/ValueSlider.h"

namespace trimora::controls {

/// An upright slider of the same design in flat colours, its minimum at the bottom.
class SliderVertical final : public ValueSlider {
 public:
    explicit SliderVertical(QWidget* parent = nullptr) : ValueSlider(Qt::Vertical, parent) {}

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace trimora::controls
