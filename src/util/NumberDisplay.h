#pragma once

#include <string>
#include <string_view>

/// Numbers as the small fields show and read them, the same in every locale.
namespace trimora::util {

/// The value with "." as its separator, no grouping, and at most `maximumFractionDigits` digits after
/// it, trailing zeros left out. Rounded to the nearest, and from halfway to the even digit: 12.5 with
/// none is "12". What rounds to zero is "0". A value that is no number is "0" too.
[[nodiscard]] std::string displayedNumber(float value, int maximumFractionDigits);

/// The number that a text begins with, after blanks: "45%" is 45. A text that begins with none is 0,
/// a number too large for a float the largest float.
[[nodiscard]] float leadingNumber(std::string_view text);

}  // namespace trimora::util
