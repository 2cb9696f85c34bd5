#pragma once

class QWidget;

namespace trimora::app {

/// The pages of the Help menu, as sheets of the window; each is gone for good when it is closed. Main
/// thread only.

/// Every key and what it does, from the table of the menus.
void showShortcutPage(QWidget& window);

/// What this program is.
void showAboutPage(QWidget& window);

}  // namespace trimora::app
