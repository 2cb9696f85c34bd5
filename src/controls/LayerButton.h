#pragma once

#include <QAbstractButton>
#include <cstdint>

#include "controls/LayerHost.h"

namespace trimora::controls {

/// What all buttons of the family have in common: they are drawn with layers, accept clicks inside a
/// shape only, and may grow under the pointer.
///
/// Clicks: `clicked` comes for a press and a release inside the click path. A press elsewhere in the
/// button's square does nothing, reaches nobody else and leaves the button enabled as it was. Space,
/// Return and Enter click too.
///
/// Hover: while the pointer is inside the shape, mouseIn() is true and a growing button springs to 1.15
/// of its size; leaving it shrinks from whatever size is shown at that moment. Each leaving posts
/// "rk.cutView.needsCursorUpdate", because the button may lie over the cut view, whose brush cursor then
/// has to come back.
///
/// Looks: a button shows that it is pressed, under the pointer, disabled, or reached by the keyboard (a
/// ring, only after Tab). It takes the focus by Tab alone, so that a click on a tool leaves the keyboard
/// with the picture.
///
/// Main thread only.
class LayerButton : public QAbstractButton {
 public:
    ~LayerButton() override;

    /// The shape that accepts clicks, y-up in the button's own space; empty until it has its first size.
    [[nodiscard]] const cutengine::BezierPath& clickPath() const { return clickPath_; }
    /// Whether the pointer is inside that shape.
    [[nodiscard]] bool mouseIn() const { return mouseIn_; }
    /// Whether this place, in the toolkit's coordinates of the button, lies inside the shape.
    [[nodiscard]] bool eventIsActive(const QPointF& position) const;

    /// How large the button is shown at this moment, 1 at rest.
    [[nodiscard]] double displayedScale() const;

    /// The drawn image of this name, and the one that is shown instead while the button is held down
    /// (without one the image only dims).
    void setImage(const QString& name);
    void setAlternateImage(const QString& name);
    [[nodiscard]] const QString& image() const { return image_; }
    [[nodiscard]] const QString& alternateImage() const { return alternateImage_; }

 protected:
    enum class Hover : std::uint8_t { grows, still };
    LayerButton(const ControlContext& context, Hover hover, QWidget* parent);

    /// Places the layers for a new size and returns the shape that accepts clicks. `bounds` begins at
    /// the origin.
    virtual cutengine::BezierPath layOut(const foundation::Rect& bounds) = 0;
    /// Places them again after something other than the size has changed.
    void refit();
    /// Gives the layers the colours and images of the present state; called before every painting.
    virtual void showState() = 0;
    /// The pointer moved to this place with no button held.
    virtual void mouseMoved(const QPointF& position);
    /// The pointer is no longer inside the shape.
    virtual void mouseExited();

    void mouseEnteredAnimation();
    void mouseExitedAnimation();

    [[nodiscard]] LayerHost& layers() { return layers_; }
    [[nodiscard]] const LayerHost& layers() const { return layers_; }
    [[nodiscard]] const ControlContext& context() const { return context_; }
    /// The image to show now: the alternate one while the button is held down.
    [[nodiscard]] QIcon shownImage() const;
    /// How strongly to show it.
    [[nodiscard]] double shownImageOpacity() const;
    /// What to lay over a filled button in its present state: light under the pointer, dark when pressed.
    [[nodiscard]] QColor veilColor() const;

    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void scaleTo(double scale, double timePerScale, const TimingCurve& curve);

    ControlContext context_;
    LayerHost layers_;
    const Hover hover_;
    cutengine::BezierPath clickPath_;
    QString image_;
    QString alternateImage_;
    QIcon alternateIcon_;
    bool mouseIn_ = false;
    bool reachedByKeyboard_ = false;
};

}  // namespace trimora::controls
