#include "cli/JsonValues.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace trimora {

Json jsonNumber(double value) {
    constexpr double kExact = 9007199254740992;  // whole numbers up to here are told apart
    if (value == std::trunc(value) && std::abs(value) < kExact)
        return static_cast<std::int64_t>(value);
    return value;
}

Json jsonNumber(float value) {
    char digits[64];
    const auto end = std::to_chars(std::begin(digits), std::end(digits) - 1, value).ptr;
    *end = '\0';
    return jsonNumber(std::strtod(digits, nullptr));
}

Json jsonSize(foundation::Size size) {
    return Json::array({jsonNumber(size.width), jsonNumber(size.height)});
}

Json jsonRect(const foundation::Rect& rect) {
    return Json::array(
        {jsonNumber(rect.x), jsonNumber(rect.y), jsonNumber(rect.width), jsonNumber(rect.height)});
}

std::string jsonLine(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace trimora
