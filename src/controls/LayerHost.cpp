#include "controls/LayerHost.h"

#include <QPainter>
#include <QWidget>

#include "controls/Motion.h"

namespace trimora::controls {
namespace {

constexpr double kSeenMove = 0.5;  // device pixels; images stand on whole ones
constexpr int kLongestRest = 30;   // frames; then it is looked at again

}  // namespace

void LayerHost::fitToWidget() {
    root_.setFrame({0, 0, static_cast<double>(widget_.width()), static_cast<double>(widget_.height())});
}

void LayerHost::paint(QPainter& painter) {
    painter.save();
    painter.translate(0, widget_.height());
    painter.scale(1, -1);
    const double shown = now();
    root_.paint(painter, shown);
    painter.restore();
    nextFrame_.reset();
    if (root_.isAnimating(shown)) {
        nextFrame_ = context_.scheduler.after(timeToNextFrame(shown), context_.mainQueue,
                                              [this] { widget_.update(); });
    }
}

double LayerHost::timeToNextFrame(double shown) const {
    const double seenMove = kSeenMove / widget_.devicePixelRatioF();
    int frames = 1;
    while (frames < kLongestRest && root_.looksAlike(shown, shown + frames * motion::kFrame, seenMove))
        ++frames;
    return frames * motion::kFrame;
}

}  // namespace trimora::controls
