#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <string>

#include "cutengine/CutViewHost.h"
#include "cutengine/RKImageCutView.h"
#include "editor/CutViewEvent.h"
#include "foundation/Bitmap.h"

class QNativeGestureEvent;

namespace trimora::editor {

/// The cut view in a window: hands it mouse, wheel, pinch and keys, shows what it draws, and wears the
/// pointer that it asks for.
///
/// Input. Every sample of a stroke arrives where the program turned the toolkit's event compression off.
/// Modifier keys and the keys that the cut view knows are watched in the whole program, and none of them
/// is swallowed. Space, while the widget has the keyboard, pans; letting it go gives the tool back. A
/// stroke ends where the button is released, the window loses the person, or the widget is hidden.
///
/// Screen. One frame buffer at the screen's device pixels, fractional scale factors included; a repaint
/// draws and copies the exposed pixels alone. While the cut view moves by itself frames follow at the
/// screen's pace; at rest none is drawn.
///
/// Main thread only. What `services` refers to outlives the widget.
class CutViewWidget final : public QWidget, public cutengine::CutViewHost {
 public:
    explicit CutViewWidget(const cutengine::RKImageCutView::Services& services, QWidget* parent = nullptr);
    ~CutViewWidget() override;

    [[nodiscard]] cutengine::RKImageCutView& view() { return view_; }
    [[nodiscard]] const cutengine::RKImageCutView& view() const { return view_; }

    /// The tool's drag mode. The view's own follows it unless Space is held, which pans meanwhile.
    void setToolDragMode(cutengine::DragMode mode);

    /// Called where the empty view is pressed.
    void onOpenRequest(std::function<void()> handler) { openRequested_ = std::move(handler); }

    /// Called with the reason where undo cannot be kept for this picture.
    void onHistoryTrouble(std::function<void(const std::string&)> handler) {
        historyTrouble_ = std::move(handler);
    }

    /// Called where something could not be done for want of memory.
    void onMissingMemory(std::function<void()> handler) { memoryMissing_ = std::move(handler); }

    /// Called where a key made the brush bring back instead of cut away, or the other way round.
    void onBrushSwap(std::function<void()> handler) { brushSwapped_ = std::move(handler); }

    /// Hands the cut view an event, as the toolkit's are handed on once they are in its terms.
    void take(const CutViewEvent& event);

    /// Called with every event before the cut view has it.
    void onEvent(std::function<void(const CutViewEvent&)> handler) { eventTaken_ = std::move(handler); }

    /// Called where the view gets another size, and where the wheel turns or a pinch zooms.
    void onPlacementEvent(std::function<void()> handler) { placementTouched_ = std::move(handler); }

    // cutengine::CutViewHost
    void openPicture(cutengine::RKImageCutView& sender) override;
    void setCursor(const cutengine::Cursor& cursor) override;
    void setNeedsDisplay(const foundation::Rect& area) override;
    [[nodiscard]] double scaleFactor() const override;
    void historyCannotBeKept(const std::string& reason) override;
    void memoryIsMissing() override;

 protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    [[nodiscard]] cutengine::MouseEvent mouseEvent(const QMouseEvent& event, cutengine::MouseButton button);
    void perform(const MousePressed& event);
    void perform(const MouseDragged& event) { view_.mouseDragged(event.mouse); }
    void perform(const MouseReleased& event) { view_.mouseUp(event.mouse); }
    void perform(const PointerInside& event);
    void perform(const cutengine::ScrollEvent& event);
    void perform(const cutengine::Modifiers& held) { view_.flagsChanged(held); }
    void perform(const cutengine::KeyEvent& event);
    void perform(const DragModeHeld& event);
    void perform(const PictureMoved& event) { view_.moveBy(event.way); }
    void placementWasTouched() const;
    void pinch(const QNativeGestureEvent& gesture);
    void watchKey(const QKeyEvent& event);
    void holdModifiers(Qt::KeyboardModifiers held);
    void setPointerInside(bool inside);
    void holdSpace(bool held);
    void endGesture();
    void letGo();
    void fitFrame();

    foundation::Bitmap frame_;
    double frameScale_ = 0;  // of frame_: a screen with another one wants new cursors too
    QTimer nextFrame_{this};
    QPointF previousPlace_;
    cutengine::MouseButton gestureButton_ = cutengine::MouseButton::left;
    cutengine::Modifiers held_;
    bool pointerInside_ = false;
    bool spaceHeld_ = false;
    cutengine::DragMode toolMode_ = cutengine::DragMode::paint;
    std::function<void()> openRequested_;
    std::function<void(const std::string&)> historyTrouble_;
    std::function<void()> memoryMissing_;
    std::function<void()> brushSwapped_;
    std::function<void(const CutViewEvent&)> eventTaken_;
    std::function<void()> placementTouched_;
    cutengine::RKImageCutView view_;  // last: it calls the host that is made of the members above
};

}  // namespace trimora::editor
