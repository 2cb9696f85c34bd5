#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

/// Reading numbers and pieces out of bytes that nobody vouches for. Every function stays inside the bytes
/// whatever the offset: what lies outside reads as 0 or as nothing.
namespace trimora::codecs {

using Bytes = std::span<const std::uint8_t>;

enum class ByteOrder : std::uint8_t { big, little };

/// The part from `offset`, at most `size` long, as far as the bytes go.
[[nodiscard]] inline Bytes part(Bytes bytes, std::size_t offset, std::size_t size = SIZE_MAX) {
    if (offset >= bytes.size())
        return {};
    return bytes.subspan(offset, std::min(size, bytes.size() - offset));
}

[[nodiscard]] inline std::uint32_t number(Bytes bytes, std::size_t offset, std::size_t size,
                                          ByteOrder order) {
    const Bytes digits = part(bytes, offset, size);
    if (digits.size() < size)
        return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | digits[order == ByteOrder::big ? i : size - 1 - i];
    return value;
}

[[nodiscard]] inline std::uint32_t u16(Bytes bytes, std::size_t offset, ByteOrder order = ByteOrder::big) {
    return number(bytes, offset, 2, order);
}

[[nodiscard]] inline std::uint32_t u32(Bytes bytes, std::size_t offset, ByteOrder order = ByteOrder::big) {
    return number(bytes, offset, 4, order);
}

[[nodiscard]] inline bool startsWith(Bytes bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::memcmp(bytes.data(), text.data(), text.size()) == 0;
}

}  // namespace trimora::codecs
