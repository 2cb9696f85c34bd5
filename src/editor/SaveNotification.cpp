#include "editor/SaveNotification.h"

#include <QFile>
#include <QUrl>

namespace trimora::editor {

using ports::NotificationActivation;
using ports::UserNotification;

void SaveNotification::showSaveNotification(const std::filesystem::path& file) {
    notifications_.onActivation([this](const UserNotification& answered, NotificationActivation activation) {
        didActivateNotification(answered, activation);
    });
    const QUrl url = QUrl::fromLocalFile(QFile::decodeName(file.c_str()));
    notifications_.post({.title = "Trimora",
                         .subtitle = tr("Save complete").toStdString(),
                         .informativeText = url.toString(QUrl::FullyEncoded).toStdString(),
                         .actionTitle = tr("Open").toStdString()});
}

void SaveNotification::didActivateNotification(const UserNotification& notification,
                                               NotificationActivation activation) {
    if (activation != NotificationActivation::actionButton)
        return;
    const QUrl url(QString::fromStdString(notification.informativeText));
    workspace_.revealFile(QFile::encodeName(url.toLocalFile()).toStdString());
}

}  // namespace trimora::editor
