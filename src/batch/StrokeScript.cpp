#include "batch/StrokeScript.h"

#include <string>
#include <utility>
#include <variant>

#include "batch/CutViewMessages.h"
#include "script/Names.h"
#include "script/Reader.h"

namespace trimora::batch {
namespace {

using cutengine::MouseButton;
using cutengine::RKImageCutView;
using foundation::Error;
using foundation::Point;
using foundation::Result;
using script::Step;

template <typename... Kinds>
bool isAnyOf(const Step& step) {
    return (std::holds_alternative<Kinds>(step) || ...);
}

bool needsNoWindow(const Step& step) {
    return isAnyOf<script::ViewStep, script::MouseStep, script::StrokeStep, script::ModifiersStep,
                   script::KeyStep, script::SetStep, script::SliderStep, script::SettleStep,
                   script::AdvanceStep>(step);
}

bool isTyped(const Step& step) {
    const auto* const slider = std::get_if<script::SliderStep>(&step);
    return slider != nullptr && std::holds_alternative<std::string>(slider->to);
}

MouseButton buttonOf(script::Button button) {
    return button == script::Button::left ? MouseButton::left : MouseButton::right;
}

/// Does one step after the other, as the window would hand it on.
class Hand {
 public:
    explicit Hand(RKImageCutView& view) : view_(view) {}

    void operator()(const script::ViewStep& step) {
        view_.setViewSize({static_cast<double>(step.width), static_cast<double>(step.height)});
    }

    void operator()(const script::MouseStep& step) {
        using Type = script::MouseStep::Type;
        const Point way = wayTo(step.at);
        switch (step.type) {
            case Type::down:
                press(step.at, buttonOf(step.button));
                break;
            case Type::drag:
                drag(step.at, step.delta.value_or(way), buttonOf(step.button));
                break;
            case Type::up:
                view_.mouseUp({buttonOf(step.button), step.at});
                break;
            case Type::scroll:
                view_.scrollWheel({step.at, step.delta.value_or(Point{}).y});
                break;
            case Type::move:
            case Type::enter:
            case Type::exit:
                break;  // these change the look of the pointer, which nobody sees
        }
    }

    void operator()(const script::StrokeStep& step) {
        const MouseButton button = buttonOf(step.button);
        place_ = step.points.front();
        press(place_, button);
        for (std::size_t i = 1; i < step.points.size(); ++i)
            drag(step.points[i], wayTo(step.points[i]), button);
        view_.mouseUp({button, place_});
    }

    void operator()(const script::ModifiersStep& step) {
        held_ = {.option = step.option, .command = step.command};
        view_.flagsChanged(held_);
    }

    void operator()(const script::KeyStep& step) { view_.keyDown({step.code, held_}); }
    void operator()(const script::SetStep& step) { setProperty(view_, step); }

    /// Every size control sets the one brush.
    void operator()(const script::SliderStep& step) {
        view_.setBrushDiameterSilent(static_cast<float>(std::get<double>(step.to)));
    }

    /// Time changes nothing that is painted, and everything queued is done after each step anyway; steps
    /// that a window needs never come here.
    template <typename Other>
    void operator()(const Other& /*step*/) {}

 private:
    /// The way from the place before, y down.
    Point wayTo(Point place) {
        const Point before = std::exchange(place_, place);
        return {place.x - before.x, before.y - place.y};
    }
    void press(Point at, MouseButton button) {
        if (button == MouseButton::left)
            view_.mouseDown({button, at});
        else
            view_.rightMouseDown({button, at});
    }
    void drag(Point to, Point way, MouseButton button) { view_.mouseDragged({button, to, way.x, way.y}); }

    RKImageCutView& view_;
    cutengine::Modifiers held_;
    Point place_;
};

Error atLine(int line, const std::string& reason) {
    return {"line " + std::to_string(line) + ": " + reason};
}

}  // namespace

Result<StrokeScript> StrokeScript::read(std::istream& lines) {
    StrokeScript script;
    bool hasSize = false;
    std::string text;
    for (int line = 1; std::getline(lines, text); ++line) {
        if (script::isBlank(text))
            continue;
        Result<Step> step = script::readStep(text);
        if (!step)
            return atLine(line, step.error().message);
        if (!needsNoWindow(*step))
            return atLine(line, "the step \"" + std::string(nameOf(*step)) + "\" needs the editor's window");
        if (isTyped(*step))
            return atLine(line, "a text can be typed in the editor's window alone; give the value");
        hasSize = hasSize || isAnyOf<script::ViewStep>(*step);
        if (!hasSize && isAnyOf<script::MouseStep, script::StrokeStep>(*step))
            return atLine(line, "a \"view\" step must say first how large the view is that has these places");
        script.steps_.push_back(std::move(*step));
    }
    return script;
}

void StrokeScript::perform(RKImageCutView& view, const foundation::Task& settle) const {
    Hand hand(view);
    for (const Step& step : steps_) {
        std::visit(hand, step);
        settle();
    }
}

}  // namespace trimora::batch
