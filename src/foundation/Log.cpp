#include "foundation/Log.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

namespace trimora::foundation::log {
namespace {

std::atomic<Level> threshold = Level::warning;

struct Output {
    std::recursive_mutex mutex;  // a sink may log
    Sink sink;
};

// Lives as long as the process: threads may log while statics are destroyed.
Output& output() {
    static auto* const instance = new Output;
    return *instance;
}

[[gnu::format(printf, 2, 0)]] std::string formatted(int length, const char* format, va_list arguments) {
    std::string line(static_cast<std::size_t>(length < 0 ? 0 : length), '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, arguments);
    return line;
}

[[gnu::format(printf, 2, 0)]] void write(Level level, const char* format, va_list arguments) {
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    const std::string line = formatted(length, format, arguments);
    Output& out = output();
    const std::scoped_lock lock(out.mutex);
    if (out.sink)
        out.sink(level, line);
    else
        writeToStandardError(level, line);
}

}  // namespace

#define TRIMORA_LOG_AT(level)        \
    if ((level) < threshold)         \
        return;                      \
    va_list arguments;               \
    va_start(arguments, format);     \
    write(level, format, arguments); \
    va_end(arguments)

void debug(const char* format, ...) {
    TRIMORA_LOG_AT(Level::debug);
}
void info(const char* format, ...) {
    TRIMORA_LOG_AT(Level::info);
}
void warning(const char* format, ...) {
    TRIMORA_LOG_AT(Level::warning);
}
void error(const char* format, ...) {
    TRIMORA_LOG_AT(Level::error);
}

#undef TRIMORA_LOG_AT

Sink setSink(Sink sink) {
    Output& out = output();
    const std::scoped_lock lock(out.mutex);
    return std::exchange(out.sink, std::move(sink));
}

void writeToStandardError(Level level, std::string_view line) {
    std::fprintf(stderr, "trimora: %s: %.*s\n", name(level).data(), static_cast<int>(line.size()),
                 line.data());
}

Level setThreshold(Level level) {
    return threshold.exchange(level);
}

std::string_view name(Level level) {
    switch (level) {
        case Level::debug:
            return "debug";
        case Level::info:
            return "info";
        case Level::warning:
            return "warning";
        case Level::error:
            return "error";
    }
    return "";
}

}  // namespace trimora::foundation::log
