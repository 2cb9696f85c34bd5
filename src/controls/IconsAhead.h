#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <initializer_list>

namespace trimora::controls {

/// A drawn image by its name (Icons.h), and the side of the square that it will fill, in points.
struct IconInSize {
    const char* name;
    int side;
};

/// Draws images that a window is about to paint, for a screen of this scale factor: called on a thread beside
/// the one that makes the window, which then finds them ready. One that is asked for in another size, or
/// before its turn, is drawn when it is asked for, as all others are. Any thread.
void drawIconsAhead(std::initializer_list<IconInSize> icons, double scale);

/// The image of a file in its own proportions, as large as has room in `size` pixels: the one that was drawn
/// ahead, which is handed out once, or one drawn now. Any thread.
[[nodiscard]] QImage drawnImage(const QString& file, const QSize& size);

}  // namespace trimora::controls
