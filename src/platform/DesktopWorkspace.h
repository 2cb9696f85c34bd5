#pragma once

#include <QDBusConnection>
#include <QUrl>
#include <functional>

#include "ports/Workspace.h"

namespace trimora::platform {

/// The desktop's file manager (org.freedesktop.FileManager1 on the session bus) and its programs for
/// addresses. Calls of the bus are asynchronous. Made and used on the main thread, after the
/// QApplication.
class DesktopWorkspace final : public ports::Workspace {
 public:
    /// Has the desktop open an address with the program that the person chose for it; false where it
    /// cannot.
    using Opener = std::function<bool(const QUrl&)>;

    explicit DesktopWorkspace(QDBusConnection bus);
    /// With another opener than the desktop's.
    DesktopWorkspace(QDBusConnection bus, Opener opener);

    /// `file` is absolute. The file manager may bring its window to the front where the person's click
    /// on a notification gave leave to (ActivationToken.h).
    void revealFile(const std::filesystem::path& file) override;
    void openUrl(const std::string& url) override;

 private:
    QDBusConnection bus_;
    Opener opener_;
};

}  // namespace trimora::platform
