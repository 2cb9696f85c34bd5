#include "codecs/JpegLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::codecs {

using foundation::Result;

namespace {

Result<JpegLibrary> load() {
    return files::loadFunctions<JpegLibrary>("libjpeg.so.62",
                                             [](files::LateFunctions& find, JpegLibrary& made) {
                                                 find("jpeg_CreateDecompress", made.CreateDecompress);
                                                 find("jpeg_destroy_decompress", made.destroy_decompress);
                                                 find("jpeg_finish_decompress", made.finish_decompress);
                                                 find("jpeg_has_multiple_scans", made.has_multiple_scans);
                                                 find("jpeg_mem_src", made.mem_src);
                                                 find("jpeg_read_header", made.read_header);
                                                 find("jpeg_read_scanlines", made.read_scanlines);
                                                 find("jpeg_skip_scanlines", made.skip_scanlines);
                                                 find("jpeg_start_decompress", made.start_decompress);
                                                 find("jpeg_std_error", made.std_error);
                                             });
}

}  // namespace

Result<const JpegLibrary*> JpegLibrary::get() {
    static files::LoadedOnce<JpegLibrary> library;
    return library.get(load);
}

}  // namespace trimora::codecs
