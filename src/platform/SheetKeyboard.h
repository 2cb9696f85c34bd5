#pragma once

#include <QGuiApplication>

namespace trimora::platform {

/// Sees to it that on X11 the keyboard is with the sheet or panel that a window waits for, whatever is
/// pressed beside it.
///
/// The toolkit asks for the keyboard for any window that is pressed, also for one that waits for its sheet,
/// and takes its own request for granted. A window manager that knows better leaves the keyboard where it is;
/// from then on the toolkit drops every key as one for a window that takes none. Asked for the sheet's sake,
/// it comes to know again. Elsewhere windows cannot ask for the keyboard, and nothing is done.
///
/// From now until the application ends. Main thread only.
void keepKeyboardWithSheets(QGuiApplication& application);

}  // namespace trimora::platform
