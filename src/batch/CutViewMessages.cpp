#include "batch/CutViewMessages.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace trimora::batch {

using cutengine::DragMode;
using cutengine::RKImageCutView;

namespace {

using Value = script::SetStep::Value;

float number(const Value& value) {
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(std::get<double>(value), -kLargest, kLargest));
}

bool flag(const Value& value) {
    return std::get<bool>(value);
}

std::optional<cutengine::Colour> colour(const Value& value) {
    const auto& rgba = std::get<std::optional<script::Rgba>>(value);
    if (!rgba)
        return std::nullopt;
    return cutengine::Colour{rgba->red, rgba->green, rgba->blue, rgba->alpha};
}

struct Setter {
    std::string_view property;
    void (*set)(RKImageCutView& view, const Value& value);
};

constexpr Setter kSetters[] = {
    {"brushDiameter", [](auto& view, const auto& value) { view.setBrushDiameter(number(value)); }},
    {"brushDiameterSilent",
     [](auto& view, const auto& value) { view.setBrushDiameterSilent(number(value)); }},
    {"brushHardness", [](auto& view, const auto& value) { view.setBrushHardness(number(value)); }},
    {"brushAlphaValue", [](auto& view, const auto& value) { view.setBrushAlphaValue(number(value)); }},
    {"brushColor", [](auto& view, const auto& value) { view.setBrushColor(colour(value)); }},
    {"dragMode",
     [](auto& view, const auto& value) { view.setDragMode(static_cast<DragMode>(number(value))); }},
    {"blurOn", [](auto& view, const auto& value) { view.setBlurOn(flag(value)); }},
    {"blurMode", [](auto& view, const auto& value) { view.setBlurMode(flag(value)); }},
    {"colorMode", [](auto& view, const auto& value) { view.setColorMode(flag(value)); }},
    {"colorOn", [](auto& view, const auto& value) { view.setColorOn(flag(value)); }},
    {"imageFit", [](auto& view, const auto& value) { view.setImageFit(flag(value)); }},
    {"scale", [](auto& view, const auto& value) { view.setScale(number(value)); }},
};

struct Operation {
    std::string_view selector;
    void (*perform)(RKImageCutView& view);
};

constexpr Operation kOperations[] = {
    {"prevHistoryState", [](auto& view) { view.prevHistoryState(); }},
    {"nextHistoryState", [](auto& view) { view.nextHistoryState(); }},
    {"clearHistory", [](auto& view) { view.clearHistory(); }},
    {"recordHistoryState", [](auto& view) { view.recordHistoryState(); }},
    {"resetMask", [](auto& view) { view.resetMask(); }},
    {"updateMap", [](auto& view) { view.updateMap(); }},
    {"updateCursor", [](auto& view) { view.updateCursor(); }},
    {"drawBackground", [](auto& view) { view.drawBackground(); }},
    {"limitDrag", [](auto& view) { view.limitDrag(); }},
    {"getResult", [](auto& view) { std::ignore = view.getResult(); }},
};

}  // namespace

bool setProperty(RKImageCutView& view, const script::SetStep& step) {
    const auto* const found = std::ranges::find(kSetters, step.property, &Setter::property);
    if (found == std::end(kSetters))
        return false;
    found->set(view, step.value);
    return true;
}

bool performOperation(RKImageCutView& view, std::string_view selector) {
    const auto* const found = std::ranges::find(kOperations, selector, &Operation::selector);
    if (found == std::end(kOperations))
        return false;
    found->perform(view);
    return true;
}

}  // namespace trimora::batch
