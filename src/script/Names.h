#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "script/Steps.h"

/// The names that an edit script may use.
namespace trimora::script {

/// The value of "do" for a step: "view".
[[nodiscard]] std::string_view nameOf(const Step& step);

/// All of them, in the order of the variant.
[[nodiscard]] std::span<const std::string_view> stepNames();

/// Names of enumerations, each in the order of its values.
[[nodiscard]] std::span<const std::string_view> mouseTypes();
[[nodiscard]] std::span<const std::string_view> buttons();
[[nodiscard]] std::span<const std::string_view> receivers();
[[nodiscard]] std::span<const std::string_view> sliders();
[[nodiscard]] std::span<const std::string_view> planes();
[[nodiscard]] std::span<const std::string_view> pictures();
[[nodiscard]] std::span<const std::string_view> panels();

/// A property of the cut view that a script may set.
struct Property {
    enum class Kind : std::uint8_t {
        flag,      ///< true or false
        number,    ///< finite
        colour,    ///< four numbers 0..1, or null for none
        dragMode,  ///< 0 paints, 1 pans; false and true mean the same
    };
    std::string_view name;
    Kind kind;
};
[[nodiscard]] std::span<const Property> properties();
[[nodiscard]] const Property* propertyNamed(std::string_view name);

/// What a receiver may be told to perform.
[[nodiscard]] std::span<const std::string_view> selectorsOf(Receiver receiver);

}  // namespace trimora::script
