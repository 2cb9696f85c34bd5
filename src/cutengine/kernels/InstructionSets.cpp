// Which of the kernels' instruction sets this processor has: what the SIMD library asks at a kernel's first
// call.
//
// The library comes with an answer of its own, in a shared library that measures a timer for some five
// milliseconds whenever a program loads it. Of all that is in there the kernels need these functions alone,
// so they are defined here, as the library's headers declare them, and win over that library's where a build
// without optimisation loads it for the rest.
#include <hwy/targets.h>

#include <atomic>

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

namespace hwy {
namespace {

std::atomic<int64_t> forced{0};  // by a test; 0: none

constexpr int64_t kEverywhere = HWY_SCALAR | HWY_EMU128;

#if HWY_ARCH_X86

struct Features {
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
};

Features featuresOf(unsigned leaf) {
    Features found;
    __get_cpuid_count(leaf, 0, &found.eax, &found.ebx, &found.ecx, &found.edx);
    return found;
}

bool hasAll(unsigned word, unsigned bits) {
    return (word & bits) == bits;
}

/// AVX2 and AVX-512 are asked of the compiler's library, which knows whether the system keeps their
/// registers.
int64_t supportedHere() {
    const Features basic = featuresOf(1);
    const Features extended = featuresOf(7);
    const Features more = featuresOf(0x80000001);
    int64_t found = kEverywhere;
    if (!hasAll(basic.ecx, bit_SSE3 | bit_SSSE3))
        return found;
    found |= HWY_SSSE3;
    if (!hasAll(basic.ecx, bit_SSE4_1 | bit_SSE4_2 | bit_PCLMUL | bit_AES))
        return found;
    found |= HWY_SSE4;
    if (!__builtin_cpu_supports("avx2") || !hasAll(basic.ecx, bit_FMA | bit_F16C) ||
        !hasAll(extended.ebx, bit_BMI | bit_BMI2) || !hasAll(more.ecx, bit_LZCNT))
        return found;
    found |= HWY_AVX2;
    if (__builtin_cpu_supports("avx512f") && hasAll(extended.ebx, bit_AVX512VL | bit_AVX512DQ | bit_AVX512BW))
        found |= HWY_AVX3;
    return found;
}

#else

int64_t supportedHere() {
    return kEverywhere | HWY_STATIC_TARGET;
}

#endif

}  // namespace

int64_t SupportedTargets() {
    static const int64_t here = supportedHere();
    const int64_t wanted = forced;
    return wanted != 0 ? wanted : here;
}

void SetSupportedTargetsForTest(int64_t targets) {
    forced = targets;
}

ChosenTarget& GetChosenTarget() {
    static ChosenTarget chosen;
    return chosen;
}

}  // namespace hwy
