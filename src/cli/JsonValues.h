#pragma once

#include <nlohmann/json.hpp>

#include "foundation/Geometry.h"

/// How the values of a scripted run are written in JSON.
namespace trimora {

using Json = nlohmann::ordered_json;

/// A number; one that is whole is written without a point.
[[nodiscard]] Json jsonNumber(double value);
/// The same with the fewest digits that tell the float from its neighbours.
[[nodiscard]] Json jsonNumber(float value);

/// [w, h]
[[nodiscard]] Json jsonSize(foundation::Size size);
/// [x, y, w, h]
[[nodiscard]] Json jsonRect(const foundation::Rect& rect);

/// The value on one line; text that is not UTF-8 is mended.
[[nodiscard]] std::string jsonLine(const Json& value);

}  // namespace trimora
