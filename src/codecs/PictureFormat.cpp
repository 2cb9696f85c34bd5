#include "codecs/PictureFormat.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace trimora::codecs {
namespace {

using namespace std::string_view_literals;

struct Signature {
    std::string_view bytes;
    PictureFormat format;
};

constexpr std::array kSignatures = {
    Signature{"\xFF\xD8\xFF"sv, PictureFormat::jpeg}, Signature{"\x89PNG\r\n\x1A\n"sv, PictureFormat::png},
    Signature{"II\x2A\0"sv, PictureFormat::tiff},     Signature{"MM\0\x2A"sv, PictureFormat::tiff},
    Signature{"II\x2B\0"sv, PictureFormat::tiff},  // the form for files above 4 GiB
    Signature{"MM\0\x2B"sv, PictureFormat::tiff},     Signature{"GIF87a"sv, PictureFormat::gif},
    Signature{"GIF89a"sv, PictureFormat::gif},
};

}  // namespace

std::optional<PictureFormat> formatOf(std::span<const std::uint8_t> firstBytes) {
    const std::string_view start(reinterpret_cast<const char*>(firstBytes.data()),
                                 std::min(firstBytes.size(), kSignatureSize));
    for (const Signature& signature : kSignatures) {
        if (start.starts_with(signature.bytes))
            return signature.format;
    }
    return std::nullopt;
}

const char* nameOf(PictureFormat format) {
    switch (format) {
        case PictureFormat::jpeg:
            return "JPEG";
        case PictureFormat::png:
            return "PNG";
        case PictureFormat::tiff:
            return "TIFF";
        case PictureFormat::gif:
            return "GIF";
    }
    return "";
}

}  // namespace trimora::codecs
