#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>

namespace trimora::platform {

/// The program's item in the desktop's tray, where there is one; on X11 it waits, unseen, for one to
/// come.
///
/// Its menu is made anew whenever it is asked for, so that check marks are true at that moment. Main
/// thread only; made after the QApplication.
class TrayItem {
 public:
    /// Puts the items into an empty menu.
    using FillMenu = std::function<void(QMenu&)>;

    /// `clicked` hears of a click on the item itself.
    TrayItem(const QIcon& icon, FillMenu fillMenu, std::function<void()> clicked);

    /// Whether the desktop has a tray now, so that a person can see the item.
    [[nodiscard]] static bool isSeen() { return QSystemTrayIcon::isSystemTrayAvailable(); }

    [[nodiscard]] QMenu& menu() { return menu_; }

 private:
    void refill();

    FillMenu fillMenu_;
    QMenu menu_;  // above the icon, which refers to it
    QSystemTrayIcon icon_;
};

}  // namespace trimora::platform
