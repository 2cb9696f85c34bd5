#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "script/Reader.h"
#include "script/Writer.h"

// Whatever the line, it is refused with a reason or read as a step that its own line is read as again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the fuzzer hands over bytes
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    const auto step = trimora::script::readStep(line);
    if (!step) {
        if (!step.error().message.starts_with("expected "))
            std::abort();
        return 0;
    }
    const auto again = trimora::script::readStep(trimora::script::writeStep(*step));
    if (!again || *again != *step)
        std::abort();
    return 0;
}
