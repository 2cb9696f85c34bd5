#pragma once

#include <cstdint>
#include <string>

#include "codecs/Bytes.h"
#include "codecs/TiffLibrary.h"

namespace trimora::codecs {

/// A TIFF file in memory, opened by libtiff for reading. What the library complains of is kept, not
/// printed. Not movable: the library holds its address.
class TiffFile {
 public:
    explicit TiffFile(Bytes bytes);
    ~TiffFile();
    TiffFile(const TiffFile&) = delete;
    TiffFile& operator=(const TiffFile&) = delete;

    /// Null where the bytes are no TIFF file, its first page cannot be read, or libtiff is not installed.
    [[nodiscard]] TIFF* handle() const { return handle_; }

    /// What to call with the handle. Only where that is not null.
    [[nodiscard]] const TiffLibrary& tiff() const { return *library_; }

    /// The colour profile of the current page; empty where it carries none.
    [[nodiscard]] Bytes icc() const;

    /// The library's first complaint, or that there is no library; empty where all is well.
    [[nodiscard]] const std::string& complaint() const { return complaint_; }

    /// A tag of the current page, or the format's default for it, or `otherwise`.
    template <typename Number>
    [[nodiscard]] Number tag(std::uint32_t name, Number otherwise = 0) const {
        Number value = otherwise;
        return library_->GetFieldDefaulted(handle_, name, &value) == 1 ? value : otherwise;
    }

 private:
    static int onError(TIFF* tiff, void* self, const char* module, const char* format, va_list arguments);
    static tmsize_t read(thandle_t self, void* to, tmsize_t size);
    static toff_t seek(thandle_t self, toff_t offset, int origin);
    static toff_t size(thandle_t self);
    static int map(thandle_t self, void** base, toff_t* size);

    Bytes bytes_;
    std::uint64_t position_ = 0;
    std::string complaint_;
    const TiffLibrary* library_ = nullptr;
    TIFF* handle_ = nullptr;
};

}  // namespace trimora::codecs
