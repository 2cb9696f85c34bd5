#include "cli/StepRunner.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QFile>
#include <QKeyEvent>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <filesystem>
#include <utility>

#include "app/GdprSheet.h"
#include "batch/CutViewMessages.h"
#include "cli/PixelSamples.h"
#include "cli/StateReport.h"
#include "controls/ColorPickerView.h"
#include "controls/CustomSlider.h"
#include "controls/CustomTextField.h"
#include "controls/SliderVertical.h"
#include "controls/ViewWithSliderTextField.h"
#include "editor/CutViewWidget.h"
#include "editor/DragView.h"

namespace trimora {

using cutengine::MouseButton;
using foundation::Error;
using foundation::Result;
using script::Point;

namespace {

MouseButton buttonOf(script::Button button) {
    return button == script::Button::left ? MouseButton::left : MouseButton::right;
}

template <typename Event>
bool drag(QWidget& onto, const QMimeData& data) {
    Event event(onto.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&onto, &event);
    return event.isAccepted();
}

void type(QLineEdit& field, const std::string& text) {
    field.selectAll();
    field.insert(QString::fromStdString(text));
    QKeyEvent commit(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&field, &commit);
}

/// The place at these shares of an area.
Point placeIn(const QWidget& area, double x, double y) {
    return {area.width() * x, area.height() * y};
}

}  // namespace

StepRunner::StepRunner(ScriptedProgram& program, LogRecord& log, Print print)
    : program_(program), log_(log), print_(std::move(print)) {}

Result<void> StepRunner::run(const script::Step& step) {
    program_.time().catchUp();
    return std::visit([this](const auto& each) { return perform(each); }, step);
}

editor::CutViewWidget& StepRunner::widget() {
    return *program_.editor().outlets().viCut;
}

// ── Pictures and the window ────────────────────────────────────────────────────────────────────

Result<void> StepRunner::perform(const script::ViewStep& step) {
    if (program_.resizeView(step.width, step.height))
        return {};
    return Error{"the window does not take that size"};
}

Result<void> StepRunner::perform(const script::OpenStep& step) {
    program_.editor().draggingFilesComplete_needsWait(absolutePaths(step.files), step.wait);
    return {};
}

Result<void> StepRunner::perform(const script::DropStep& step) {
    QMimeData files;
    QList<QUrl> urls;
    for (const auto& file : absolutePaths(step.files))
        urls.append(QUrl::fromLocalFile(QFile::decodeName(file.c_str())));
    files.setUrls(urls);
    QWidget& empty = *program_.editor().outlets().viDrug;
    QWidget& onto = empty.isHidden() ? static_cast<QWidget&>(widget()) : empty;
    if (drag<QDragEnterEvent>(onto, files) && drag<QDragMoveEvent>(onto, files) &&
        drag<QDropEvent>(onto, files))
        return {};
    return Error{"the editor does not take the files"};
}

// ── Mouse and keys ─────────────────────────────────────────────────────────────────────────────

Point StepRunner::wayTo(Point place) {
    const Point before = std::exchange(place_, place);
    return {place.x - before.x, before.y - place.y};
}

Result<void> StepRunner::perform(const script::MouseStep& step) {
    using Type = script::MouseStep::Type;
    const bool crosses = step.type == Type::enter || step.type == Type::exit;
    const Point way = crosses ? Point{} : wayTo(step.at);
    const Point delta = step.delta.value_or(step.type == Type::drag ? way : Point{});
    const cutengine::MouseEvent mouse{buttonOf(step.button), step.at, delta.x, delta.y};
    switch (step.type) {
        case Type::down:
            widget().take(editor::MousePressed{mouse});
            break;
        case Type::drag:
            widget().take(editor::MouseDragged{mouse});
            break;
        case Type::up:
            widget().take(editor::MouseReleased{mouse});
            break;
        case Type::move:
            break;  // the cut view asks nothing of a pointer that only moves
        case Type::enter:
        case Type::exit:
            widget().take(editor::PointerInside{step.type == Type::enter});
            break;
        case Type::scroll:
            widget().take(cutengine::ScrollEvent{step.at, delta.y});
            break;
    }
    return {};
}

Result<void> StepRunner::perform(const script::StrokeStep& step) {
    const MouseButton button = buttonOf(step.button);
    place_ = step.points.front();
    widget().take(editor::MousePressed{{.button = button, .location = place_}});
    for (std::size_t i = 1; i < step.points.size(); ++i) {
        const Point way = wayTo(step.points[i]);
        widget().take(editor::MouseDragged{{button, step.points[i], way.x, way.y}});
    }
    widget().take(editor::MouseReleased{{.button = button, .location = place_}});
    return {};
}

Result<void> StepRunner::perform(const script::ModifiersStep& step) {
    held_ = {.option = step.option, .command = step.command};
    widget().take(held_);
    return {};
}

Result<void> StepRunner::perform(const script::KeyStep& step) {
    widget().take(cutengine::KeyEvent{step.code, held_});
    return {};
}

// ── Properties, commands, panels ───────────────────────────────────────────────────────────────

Result<void> StepRunner::perform(const script::SetStep& step) {
    batch::setProperty(program_.cutView(), step);
    return {};
}

Result<void> StepRunner::perform(const script::PerformStep& step) {
    switch (step.on) {
        case script::Receiver::editor:
            program_.editor().performSelector(step.selector);
            break;
        case script::Receiver::window:
            program_.shell().windowController().performSelector(step.selector, &program_.cutView());
            break;
        case script::Receiver::app:
            program_.shell().appDelegate().performSelector(step.selector);
            break;
        case script::Receiver::cutView:
            batch::performOperation(program_.cutView(), step.selector);
            break;
    }
    return {};
}

Result<void> StepRunner::perform(const script::AnswerStep& step) {
    program_.panels().queue(step);
    return {};
}

Result<void> StepRunner::perform(const script::ConsentStep& step) {
    const bool yes = step.answer;
    if (app::GdprSheet* const sheet = program_.wiring().consent().sheet())
        (yes ? sheet->yes() : sheet->no()).click();
    else
        program_.wiring().telemetrix().consent().give(yes ? app::GdprConsent::Answer::yes
                                                          : app::GdprConsent::Answer::no);
    return {};
}

// ── Controls ───────────────────────────────────────────────────────────────────────────────────

Result<void> StepRunner::perform(const script::SliderStep& step) {
    using Which = script::SliderStep::Which;
    const editor::EditorOutlets& outlets = program_.editor().outlets();
    const auto dragTo = [&step](controls::ValueSlider& slider) {
        slider.trackTo(std::get<double>(step.to));
        slider.endTracking();
    };
    if (step.which == Which::sldBrushDiameter2) {
        dragTo(*outlets.sldBrushDiameter2);
        return {};
    }
    const auto& size = *(step.which == Which::eraserSize ? outlets.eraserSize : outlets.invertSize);
    if (const auto* const text = std::get_if<std::string>(&step.to))
        type(size.textField(), *text);
    else
        dragTo(size.sliderClass());
    return {};
}

Result<void> StepRunner::perform(const script::ColorStep& step) {
    controls::ColorPickerView& picker = *program_.editor().outlets().colorPickerView;
    if (step.hue) {
        picker.mainPickerPressGesture(placeIn(picker.mainColorSelectorView(), 0.5, *step.hue));
        // The shades of the new hue are there with the next turn of the main queue, before a hand is.
        program_.time().turn();
    }
    if (step.shade)
        picker.secondPickerPressGesture(
            placeIn(picker.secondColorSelectorView(), step.shade->x, step.shade->y));
    return {};
}

// ── Time ───────────────────────────────────────────────────────────────────────────────────────

Result<void> StepRunner::perform(const script::ClockStep& step) {
    program_.time().setLocalTime(step);
    return {};
}

Result<void> StepRunner::perform(const script::SettleStep& /*step*/) {
    program_.settle();
    return {};
}

Result<void> StepRunner::perform(const script::AdvanceStep& step) {
    program_.advance(step.seconds);
    return {};
}

// ── What is printed and written ────────────────────────────────────────────────────────────────

Result<void> StepRunner::perform(const script::StateStep& /*step*/) {
    print_(stateReport(program_));
    return {};
}

Result<void> StepRunner::perform(const script::SampleStep& step) {
    const Result<Json> sampled = sample(program_, step);
    print_(sampled ? *sampled : Json());
    return sampled ? Result<void>() : sampled.error();
}

Result<void> StepRunner::perform(const script::WriteStep& step) {
    return write(program_, step);
}

Result<void> StepRunner::perform(const script::LogStep& /*step*/) {
    print_(log_.take());
    return {};
}

Result<void> StepRunner::perform(const script::EventsStep& /*step*/) {
    print_(program_.events().news());
    return {};
}

}  // namespace trimora
