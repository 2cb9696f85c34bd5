#include "codecs/JpegMetadata.h"

#include <array>
#include <string_view>

#include "codecs/ColourProfile.h"

namespace trimora::codecs {
namespace {

using namespace std::string_view_literals;

constexpr std::uint8_t kStartOfScan = 0xDA;
constexpr std::uint8_t kEndOfImage = 0xD9;
constexpr std::uint8_t kApplication1 = 0xE1;
constexpr std::uint8_t kApplication2 = 0xE2;
constexpr std::string_view kExifMark = "Exif\0\0"sv;
constexpr std::string_view kIccMark = "ICC_PROFILE\0"sv;
constexpr std::size_t kIccHeadSize = 14;  // the mark, the piece's number from 1, the count of pieces

bool standsAlone(std::uint8_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

/// The pieces of a profile that is too long for one marker.
class IccPieces {
 public:
    void add(Bytes segment) {
        const std::uint8_t place = segment[kIccHeadSize - 2];
        count_ = segment[kIccHeadSize - 1];
        pieces_[place] = part(segment, kIccHeadSize);
    }

    [[nodiscard]] std::vector<std::uint8_t> joined() const {
        std::vector<std::uint8_t> whole;
        for (std::size_t i = 1; i <= count_; ++i) {
            if (pieces_[i].empty() || whole.size() + pieces_[i].size() > kMostProfileBytes)
                return {};
            whole.insert(whole.end(), pieces_[i].begin(), pieces_[i].end());
        }
        return whole;
    }

 private:
    std::array<Bytes, 256> pieces_;
    std::size_t count_ = 0;
};

}  // namespace

JpegMetadata readJpegMetadata(Bytes file) {
    JpegMetadata found;
    IccPieces icc;
    bool exifSeen = false;
    std::size_t at = 2;
    while (at + 1 < file.size() && file[at] == 0xFF) {
        const std::uint8_t marker = file[at + 1];
        if (marker == kStartOfScan || marker == kEndOfImage)
            break;
        if (marker == 0xFF) {  // a fill byte
            ++at;
            continue;
        }
        at += 2;
        if (standsAlone(marker))
            continue;
        const std::size_t length = u16(file, at);
        if (length < 2)
            break;
        const Bytes segment = part(file, at + 2, length - 2);
        if (marker == kApplication1 && !exifSeen && startsWith(segment, kExifMark)) {
            exifSeen = true;
            found.orientation = exifOrientation(part(segment, kExifMark.size()));
        }
        if (marker == kApplication2 && segment.size() > kIccHeadSize && startsWith(segment, kIccMark))
            icc.add(segment);
        at += length;
    }
    found.icc = icc.joined();
    return found;
}

}  // namespace trimora::codecs
