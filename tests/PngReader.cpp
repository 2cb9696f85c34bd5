#include <png.h>

#include <cstdio>
#include <vector>

// Prints the pixels of a PNG file, as libpng reads them, to standard output: rows of R, G, B, A.
int main(int argc, char** argv) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (argc != 2 || png_image_begin_read_from_file(&image, argv[1]) == 0)
        return 1;
    image.format = PNG_FORMAT_RGBA;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) == 0)
        return 1;
    return std::fwrite(pixels.data(), 1, pixels.size(), stdout) == pixels.size() ? 0 : 1;
}
