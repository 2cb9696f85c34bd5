#include <opencv2/imgproc.hpp>
#include <string>

#include "Comparison.h"
#include "Photograph.h"
#include "cutengine/kernels/DiscBlur.h"
#include "foundation/ThreadQueues.h"

namespace {

using namespace trimora;
namespace kernels = cutengine::kernels;

cv::Mat discKernel(int radius) {
    cv::Mat kernel(2 * radius + 1, 2 * radius + 1, CV_32F, cv::Scalar(0));
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx)
            kernel.at<float>(dy + radius, dx + radius) = dx * dx + dy * dy <= radius * radius ? 1.0F : 0.0F;
    }
    return kernel / cv::sum(kernel)[0];
}

void compare(int width, int height, int radius, int rounds) {
    foundation::Bitmap picture = benchmarks::photograph(width, height);
    foundation::Bitmap ours = foundation::Bitmap::create(width, height, picture.alphaMode()).value();
    const cv::Mat from(height, width, CV_8UC4, picture.view().pixels, picture.stride());
    const cv::Mat kernel = discKernel(radius);
    cv::Mat theirs;
    foundation::InlineWorkers one;
    foundation::ThreadWorkers two(2);
    cv::setNumThreads(1);
    benchmarks::Comparison("disc blur " + std::to_string(width) + " x " + std::to_string(height) +
                               ", radius " + std::to_string(radius),
                           rounds)
        .add("Trimora, one core", [&] { kernels::discBlur(picture.view(), ours.view(), radius, one); })
        .add("Trimora, two cores", [&] { kernels::discBlur(picture.view(), ours.view(), radius, two); })
        .add("OpenCV filter2D, one core",
             [&] {
                 cv::filter2D(from, theirs, -1, kernel, {-1, -1}, 0, cv::BORDER_REPLICATE);
             })
        .print();
}

}  // namespace

int main() {
    compare(1000, 800, 9, 9);
    compare(6000, 4000, 50, 7);
}
