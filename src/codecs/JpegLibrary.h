#pragma once

#include <cstdio>  // jpeglib.h needs FILE

#include <jpeglib.h>

#include "foundation/Result.h"

namespace trimora::codecs {

/// Those functions of libjpeg-turbo that are called here, under its names without their "jpeg_". The library
/// is loaded with the first JPEG file: every start would wait for it otherwise, as for each of the libraries.
struct JpegLibrary {
    decltype(&::jpeg_CreateDecompress) CreateDecompress;
    decltype(&::jpeg_destroy_decompress) destroy_decompress;
    decltype(&::jpeg_finish_decompress) finish_decompress;
    decltype(&::jpeg_has_multiple_scans) has_multiple_scans;
    decltype(&::jpeg_mem_src) mem_src;
    decltype(&::jpeg_read_header) read_header;
    decltype(&::jpeg_read_scanlines) read_scanlines;
    decltype(&::jpeg_skip_scanlines) skip_scanlines;
    decltype(&::jpeg_start_decompress) start_decompress;
    decltype(&::jpeg_std_error) std_error;

    /// The one of this process, loaded with the first call. An error where it is not installed or memory is
    /// missing; the next call tries again. Any thread.
    [[nodiscard]] static foundation::Result<const JpegLibrary*> get();
};

}  // namespace trimora::codecs
