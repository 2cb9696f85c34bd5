#pragma once

#include <gif_lib.h>

#include "foundation/Result.h"

namespace trimora::codecs {

/// Those functions of giflib that are called here, under its names without their "DGif" and "Gif". The
/// library is loaded with the first GIF file: every start would wait for it otherwise, as for each of the
/// libraries.
struct GifLibrary {
    decltype(&::DGifCloseFile) CloseFile;
    decltype(&::DGifExtensionToGCB) ExtensionToGCB;
    decltype(&::DGifGetExtension) GetExtension;
    decltype(&::DGifGetExtensionNext) GetExtensionNext;
    decltype(&::DGifGetImageDesc) GetImageDesc;
    decltype(&::DGifGetLine) GetLine;
    decltype(&::DGifGetRecordType) GetRecordType;
    decltype(&::DGifOpen) Open;
    decltype(&::GifErrorString) ErrorString;

    /// The one of this process, loaded with the first call. An error where it is not installed or memory is
    /// missing; the next call tries again. Any thread.
    [[nodiscard]] static foundation::Result<const GifLibrary*> get();
};

}  // namespace trimora::codecs
