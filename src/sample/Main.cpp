#include <cstdio>  // jpeglib.h needs it before

#include <jpeglib.h>

#include <memory>

#include "foundation/ThreadQueues.h"
#include "sample/SamplePicture.h"

// Draws the sample picture into the JPEG file named on the command line. The build runs it once.

namespace {

using trimora::foundation::BitmapView;

constexpr int kWidth = 4000;
constexpr int kQuality = 93;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// The library's own error handling ends the program with a message, which is right for a build step.
bool writeJpeg(BitmapView picture, const char* path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "wb"));
    if (!file)
        return false;
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file.get());
    jpeg.image_width = static_cast<JDIMENSION>(picture.width);
    jpeg.image_height = static_cast<JDIMENSION>(picture.height);
    jpeg.input_components = 4;
    jpeg.in_color_space = JCS_EXT_BGRX;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, kQuality, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    for (int y = 0; y < picture.height; ++y) {
        auto* row = const_cast<JSAMPLE*>(picture.row(y));  // the library takes, and does not change, it
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    return std::fflush(file.get()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: trimora_sample FILE.jpg\n");
        return 2;
    }
    trimora::foundation::ThreadWorkers workers;
    const auto made = trimora::sample::drawSamplePicture(kWidth, workers);
    if (!made || !writeJpeg(made->picture.view(), argv[1])) {
        std::fprintf(stderr, "trimora_sample: %s cannot be written\n", argv[1]);
        return 1;
    }
    return 0;
}
