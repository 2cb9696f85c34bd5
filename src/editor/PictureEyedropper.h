#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "cutengine/Colour.h"
#include "foundation/Geometry.h"

class QMouseEvent;

namespace trimora::cutengine {
class RKImageCutView;
}

namespace trimora::editor {

class CutViewWidget;

/// The colour of the picture that shows, cut away or not, at a place in view points; none beside the picture
/// and where it is wholly transparent.
[[nodiscard]] std::optional<cutengine::Colour> pictureColour(const cutengine::RKImageCutView& view,
                                                             foundation::Point place);

/// Takes a colour from the picture: the pointer is a cross until the next press, and a left press on the
/// cut view answers with the picture's colour there and paints nothing. Escape, another button, and a press
/// anywhere else give up; the latter is still what it would have been.
///
/// Main thread only; the widget lives longer.
class PictureEyedropper final : public QObject {
 public:
    using Taken = std::function<void(std::optional<cutengine::Colour>)>;

    explicit PictureEyedropper(CutViewWidget& viCut) : viCut_(viCut) {}
    ~PictureEyedropper() override;

    /// Begins; where it has begun already, the earlier one is answered with none. `taken` is called once,
    /// and never where this object goes first.
    void start(Taken taken);

    [[nodiscard]] bool isTaking() const { return taken_ != nullptr; }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    [[nodiscard]] bool takePress(const QObject* watched, const QMouseEvent& press);
    void finish(std::optional<cutengine::Colour> colour);
    Taken stop();

    CutViewWidget& viCut_;
    Taken taken_;
};

}  // namespace trimora::editor
