#include "Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return trimora::fuzz::TRIMORA_FUZZ_TARGET(data, size);
}
