#include "PictureFuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return trimora::fuzz::readPicture(trimora::codecs::PictureFormat::jpeg, data, size);
}
