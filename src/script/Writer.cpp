#include "script/Writer.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "script/Names.h"

namespace trimora::script {
namespace {

using Json = nlohmann::ordered_json;

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

template <typename Enumeration>
std::string_view name(std::span<const std::string_view> names, Enumeration value) {
    return names[static_cast<std::size_t>(value)];
}

/// Whole numbers without a point.
Json number(double value) {
    constexpr double kExact = 9007199254740992;  // whole numbers up to here are told apart
    if (value == std::trunc(value) && std::abs(value) < kExact)
        return static_cast<std::int64_t>(value);
    return value;
}

Json point(Point place) {
    return Json::array({number(place.x), number(place.y)});
}

Json points(const std::vector<Point>& places) {
    Json list = Json::array();
    for (const Point place : places)
        list.push_back(point(place));
    return list;
}

Json colour(const std::optional<Rgba>& rgba) {
    if (!rgba)
        return nullptr;
    return Json::array({number(rgba->red), number(rgba->green), number(rgba->blue), number(rgba->alpha)});
}

void add(Json& line, const ViewStep& step) {
    line["size"] = {step.width, step.height};
}
void add(Json& line, const OpenStep& step) {
    line["files"] = step.files;
    line["wait"] = step.wait;
}
void add(Json& line, const DropStep& step) {
    line["files"] = step.files;
}
void add(Json& line, const MouseStep& step) {
    line["type"] = name(mouseTypes(), step.type);
    line["at"] = point(step.at);
    if (step.delta)
        line["delta"] = point(*step.delta);
    line["button"] = name(buttons(), step.button);
}
void add(Json& line, const StrokeStep& step) {
    line["points"] = points(step.points);
    line["button"] = name(buttons(), step.button);
}
void add(Json& line, const ModifiersStep& step) {
    line["held"] = Json::array();
    if (step.option)
        line["held"].push_back("option");
    if (step.command)
        line["held"].push_back("command");
}
void add(Json& line, const KeyStep& step) {
    line["code"] = step.code;
}
void add(Json& line, const SetStep& step) {
    line["property"] = step.property;
    line["value"] = std::visit(
        Overloaded{[](bool value) { return Json(value); }, [](double value) { return number(value); },
                   [](const std::optional<Rgba>& value) { return colour(value); }},
        step.value);
}
void add(Json& line, const PerformStep& step) {
    line["on"] = name(receivers(), step.on);
    line["selector"] = step.selector;
}
void add(Json& line, const AnswerStep& step) {
    line["panel"] = panels()[step.with.index()];
    line["with"] = std::visit(
        Overloaded{
            [](const AnswerStep::OpenPanel& panel) {
                return panel.files ? Json(*panel.files) : Json(nullptr);
            },
            [](const AnswerStep::SavePanel& panel) { return panel.file ? Json(*panel.file) : Json(nullptr); },
            [](const AnswerStep::Alert& alert) { return Json(alert.button); },
            [](const AnswerStep::Warning& warning) { return Json(warning.yes ? "yes" : "no"); }},
        step.with);
}
void add(Json& line, const SliderStep& step) {
    line["which"] = name(sliders(), step.which);
    if (const auto* const value = std::get_if<double>(&step.to))
        line["value"] = number(*value);
    else
        line["typed"] = std::get<std::string>(step.to);
}
void add(Json& line, const ColorStep& step) {
    if (step.hue)
        line["hue"] = number(*step.hue);
    if (step.shade)
        line["shade"] = point(*step.shade);
}
void add(Json& line, const ConsentStep& step) {
    line["answer"] = step.answer;
}
void add(Json& line, const ClockStep& step) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", step.year, step.month, step.day,
                  step.hour, step.minute, step.second);
    line["at"] = text;
}
void add(Json& /*line*/, const SettleStep& /*step*/) {}
void add(Json& line, const AdvanceStep& step) {
    line["seconds"] = number(step.seconds);
}
void add(Json& /*line*/, const StateStep& /*step*/) {}
void add(Json& line, const SampleStep& step) {
    line["of"] = name(planes(), step.of);
    line["at"] = points(step.at);
}
void add(Json& line, const WriteStep& step) {
    line["what"] = name(pictures(), step.what);
    line["to"] = step.to;
}
void add(Json& /*line*/, const LogStep& /*step*/) {}
void add(Json& /*line*/, const EventsStep& /*step*/) {}

}  // namespace

std::string writeStep(const Step& step) {
    Json line;
    line["do"] = nameOf(step);
    std::visit([&line](const auto& each) { add(line, each); }, step);
    return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace trimora::script
