#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "Targets.h"

namespace {

// Of the processor's time, so that a busy machine is no find. What is usual is a thousandth of it.
constexpr std::clock_t kMostSeconds = 10;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::clock_t start = std::clock();
    const int kept = trimora::fuzz::TRIMORA_FUZZ_TARGET(data, size);
    if (std::clock() - start > kMostSeconds * CLOCKS_PER_SEC) {
        std::fputs("the reader took too long\n", stderr);
        std::abort();
    }
    return kept;
}
