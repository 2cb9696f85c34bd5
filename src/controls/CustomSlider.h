#pragma once

#include <QImage>
#include <QRectF>

#include "controls/ValueSlider.h"

namespace trimora::controls {

/// A lying slider: the accent's gradient up to the knob, black beyond it.
///
/// When a drag ends its target is sent "hideViewWithSizeCursor". Points are y down.
class CustomSlider final : public ValueSlider {
 public:
    explicit CustomSlider(QWidget* parent = nullptr) : ValueSlider(Qt::Horizontal, parent) {}

    /// Three values that are kept for whoever sets them. Drawing does not use them: it takes the image
    /// by its name, and place and value from the slider itself.
    [[nodiscard]] const QImage& knobImage() const { return knobImage_; }
    void setKnobImage(const QImage& image) { knobImage_ = image; }
    [[nodiscard]] QRectF currentKnobRect() const { return currentKnobRect_; }
    void setCurrentKnobRect(const QRectF& rect) { currentKnobRect_ = rect; }
    [[nodiscard]] float curValue() const { return curValue_; }
    void setCurValue(float value) { curValue_ = value; }

 protected:
    void paintEvent(QPaintEvent* event) override;
    void didEndTracking() override;

 private:
    void drawTrack(QPainter& painter, const SliderParts& parts) const;

    QImage knobImage_;
    QRectF currentKnobRect_;
    float curValue_ = 0;
};

}  // namespace trimora::controls
