#pragma once

#include <QSvgRenderer>
#include <optional>

#include "controls/SliderParts.h"
#include "util/ValueControl.h"

class QPainter;

namespace trimora::controls {

/// What the sliders with the "Scrubber" knob share: how a person moves them.
///
/// Pointer: a press on the knob takes it where it is, one beside it brings its centre there; the action
/// is sent at the press and with every move. Wheel and keys: arrows one single step, Page Up and Page
/// Down one page step, Home and End to the ends; the action is sent when the value changed. In a
/// right-to-left layout a lying slider has its minimum on the right, and the left and right arrows
/// follow. Screen readers find a slider with its value, range and step, and may set it. The ring
/// round the knob shows where the keyboard is.
class ValueSlider : public util::ValueControl {
 public:
    explicit ValueSlider(Qt::Orientation orientation, QWidget* parent = nullptr);

    /// In units of the value; 1 and 10 at first.
    void setSteps(double singleStep, double pageStep);
    [[nodiscard]] double singleStep() const { return singleStep_; }

    /// Sets the value as one move of a drag does, and sends the action.
    void trackTo(double value);
    /// Ends the drag, as letting the button go does.
    void endTracking();
    [[nodiscard]] bool isTracking() const { return tracking_; }

    /// Sets the value as a key does: the action is sent if it changed.
    void stepTo(double value);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
    /// The drag is over.
    virtual void didEndTracking() {}

    /// Whether the minimum is on the right.
    [[nodiscard]] bool isMirrored() const;
    /// Where the parts lie in this widget, turned and mirrored as it is.
    [[nodiscard]] SliderParts parts() const;
    /// The size of the image named "Scrubber", in points.
    [[nodiscard]] QSizeF knobSize() const;
    /// Makes what is painted from here on faint where the slider cannot be used, and keeps the track
    /// from shining through the knob then; before the track, the knob last.
    void beginPainting(QPainter& painter, const QRectF& knob) const;
    /// The image itself, and the focus ring round it.
    void paintKnob(QPainter& painter, const QRectF& place);

    void valueDidChange() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    /// Read when the knob is first measured or painted, which hidden sliders leave for later.
    [[nodiscard]] QSvgRenderer& scrubber() const;
    [[nodiscard]] double along() const;
    [[nodiscard]] double placeAlong(QPointF point) const;
    [[nodiscard]] double valueAt(double place) const;
    [[nodiscard]] std::optional<double> valueAfterKey(int key) const;

    const Qt::Orientation orientation_;
    double singleStep_ = 1;
    double pageStep_ = 10;
    bool tracking_ = false;
    double grip_ = 0;  // from the knob's centre to where the pointer took it, along the slider
    mutable QSvgRenderer scrubber_;
};

}  // namespace trimora::controls
