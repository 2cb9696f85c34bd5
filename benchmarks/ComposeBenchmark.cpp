#include <QImage>
#include <QPainter>
#include <opencv2/imgproc.hpp>
#include <string>

#include "Comparison.h"
#include "PaintedMask.h"
#include "Photograph.h"
#include "cutengine/kernels/ResultComposer.h"
#include "foundation/ThreadQueues.h"

namespace {

using namespace trimora;
namespace kernels = cutengine::kernels;
using kernels::Background;

QImage wrapped(foundation::Bitmap& bitmap) {
    return {bitmap.view().pixels, bitmap.width(), bitmap.height(), static_cast<qsizetype>(bitmap.stride()),
            QImage::Format_ARGB32_Premultiplied};
}

cv::Mat wrappedMat(foundation::Bitmap& bitmap) {
    return {bitmap.height(), bitmap.width(), CV_8UC4, bitmap.view().pixels, bitmap.stride()};
}

/// Qt's way: the picture, its alpha multiplied by the stretched mask, the background put under it.
void paintWithQt(QImage& result, const QImage& picture, const QImage& mask, const Background& background,
                 const QImage& behind) {
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(result.rect(), mask);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    if (background.kind == Background::Kind::colour)
        painter.fillRect(result.rect(),
                         QColor(background.colour.red, background.colour.green, background.colour.blue));
    if (background.kind == Background::Kind::picture)
        painter.drawImage(0, 0, behind);
}

/// OpenCV's way: the mask stretched, then put into the alpha or used as the weights of a blend.
void composeWithOpenCv(cv::Mat& result, const cv::Mat& picture, const cv::Mat& mask, const cv::Mat& behind) {
    cv::Mat stretched;
    cv::resize(mask, stretched, picture.size(), 0, 0, cv::INTER_LINEAR);
    if (behind.empty()) {
        picture.copyTo(result);
        cv::insertChannel(stretched, result, 3);
        result.setTo(cv::Scalar::all(0), stretched == 0);  // no colour where nothing shows
        return;
    }
    cv::Mat shown;
    cv::Mat cut;
    stretched.convertTo(shown, CV_32F, 1.0 / 255);
    cv::subtract(1.0, shown, cut);
    cv::blendLinear(picture, behind, shown, cut, result);
}

}  // namespace

int main() {
    constexpr int kWidth = 6000;
    constexpr int kHeight = 4000;
    foundation::Bitmap picture = benchmarks::photograph(kWidth, kHeight);
    foundation::Bitmap behind = benchmarks::photograph(kWidth, kHeight);
    foundation::Bitmap plane = benchmarks::paintedMask(2000, 1333, 12);
    foundation::Bitmap ours =
        foundation::Bitmap::create(kWidth, kHeight, foundation::AlphaMode::straight).value();
    const auto mask = kernels::MaskSnapshotter().take(plane.view(), plane.view().bounds());

    QImage qtResult(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    const QImage qtPicture = wrapped(picture).convertToFormat(QImage::Format_RGB32);
    const QImage qtBehind = wrapped(behind).convertToFormat(QImage::Format_RGB32);
    const QImage qtMask = wrapped(plane);
    cv::setNumThreads(1);
    cv::Mat cvResult;
    cv::Mat cvMask;
    cv::extractChannel(wrappedMat(plane), cvMask, 3);
    const cv::Mat cvPicture = wrappedMat(picture);
    const cv::Mat cvColour(kHeight, kWidth, CV_8UC4, cv::Scalar(30, 90, 200, 255));

    foundation::InlineWorkers one;
    foundation::ThreadWorkers two(2);
    const auto compare = [&](const std::string& name, const Background& background, const cv::Mat& cvBehind) {
        benchmarks::Comparison("compose 24 MP over " + name)
            .add("Trimora, one core",
                 [&] { kernels::composeResult(picture.view(), mask.get(), background, ours.view(), one); })
            .add("Trimora, two cores",
                 [&] { kernels::composeResult(picture.view(), mask.get(), background, ours.view(), two); })
            .add("Qt painter", [&] { paintWithQt(qtResult, qtPicture, qtMask, background, qtBehind); })
            .add("OpenCV, one core", [&] { composeWithOpenCv(cvResult, cvPicture, cvMask, cvBehind); })
            .print();
    };
    compare("nothing", {}, {});
    compare("a colour", {Background::Kind::colour, {30, 90, 200, 255}, {}}, cvColour);
    compare("a picture", {Background::Kind::picture, {}, behind.view()}, wrappedMat(behind));
}
