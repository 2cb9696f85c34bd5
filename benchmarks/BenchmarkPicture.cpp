// benchmark_picture WIDTH HEIGHT FILE: writes the benchmarks' photograph in any size and format.
#include <cstdlib>
#include <opencv2/imgcodecs.hpp>

#include "Photograph.h"

int main(int argc, char** argv) {
    if (argc != 4)
        return 2;
    const trimora::foundation::Bitmap picture =
        trimora::benchmarks::photograph(std::atoi(argv[1]), std::atoi(argv[2]));
    const auto view = picture.view();
    const cv::Mat pixels(view.height, view.width, CV_8UC4, const_cast<std::uint8_t*>(view.pixels),
                         view.stride);
    return cv::imwrite(argv[3], pixels) ? 0 : 1;
}
