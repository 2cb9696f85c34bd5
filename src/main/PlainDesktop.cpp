#include "main/PlainDesktop.h"

#include <QDesktopServices>
#include <QFile>
#include <QUrl>

#include "foundation/Log.h"

namespace trimora {
namespace {

void open(const QUrl& url) {
    if (!QDesktopServices::openUrl(url))
        foundation::log::warning("nothing opens %s", qUtf8Printable(url.toDisplayString()));
}

}  // namespace

void ToolkitWorkspace::revealFile(const std::filesystem::path& file) {
    open(QUrl::fromLocalFile(QFile::decodeName(file.parent_path().c_str())));
}

void ToolkitWorkspace::openUrl(const std::string& url) {
    open(QUrl(QString::fromStdString(url)));
}

void WindowNotifications::post(const ports::UserNotification& notification) {
    const QUrl file(QString::fromStdString(notification.informativeText));
    messages_.note(notification.subtitle + ": " + file.fileName().toStdString());
}

}  // namespace trimora
