#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace trimora::codecs {

enum class PictureFormat : std::uint8_t { jpeg, png, tiff, gif };

/// So many first bytes tell every format.
inline constexpr std::size_t kSignatureSize = 8;

/// The format that the first bytes of a file tell; its name is never asked. None where they are those of
/// no format that is read here, or too few.
[[nodiscard]] std::optional<PictureFormat> formatOf(std::span<const std::uint8_t> firstBytes);

/// "JPEG", "PNG", "TIFF" or "GIF".
[[nodiscard]] const char* nameOf(PictureFormat format);

}  // namespace trimora::codecs
