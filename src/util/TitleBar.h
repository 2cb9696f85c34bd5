#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

/// The strip along the top of a window that we draw ourselves (the frame around it belongs to the
/// desktop). Main thread only.
namespace trimora::util {

/// Fills the strip with the colour.
void setTitlebarColor(QWidget& titleBar, const QColor& color);

/// Shows the window's title in the middle of the strip in the colour, in place of a title that it
/// showed before; what is too long for it is shortened in its middle. The text cannot be selected, and
/// clicks go through it to the strip.
void setTitleColor(QWidget& titleBar, const QColor& color);

}  // namespace trimora::util
