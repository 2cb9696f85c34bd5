#pragma once

namespace trimora::controls {

/// Gives the program its dark, quiet look: style, palette and font, all made from Palette.h and Metrics.h.
/// Once, after the QApplication and before the first window. Main thread.
///
/// A message box without a frame of the desktop's is painted as a sheet (Sheet.h); whoever makes one gives
/// it a translucent background.
///
/// A menu bar under this style is not opened by a lone press of Alt: that key sizes the brush with
/// the wheel, and letting it go must leave the keyboard where it is. Alt with a letter still opens.
void applyAppStyle();

}  // namespace trimora::controls
