#include "platform/TrayItem.h"

#include <QGuiApplication>
#include <utility>

namespace trimora::platform {

TrayItem::TrayItem(const QIcon& icon, FillMenu fillMenu, std::function<void()> clicked)
    : fillMenu_(std::move(fillMenu)), icon_(icon) {
    // Some trays fetch the menu once before they announce that it opens.
    refill();
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { refill(); });
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &menu_,
                     [clicked = std::move(clicked)](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             clicked();
                     });
    icon_.setContextMenu(&menu_);
    icon_.setToolTip(QGuiApplication::applicationDisplayName());
    // On X11 the item appears as soon as a tray does; elsewhere there is one now or never.
    if (isSeen() || QGuiApplication::platformName() == QLatin1String("xcb"))
        icon_.show();
}

void TrayItem::refill() {
    menu_.clear();
    fillMenu_(menu_);
}

}  // namespace trimora::platform
