#pragma once

class QAbstractButton;

namespace trimora::editor {

class EditorToolbar;

/// Whether there is work on the screen that a save would keep, shown on both Save buttons: the toolbar's,
/// and the one of the right panel. The toolbar's is the truth; a window without a toolbar has no work.
/// Main thread only.
class SaveState {
 public:
    /// The right panel's button; it lives longer.
    explicit SaveState(QAbstractButton& panelButton) : panelButton_(panelButton) {}

    /// Borrowed; null while there is none.
    void setToolbar(EditorToolbar* toolbar) { toolbar_ = toolbar; }
    [[nodiscard]] EditorToolbar* toolbar() const { return toolbar_; }

    /// A stroke has begun on the picture.
    void strokeBegan() { set(1, true); }
    /// The picture is a new one, or gone.
    void workGone() { set(0, false); }

    /// 1 once a stroke has begun on the present picture, 0 before.
    [[nodiscard]] float saveEnabled() const { return saveEnabled_; }
    /// Whether throwing the picture away loses something.
    [[nodiscard]] bool isUnsaved() const;

 private:
    void set(float flag, bool enabled);

    QAbstractButton& panelButton_;
    EditorToolbar* toolbar_ = nullptr;
    float saveEnabled_ = 0;
};

}  // namespace trimora::editor
