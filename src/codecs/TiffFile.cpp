#include "codecs/TiffFile.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>

namespace trimora::codecs {
namespace {

// What one block of the library may take: a strip that holds a whole large picture, and no more.
constexpr tmsize_t kMostBlockBytes = tmsize_t{2} << 30;

int ignore(TIFF* /*tiff*/, void* /*self*/, const char* /*module*/, const char* /*format*/,
           va_list /*arguments*/) {
    return 1;
}

tmsize_t refuseWriting(thandle_t /*self*/, void* /*from*/, tmsize_t /*size*/) {
    return -1;
}

int close(thandle_t /*self*/) {
    return 0;
}

void unmap(thandle_t /*self*/, void* /*base*/, toff_t /*size*/) {}

}  // namespace

TiffFile::TiffFile(Bytes bytes) : bytes_(bytes) {
    const auto library = TiffLibrary::get();
    if (!library) {
        complaint_ = library.error().message;
        return;
    }
    library_ = *library;
    TIFFOpenOptions* const options = library_->OpenOptionsAlloc();
    if (options == nullptr)
        return;
    library_->OpenOptionsSetMaxSingleMemAlloc(options, kMostBlockBytes);
    library_->OpenOptionsSetErrorHandlerExtR(options, &TiffFile::onError, this);
    library_->OpenOptionsSetWarningHandlerExtR(options, &ignore, nullptr);
    handle_ = library_->ClientOpenExt("picture", "r", this, &TiffFile::read, &refuseWriting, &TiffFile::seek,
                                      &close, &TiffFile::size, &TiffFile::map, &unmap, options);
    library_->OpenOptionsFree(options);
}

TiffFile::~TiffFile() {
    if (handle_ != nullptr)
        library_->Close(handle_);
}

Bytes TiffFile::icc() const {
    std::uint32_t size = 0;
    void* icc = nullptr;
    if (library_->GetField(handle_, TIFFTAG_ICCPROFILE, &size, &icc) != 1)
        return {};
    return {static_cast<const std::uint8_t*>(icc), size};
}

int TiffFile::onError(TIFF* /*tiff*/, void* self, const char* /*module*/, const char* format,
                      va_list arguments) {
    std::string& complaint = static_cast<TiffFile*>(self)->complaint_;
    if (complaint.empty()) {
        std::array<char, 200> text{};
        std::vsnprintf(text.data(), text.size(), format, arguments);
        complaint = text.data();
    }
    return 1;
}

tmsize_t TiffFile::read(thandle_t self, void* to, tmsize_t size) {
    auto& file = *static_cast<TiffFile*>(self);
    const Bytes got =
        part(file.bytes_, file.position_, static_cast<std::size_t>(std::max<tmsize_t>(size, 0)));
    std::copy(got.begin(), got.end(), static_cast<std::uint8_t*>(to));
    file.position_ += got.size();
    return static_cast<tmsize_t>(got.size());
}

toff_t TiffFile::seek(thandle_t self, toff_t offset, int origin) {
    auto& file = *static_cast<TiffFile*>(self);
    switch (origin) {
        case SEEK_CUR:
            file.position_ += offset;
            break;
        case SEEK_END:
            file.position_ = file.bytes_.size() + offset;
            break;
        default:
            file.position_ = offset;
            break;
    }
    return file.position_;
}

toff_t TiffFile::size(thandle_t self) {
    return static_cast<TiffFile*>(self)->bytes_.size();
}

int TiffFile::map(thandle_t self, void** base, toff_t* size) {
    // The library only reads where the file was opened for reading; its interface has no const.
    const Bytes bytes = static_cast<TiffFile*>(self)->bytes_;
    *base = const_cast<std::uint8_t*>(bytes.data());
    *size = bytes.size();
    return 1;
}

}  // namespace trimora::codecs
