#include "cli/Recorder.h"

#include <QEvent>
#include <algorithm>
#include <utility>

#include "controls/SliderVertical.h"
#include "editor/CutViewWidget.h"
#include "script/Names.h"

namespace trimora {

using script::MouseStep;
using Type = script::MouseStep::Type;

namespace {

constexpr const char* kHide = "hideViewWithSizeCursor";
constexpr std::string_view kQuickSize = "brushDiameter_changed:";
// Comes by itself a while after a size was chosen; and what has to be written down by what it leads to.
constexpr std::string_view kUnwatched[] = {kHide, "paste:"};

script::Button buttonOf(cutengine::MouseButton button) {
    return button == cutengine::MouseButton::left ? script::Button::left : script::Button::right;
}

MouseStep mouseStep(Type type, const cutengine::MouseEvent& mouse) {
    return {type, mouse.location, script::Point{mouse.deltaX, mouse.deltaY}, buttonOf(mouse.button)};
}

}  // namespace

util::RuntimeClassPtr Recorder::makeClass() {
    static const util::RuntimeClassPtr record = [] {
        auto made = util::RuntimeClass::create("Recorder");
        made->overrideSelector(kHide, [](RuntimeObject& self, const std::any&) {
            return static_cast<Recorder&>(self).program_.editor().performSelector(kHide);
        });
        return made;
    }();
    return record;
}

Recorder::Recorder(Wiring& program, Recording& recording)
    : RuntimeObject(makeClass()), program_(program), recording_(recording) {
    editor::ViewController& editor = program.editor();
    const editor::EditorOutlets& outlets = editor.outlets();
    watchMessages(editor, script::Receiver::editor);
    watchMessages(program.shell().windowController(), script::Receiver::window);
    watchMessages(program.shell().appDelegate(), script::Receiver::app);
    outlets.viCut->onEvent([this](const editor::CutViewEvent& event) { seeEvent(event); });
    outlets.viCut->installEventFilter(this);
    outlets.eraserSize->setSliderDelegate(this);
    outlets.invertSize->setSliderDelegate(this);
    outlets.colorPickerView->setColorDelegate(this);
    editor.onFilesOffered([this](const std::vector<std::filesystem::path>& files) {
        write(script::DropStep{{files.begin(), files.end()}});
    });
}

Recorder::~Recorder() {
    const editor::EditorOutlets& outlets = program_.editor().outlets();
    outlets.viCut->onEvent({});
    outlets.eraserSize->setSliderDelegate(&program_.editor());
    outlets.invertSize->setSliderDelegate(&program_.editor());
    outlets.colorPickerView->setColorDelegate(&program_.editor());
    program_.editor().onFilesOffered({});
}

/// Of messages that lead to others, the first alone.
void Recorder::write(const script::Step& step) const {
    if (depth_ == 0)
        recording_.add(step);
}

void Recorder::watchMessages(util::RuntimeObject& object, script::Receiver receiver) {
    for (const std::string_view selector : script::selectorsOf(receiver)) {
        if (std::ranges::find(kUnwatched, selector) != std::end(kUnwatched))
            continue;
        const util::Method does = *object.runtimeClass()->method(selector);
        object.overrideSelector(
            selector, [this, does, receiver, name = std::string(selector), alive = std::weak_ptr(alive_)](
                          auto& self, const std::any& argument) {
                if (alive.expired())
                    return does(self, argument);
                if (name == kQuickSize)
                    write(script::SliderStep{
                        script::SliderStep::Which::sldBrushDiameter2,
                        static_cast<double>(program_.editor().outlets().sldBrushDiameter2->floatValue())});
                else
                    write(script::PerformStep{receiver, name});
                ++depth_;
                std::any answer = does(self, argument);
                --depth_;
                return answer;
            });
    }
}

// ── The cut view ───────────────────────────────────────────────────────────────────────────────

bool Recorder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        const auto& view = static_cast<const QWidget&>(*watched);
        recording_.add(script::ViewStep{std::max(view.width(), 1), std::max(view.height(), 1)});
    }
    return false;
}

void Recorder::seeEvent(const editor::CutViewEvent& event) {
    std::visit([this](const auto& each) { see(each); }, event);
}

void Recorder::see(const editor::MousePressed& event) {
    write(mouseStep(Type::down, event.mouse));
}

void Recorder::see(const editor::MouseDragged& event) {
    write(mouseStep(Type::drag, event.mouse));
}

void Recorder::see(const editor::MouseReleased& event) {
    write(mouseStep(Type::up, event.mouse));
}

void Recorder::see(const editor::PointerInside& event) {
    MouseStep step;
    step.type = event.inside ? Type::enter : Type::exit;
    write(step);
}

void Recorder::see(const cutengine::ScrollEvent& event) {
    write(MouseStep{Type::scroll, event.location, script::Point{0, event.deltaY}, script::Button::left});
}

void Recorder::see(const cutengine::Modifiers& held) {
    write(script::ModifiersStep{held.option, held.command});
}

void Recorder::see(const cutengine::KeyEvent& event) {
    write(script::KeyStep{event.keyCode});
}

void Recorder::see(const editor::DragModeHeld& event) {
    write(script::SetStep{"dragMode", event.mode == cutengine::DragMode::pan ? 1.0 : 0.0});
}

/// As a gesture of the button that pans.
void Recorder::see(const editor::PictureMoved& event) {
    const bool left = program_.editor().cutView().dragMode() == cutengine::DragMode::pan;
    cutengine::MouseEvent mouse;
    mouse.button = left ? cutengine::MouseButton::left : cutengine::MouseButton::right;
    write(mouseStep(Type::down, mouse));
    mouse.deltaX = event.way.x;
    mouse.deltaY = -event.way.y;
    write(mouseStep(Type::drag, mouse));
    mouse.deltaX = mouse.deltaY = 0;
    write(mouseStep(Type::up, mouse));
}

// ── Controls ───────────────────────────────────────────────────────────────────────────────────

void Recorder::CustomSliderDidChange_withValue(controls::ViewWithSliderTextField& view, double value) {
    using Which = script::SliderStep::Which;
    const bool erases = &view == program_.editor().outlets().eraserSize;
    write(script::SliderStep{erases ? Which::eraserSize : Which::invertSize, value});
    program_.editor().CustomSliderDidChange_withValue(view, value);
}

/// Also where a message led to it: the picker of a replay may stand at another colour.
void Recorder::ColorPickerDidSelectNSColor(const cutengine::Colour& color) {
    program_.editor().ColorPickerDidSelectNSColor(color);
    recording_.add(script::SetStep{
        "brushColor", std::optional(script::Rgba{color.red, color.green, color.blue, color.alpha})});
    recording_.add(script::SetStep{"blurOn", false});
}

}  // namespace trimora
