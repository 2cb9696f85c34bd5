#include "editor/PictureEyedropper.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <cmath>
#include <utility>

#include "cutengine/RKImageCutView.h"
#include "editor/CutViewInput.h"
#include "editor/CutViewWidget.h"

namespace trimora::editor {

using cutengine::Colour;
using foundation::Point;

std::optional<Colour> pictureColour(const cutengine::RKImageCutView& view, Point place) {
    const cutengine::PicturePtr& picture = view.image();
    const auto toPicture = view.transform().inverted();
    const auto bitmap = picture == nullptr ? nullptr : picture->bestRepresentation();
    if (bitmap == nullptr || !toPicture)
        return std::nullopt;
    // The transform maps the picture's centre to its place in the view.
    const Point fromCentre = toPicture->apply(place);
    const double x = fromCentre.x / picture->size().width + 0.5;
    const double y = 0.5 - fromCentre.y / picture->size().height;
    if (x < 0 || x >= 1 || y < 0 || y >= 1)
        return std::nullopt;
    const foundation::Pixel pixel = bitmap->pixel(static_cast<int>(std::floor(x * bitmap->width())),
                                                  static_cast<int>(std::floor(y * bitmap->height())));
    if (pixel.alpha == 0)
        return std::nullopt;
    const double alpha = pixel.alpha;
    return Colour{pixel.red / alpha, pixel.green / alpha, pixel.blue / alpha, 1};
}

PictureEyedropper::~PictureEyedropper() {
    stop();
}

void PictureEyedropper::start(Taken taken) {
    finish(std::nullopt);
    taken_ = std::move(taken);
    QGuiApplication::setOverrideCursor(Qt::CrossCursor);
    qApp->installEventFilter(this);
}

bool PictureEyedropper::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType())
        return takePress(watched, static_cast<const QMouseEvent&>(*event));
    if (event->type() != QEvent::KeyPress || static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return false;
    finish(std::nullopt);
    return true;
}

bool PictureEyedropper::takePress(const QObject* watched, const QMouseEvent& press) {
    if (watched != &viCut_ || press.button() != Qt::LeftButton) {
        finish(std::nullopt);
        return false;
    }
    finish(pictureColour(viCut_.view(), viewPoint(press.position(), viCut_.height())));
    return true;
}

void PictureEyedropper::finish(std::optional<Colour> colour) {
    if (const Taken taken = stop())
        taken(colour);
}

PictureEyedropper::Taken PictureEyedropper::stop() {
    if (taken_ != nullptr) {
        qApp->removeEventFilter(this);
        QGuiApplication::restoreOverrideCursor();
    }
    return std::exchange(taken_, nullptr);
}

}  // namespace trimora::editor
