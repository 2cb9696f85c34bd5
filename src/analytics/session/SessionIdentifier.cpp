#include "analytics/session/SessionIdentifier.h"

#include <array>
#include <cstdint>
#include <random>

#include "analytics/Diagnostics.h"

namespace trimora::analytics {

std::string makeSessionIdentifier() {
    std::random_device source;
    std::array<std::uint32_t, 4> bits = {};
    for (std::uint32_t& word : bits)
        word = source();
    // RFC 4122, section 4.4: the version in the top bits of the third group, the variant in the fourth.
    const unsigned third = 0x4000U | (bits[1] & 0x0fffU);
    const unsigned fourth = 0x8000U | (bits[2] >> 16 & 0x3fffU);
    return formatted("%08X-%04X-%04X-%04X-%04X%08X", bits[0], bits[1] >> 16, third, fourth, bits[2] & 0xffffU,
                     bits[3]);
}

}  // namespace trimora::analytics
