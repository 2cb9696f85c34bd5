#include <string_view>

#include "Demand.h"
#include "Targets.h"
#include "script/Reader.h"
#include "script/Writer.h"

namespace trimora::fuzz {

// Whatever the line, it is refused with a reason or read as a step that its own line is read as again.
int readEditScript(const std::uint8_t* data, std::size_t size) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes that are read as text
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    const auto step = script::readStep(line);
    if (!step) {
        demand(step.error().message.starts_with("expected "));
        return 0;
    }
    const auto again = script::readStep(script::writeStep(*step));
    demand(again && *again == *step);
    return 0;
}

}  // namespace trimora::fuzz
