#include "script/Reader.h"

#include <array>
#include <cstdio>
#include <limits>
#include <utility>

#include "script/Fields.h"
#include "script/Names.h"

namespace trimora::script {
namespace {

using foundation::Error;
using foundation::Result;

constexpr int kLargestView = 16384;  // points a side
constexpr int kLargestKey = 0xffff;
constexpr double kLongestWait = 1e9;  // seconds
constexpr double kAny = std::numeric_limits<double>::max();

Button button(Fields& fields) {
    return fields.has("button") ? static_cast<Button>(fields.oneOf("button", buttons())) : Button::left;
}

Step view(Fields& fields) {
    const auto& size = fields.raw("size");
    const auto side = [](const Fields::Json& value) {
        const double number = value.is_number() ? value.get<double>() : 0;
        return number >= 1 && number <= kLargestView && number == static_cast<int>(number)
                   ? static_cast<int>(number)
                   : 0;
    };
    if (size.is_array() && size.size() == 2 && side(size[0]) != 0 && side(size[1]) != 0)
        return ViewStep{side(size[0]), side(size[1])};
    fields.expected("size", "two whole numbers [w, h] from 1 to " + std::to_string(kLargestView));
    return ViewStep{};
}

Step open(Fields& fields) {
    return OpenStep{fields.paths("files"), fields.has("wait") && fields.flag("wait")};
}

Step drop(Fields& fields) {
    return DropStep{fields.paths("files")};
}

Step mouse(Fields& fields) {
    using Type = MouseStep::Type;
    MouseStep step;
    step.type = static_cast<Type>(fields.oneOf("type", mouseTypes()));
    const bool crosses = step.type == Type::enter || step.type == Type::exit;
    if (!crosses || fields.has("at"))
        step.at = fields.point("at");
    if (step.type == Type::scroll || fields.has("delta"))
        step.delta = fields.point("delta");
    step.button = button(fields);
    return step;
}

Step stroke(Fields& fields) {
    return StrokeStep{fields.points("points"), button(fields)};
}

Step modifiers(Fields& fields) {
    constexpr const char* kWhat = "a list of \"option\" and \"command\"";
    ModifiersStep step;
    const auto& held = fields.raw("held");
    if (!held.is_array())
        fields.expected("held", kWhat);
    for (const auto& key : held.is_array() ? held : Fields::Json::array()) {
        if (key == "option")
            step.option = true;
        else if (key == "command")
            step.command = true;
        else
            fields.expected("held", kWhat);
    }
    return step;
}

Step key(Fields& fields) {
    return KeyStep{fields.whole("code", 0, kLargestKey)};
}

SetStep::Value propertyValue(Fields& fields, Property::Kind kind) {
    switch (kind) {
        case Property::Kind::flag:
            return fields.flag("value");
        case Property::Kind::number:
            return fields.number("value", -kAny, kAny);
        case Property::Kind::colour:
            return fields.colour("value");
        case Property::Kind::dragMode:
            if (fields.raw("value").is_boolean())
                return fields.flag("value") ? 1.0 : 0.0;
            return static_cast<double>(fields.whole("value", 0, 1));
    }
    return false;
}

Step set(Fields& fields) {
    SetStep step;
    step.property = fields.text("property");
    if (const Property* const property = propertyNamed(step.property)) {
        step.value = propertyValue(fields, property->kind);
        return step;
    }
    std::vector<std::string_view> names;
    for (const Property& property : properties())
        names.push_back(property.name);
    fields.expected("property", "one of " + listOf(names));
    return step;
}

Step perform(Fields& fields) {
    PerformStep step;
    step.on = static_cast<Receiver>(fields.oneOf("on", receivers()));
    const auto known = selectorsOf(step.on);
    step.selector = known[fields.oneOf("selector", known)];
    return step;
}

Step answer(Fields& fields) {
    const auto& with = fields.raw("with");
    const bool cancels = fields.has("with") && with.is_null();
    switch (fields.oneOf("panel", panels())) {
        case 0: {
            AnswerStep::OpenPanel panel;
            if (!cancels)
                panel.files = fields.paths("with");
            return AnswerStep{panel};
        }
        case 1: {
            AnswerStep::SavePanel panel;
            if (!cancels)
                panel.file = fields.text("with");
            return AnswerStep{panel};
        }
        case 2:
            return AnswerStep{AnswerStep::Alert{fields.whole("with", 1000, 1002)}};
        default: {
            constexpr std::array<std::string_view, 2> kAnswers = {"no", "yes"};
            return AnswerStep{AnswerStep::Warning{fields.oneOf("with", kAnswers) == 1}};
        }
    }
}

Step slider(Fields& fields) {
    SliderStep step;
    step.which = static_cast<SliderStep::Which>(fields.oneOf("which", sliders()));
    if (!fields.has("typed")) {
        step.to = fields.number("value", -kAny, kAny);
        return step;
    }
    step.to = fields.text("typed");
    if (fields.has("value"))
        fields.expected("value", "or \"typed\", not both");
    if (step.which == SliderStep::Which::sldBrushDiameter2)
        fields.expected("value", "since this control has no field to type into");
    return step;
}

Step color(Fields& fields) {
    ColorStep step;
    if (fields.has("hue") || !fields.has("shade"))
        step.hue = fields.number("hue", 0, 1);
    if (fields.has("shade")) {
        step.shade = fields.point("shade");
        if (step.shade->x < 0 || step.shade->x > 1 || step.shade->y < 0 || step.shade->y > 1)
            fields.expected("shade", "two numbers [x, y] from 0 to 1");
    }
    return step;
}

Step consent(Fields& fields) {
    return ConsentStep{fields.flag("answer")};
}

bool isTimeOfCalendar(const ClockStep& at) {
    const bool leap = (at.year % 4 == 0 && at.year % 100 != 0) || at.year % 400 == 0;
    const int days[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return at.year >= 1970 && at.month >= 1 && at.month <= 12 && at.day >= 1 &&
           at.day <= days[at.month - 1] && at.hour <= 23 && at.minute <= 59 && at.second <= 59;
}

Step clock(Fields& fields) {
    constexpr std::string_view kForm = "0000-00-00T00:00:00";
    const std::string at = fields.raw("at").is_string() ? fields.text("at") : "";
    bool wellFormed = at.size() == kForm.size();
    for (std::size_t i = 0; wellFormed && i < kForm.size(); ++i)
        wellFormed = kForm[i] == '0' ? at[i] >= '0' && at[i] <= '9' : at[i] == kForm[i];
    ClockStep step;
    if (wellFormed)
        // NOLINTNEXTLINE(cert-err34-c): every character was looked at above
        std::sscanf(at.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d", &step.year, &step.month, &step.day, &step.hour,
                    &step.minute, &step.second);
    if (!wellFormed || !isTimeOfCalendar(step))
        fields.expected("at", "a local date and time \"2026-11-15T18:06:28\"");
    return step;
}

Step settle(Fields& /*fields*/) {
    return SettleStep{};
}

Step advance(Fields& fields) {
    return AdvanceStep{fields.number("seconds", 0, kLongestWait)};
}

Step state(Fields& /*fields*/) {
    return StateStep{};
}

Step sample(Fields& fields) {
    return SampleStep{static_cast<SampleStep::Of>(fields.oneOf("of", planes())), fields.points("at")};
}

Step write(Fields& fields) {
    WriteStep step{static_cast<WriteStep::What>(fields.oneOf("what", pictures())), fields.text("to")};
    if (step.to.empty())
        fields.expected("to", "a path");
    return step;
}

Step log(Fields& /*fields*/) {
    return LogStep{};
}

Step events(Fields& /*fields*/) {
    return EventsStep{};
}

// In the order of the variant.
constexpr std::array<Step (*)(Fields&), std::variant_size_v<Step>> kReaders = {
    view,  open,    drop,  mouse,  stroke,  modifiers, key,    set,   perform, answer, slider,
    color, consent, clock, settle, advance, state,     sample, write, log,     events};

}  // namespace

Result<Step> readStep(std::string_view line) {
    const auto json = Fields::Json::parse(line, nullptr, false);
    if (!json.is_object())
        return Error{"expected a JSON object {\"do\":...}"};
    Fields fields(json);
    const std::size_t which = fields.oneOf("do", stepNames());
    if (!fields.problem().empty())
        return Error{fields.problem()};
    Step step = kReaders.at(which)(fields);
    if (!fields.problem().empty())
        return Error{fields.problem()};
    return step;
}

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace trimora::script
