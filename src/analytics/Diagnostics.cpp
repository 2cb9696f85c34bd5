#include "analytics/Diagnostics.h"

#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "foundation/Log.h"

namespace trimora::analytics {
namespace {

std::string sourcePath(std::string_view file) {
    constexpr std::string_view kFolder = "analytics/";
    if (const auto at = file.rfind(kFolder); at != std::string_view::npos)
        file.remove_prefix(at + kFolder.size());
    return std::string(file.substr(0, file.rfind('.')));
}

}  // namespace

std::string formatted(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string text(static_cast<std::size_t>(length < 0 ? 0 : length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    va_end(arguments);
    return text;
}

void debugWarning(const std::string& message, const char* function, const char* file, int line) {
    foundation::log::warning("Telemetrix Debug: WARNINGS: '%s' '%s':'%d', %s", function,
                             sourcePath(file).c_str(), line, message.c_str());
}

void logLine(const std::string& message) {
    foundation::log::warning("Telemetrix: %s", message.c_str());
}

}  // namespace trimora::analytics
