#pragma once

#include <QCoreApplication>
#include <filesystem>

#include "ports/UserNotifications.h"
#include "ports/Workspace.h"

namespace trimora::editor {

/// Tells the person through the desktop that a result is saved, and shows the file where the person asks
/// for it. Main thread only; both ports live longer.
class SaveNotification {
    Q_DECLARE_TR_FUNCTIONS(SaveNotification)

 public:
    SaveNotification(ports::UserNotifications& notifications, ports::Workspace& workspace)
        : notifications_(notifications), workspace_(workspace) {}
    ~SaveNotification() { notifications_.onActivation({}); }
    SaveNotification(const SaveNotification&) = delete;
    SaveNotification& operator=(const SaveNotification&) = delete;

    /// For a file that is there.
    void showSaveNotification(const std::filesystem::path& file);

 private:
    void didActivateNotification(const ports::UserNotification& notification,
                                 ports::NotificationActivation activation);

    ports::UserNotifications& notifications_;
    ports::Workspace& workspace_;
};

}  // namespace trimora::editor
