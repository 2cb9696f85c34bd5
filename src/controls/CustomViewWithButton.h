#pragma once

#include <QWidget>

#include "controls/ControlContext.h"

class QAbstractButton;

namespace trimora::controls {

/// A small panel that floats over the picture and holds one button; the person drags it out of the way.
///
/// Hidden until "addViewWithButton" is posted for the first time; then it shows itself. A drag with the
/// left button moves it by exactly what the pointer moves, and the arrow keys move it while it has the
/// focus. A press that also brings its window to the front counts ("Got first mouse event" in the log).
/// When the pointer leaves it, "rk.cutView.needsCursorUpdate" is posted. Main thread only.
class CustomViewWithButton final : public QWidget {
 public:
    explicit CustomViewWithButton(const ControlContext& context, QWidget* parent = nullptr);

    /// The button in its middle; the panel owns it from here on, and takes the size that it asks for.
    void setButton(QAbstractButton* button);
    [[nodiscard]] QAbstractButton* button() const { return clickedObject_; }

    void unHideView();
    [[nodiscard]] bool mouseIn() const { return mouseIn_; }
    /// The middle of the panel in its parent's coordinates.
    [[nodiscard]] QPointF viewCenter() const;

 protected:
    void enterEvent(QEnterEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    foundation::NotificationCenter& notifications_;
    QAbstractButton* clickedObject_ = nullptr;
    bool mouseIn_ = false;
    QPoint lastDragLocation_;  ///< on the screen
    foundation::NotificationCenter::Observation observation_;
};

}  // namespace trimora::controls
