#include "util/NumberDisplay.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace trimora::util {

std::string displayedNumber(float value, int maximumFractionDigits) {
    // The largest float has 39 digits before the point, and nobody asks for more than a few after it.
    constexpr int kMostFractionDigits = 20;
    std::array<char, 64> digits;
    const int fraction = std::clamp(maximumFractionDigits, 0, kMostFractionDigits);
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(),
                                       std::isfinite(value) ? static_cast<double>(value) : 0.0,
                                       std::chars_format::fixed, fraction);
    std::string text(digits.data(), written.ptr);
    if (fraction > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

float leadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    // from_chars would also read the words "inf" and "nan", and a second sign.
    if (text.empty() || text.find_first_not_of("0123456789.") == 0)
        return 0;
    double value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec == std::errc::result_out_of_range)
        value = text.find('-') < text.size() ? 0 : std::numeric_limits<double>::max();
    const auto most = static_cast<double>(std::numeric_limits<float>::max());
    const auto number = static_cast<float>(std::min(value, most));
    return negative ? -number : number;
}

}  // namespace trimora::util
