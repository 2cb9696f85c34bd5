#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "cutengine/Cursor.h"

namespace trimora::editor {

/// ViewForCursor: shows the brush's outline in its real size while a size control moves.
///
/// Hidden to begin with; its owner shows and hides it. The outline keeps to the screen's own pixels, so it
/// is as sharp as the cursor over the picture. Lets every press through. Main thread only.
class CursorPreview final : public QWidget {
 public:
    explicit CursorPreview(QWidget* parent = nullptr);

    /// Margin round the outline, in points.
    static constexpr float kCursorRectDelta = 3;

    /// What the preview draws for a brush of `diameter` points: the outline of the nearest even whole size
    /// below (y-up, from the bottom left of its square), and from 42 points on a cross at its centre. The
    /// square is as large as the diameter itself, with the margin.
    [[nodiscard]] static cutengine::BrushCursorShape shapeFor(float diameter);

    /// Shows a brush of this diameter, in points. Does not show the view itself.
    void showCursor(float diameter);

    /// The picture that is shown, at the screen's scale factor; null before the first showCursor().
    [[nodiscard]] QPixmap imageCursor();

    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    std::optional<cutengine::BrushCursorShape> shape_;
    QPixmap imageCursor_;  // of shape_, null where it is to be drawn anew
};

}  // namespace trimora::editor
