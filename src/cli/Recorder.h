#pragma once

#include <QObject>
#include <string>

#include "cli/Recording.h"
#include "controls/ColorPickerView.h"
#include "controls/ViewWithSliderTextField.h"
#include "editor/CutViewEvent.h"
#include "main/Wiring.h"
#include "util/ObjectRuntime.h"

namespace trimora {

/// Watches a person at work, and writes down an edit script that does the same again to a fresh editor.
///
/// It looks where commands and events have their own names already: what the cut view is given, messages to
/// editor, window and application, what the size controls and the colour picker report, the files that come.
/// What one of these leads to is not written down: a replay comes to it by itself.
///
/// A picture that is pasted as pixels has no file, and cannot be written down. The answers of panels are
/// RecordedPanels' business. Main thread only; it is gone before the program is.
class Recorder final : public QObject,
                       public util::RuntimeObject,
                       public controls::ViewWithSliderDelegate,
                       public controls::ColorPickerViewDelegate {
 public:
    /// `recording` outlives the recorder.
    Recorder(Wiring& program, Recording& recording);
    ~Recorder() override;

    /// Sees the cut view get another size.
    bool eventFilter(QObject* watched, QEvent* event) override;

    // In the place of the editor, which is told the same.
    void CustomSliderDidChange_withValue(controls::ViewWithSliderTextField& view, double value) override;
    void ColorPickerDidSelectNSColor(const cutengine::Colour& color) override;

 private:
    static util::RuntimeClassPtr makeClass();
    void watchMessages(util::RuntimeObject& object, script::Receiver receiver);
    void write(const script::Step& step) const;

    void seeEvent(const editor::CutViewEvent& event);
    void see(const editor::MousePressed& event);
    void see(const editor::MouseDragged& event);
    void see(const editor::MouseReleased& event);
    void see(const editor::PointerInside& event);
    void see(const cutengine::ScrollEvent& event);
    void see(const cutengine::Modifiers& held);
    void see(const cutengine::KeyEvent& event);
    void see(const editor::DragModeHeld& event);
    void see(const editor::PictureMoved& event);

    Wiring& program_;
    Recording& recording_;
    int depth_ = 0;  // how many watched messages are on their way, one within the other
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trimora
