#include "platform/DesktopWorkspace.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QStringList>
#include <chrono>
#include <utility>

#include "foundation/Log.h"
#include "platform/ActivationToken.h"
#include "platform/BusCall.h"
#include "platform/FileUri.h"

namespace trimora::platform {

namespace {

const QString kFileManager = QStringLiteral("org.freedesktop.FileManager1");
const QString kPath = QStringLiteral("/org/freedesktop/FileManager1");
constexpr std::chrono::seconds kPatience{20};  // it may have to be started first

void open(const DesktopWorkspace::Opener& opener, const QUrl& url) {
    if (!url.isValid() || url.isRelative() || !opener(url))
        foundation::log::warning("the desktop cannot open %s", qPrintable(url.toString()));
}

}  // namespace

DesktopWorkspace::DesktopWorkspace(QDBusConnection bus)
    : DesktopWorkspace(std::move(bus), &QDesktopServices::openUrl) {}

DesktopWorkspace::DesktopWorkspace(QDBusConnection bus, Opener opener)
    : bus_(std::move(bus)), opener_(std::move(opener)) {}

void DesktopWorkspace::revealFile(const std::filesystem::path& file) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(kFileManager, kPath, kFileManager, QStringLiteral("ShowItems"));
    call << QStringList{fileUri(file)} << QString::fromStdString(activation_token::take());
    const QUrl folder(fileUri(file.parent_path()));
    callOnBus(bus_, call, kPatience, qApp, [folder, opener = opener_](const QDBusMessage& answer) {
        if (answer.type() != QDBusMessage::ReplyMessage)
            open(opener, folder);
    });
}

void DesktopWorkspace::openUrl(const std::string& url) {
    open(opener_, QUrl(QString::fromStdString(url)));
}

}  // namespace trimora::platform
