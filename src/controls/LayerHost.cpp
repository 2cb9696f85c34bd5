#include "controls/LayerHost.h"

#include <QPainter>
#include <QWidget>

#include "controls/Motion.h"

namespace trimora::controls {

void LayerHost::fitToWidget() {
    root_.setFrame({0, 0, static_cast<double>(widget_.width()), static_cast<double>(widget_.height())});
}

void LayerHost::paint(QPainter& painter) {
    painter.save();
    painter.translate(0, widget_.height());
    painter.scale(1, -1);
    root_.paint(painter, now());
    painter.restore();
    nextFrame_.reset();
    if (root_.isAnimating(now())) {
        nextFrame_ =
            context_.scheduler.after(motion::kFrame, context_.mainQueue, [this] { widget_.update(); });
    }
}

}  // namespace trimora::controls
