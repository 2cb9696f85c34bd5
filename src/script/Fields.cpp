#include "script/Fields.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace trimora::script {
namespace {

using Json = Fields::Json;

/// The finite number in a value, or none.
std::optional<double> finite(const Json& value) {
    if (!value.is_number())
        return std::nullopt;
    const double number = value.get<double>();
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<Point> pointIn(const Json& value) {
    if (!value.is_array() || value.size() != 2)
        return std::nullopt;
    const auto x = finite(value[0]);
    const auto y = finite(value[1]);
    return x && y ? std::optional(Point{*x, *y}) : std::nullopt;
}

std::string shown(double number) {
    return Json(number).dump();
}

}  // namespace

std::string listOf(std::span<const std::string_view> names) {
    std::string list;
    for (const std::string_view name : names)
        list += (list.empty() ? "\"" : ", \"") + std::string(name) + "\"";
    return list;
}

const Json& Fields::raw(const char* name) const {
    static const Json none;
    const auto found = line_.find(name);
    return found != line_.end() ? *found : none;
}

bool Fields::expected(const char* name, const std::string& what) {
    if (problem_.empty())
        problem_ = "expected \"" + std::string(name) + "\", " + what;
    return false;
}

bool Fields::flag(const char* name) {
    const Json& value = raw(name);
    return value.is_boolean() ? value.get<bool>() : expected(name, "true or false");
}

std::string Fields::text(const char* name) {
    const Json& value = raw(name);
    if (value.is_string())
        return value.get<std::string>();
    expected(name, "a text");
    return {};
}

double Fields::number(const char* name, double least, double most) {
    const auto value = finite(raw(name));
    if (value && *value >= least && *value <= most)
        return *value;
    constexpr double kNone = std::numeric_limits<double>::max();
    std::string what = "a number";
    if (least > -kNone)
        what += most < kNone ? " from " + shown(least) + " to " + shown(most) : " not below " + shown(least);
    expected(name, what);
    return 0;
}

int Fields::whole(const char* name, int least, int most) {
    const auto value = finite(raw(name));
    if (value && *value == std::trunc(*value) && *value >= least && *value <= most)
        return static_cast<int>(*value);
    expected(name, "a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    return 0;
}

std::size_t Fields::oneOf(const char* name, std::span<const std::string_view> names) {
    const Json& value = raw(name);
    if (value.is_string()) {
        const auto found = std::ranges::find(names, value.get_ref<const std::string&>());
        if (found != names.end())
            return static_cast<std::size_t>(found - names.begin());
    }
    expected(name, "one of " + listOf(names));
    return 0;
}

Point Fields::point(const char* name) {
    if (const auto found = pointIn(raw(name)))
        return *found;
    expected(name, "a point [x, y]");
    return {};
}

std::vector<Point> Fields::points(const char* name) {
    const Json& value = raw(name);
    std::vector<Point> found;
    for (const Json& element : value.is_array() ? value : Json::array()) {
        if (const auto place = pointIn(element))
            found.push_back(*place);
    }
    if (found.empty() || found.size() != value.size())
        expected(name, "one or more points [[x, y], ...]");
    return found;
}

std::vector<std::string> Fields::paths(const char* name) {
    const Json& value = raw(name);
    std::vector<std::string> found;
    for (const Json& element : value.is_array() ? value : Json::array()) {
        if (element.is_string() && !element.get_ref<const std::string&>().empty())
            found.push_back(element.get<std::string>());
    }
    if (found.empty() || found.size() != value.size())
        expected(name, "one or more paths [\"a.png\", ...]");
    return found;
}

std::optional<Rgba> Fields::colour(const char* name) {
    const Json& value = raw(name);
    if (value.is_null() && has(name))
        return std::nullopt;
    std::vector<double> parts;
    for (const Json& element : value.is_array() ? value : Json::array()) {
        const auto part = finite(element);
        if (part && *part >= 0 && *part <= 1)
            parts.push_back(*part);
    }
    if (parts.size() == 4 && value.size() == 4)
        return Rgba{parts[0], parts[1], parts[2], parts[3]};
    expected(name, "four numbers from 0 to 1, or null");
    return std::nullopt;
}

}  // namespace trimora::script
