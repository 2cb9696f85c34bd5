#include "platform/QtSettings.h"

#include <QEvent>
#include <QFile>
#include <QStringList>

namespace trimora::platform {
namespace {

QString name(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace

QtSettings::File::File(const QString& name, std::chrono::milliseconds moment)
    : QSettings(name, QSettings::IniFormat) {
    moment_.setSingleShot(true);
    moment_.setInterval(moment);
    QObject::connect(&moment_, &QTimer::timeout, this, [this] {
        QEvent write(QEvent::UpdateRequest);
        QSettings::event(&write);
    });
}

bool QtSettings::File::event(QEvent* event) {
    if (event->type() != QEvent::UpdateRequest)
        return QSettings::event(event);
    moment_.start();
    return true;
}

QtSettings::QtSettings(const std::filesystem::path& file, std::chrono::milliseconds moment)
    : file_(QFile::decodeName(file.c_str()), moment) {}

std::optional<std::string> QtSettings::text(std::string_view key) const {
    const QVariant value = file_.value(name(key));
    if (!value.isValid())
        return std::nullopt;
    return value.toString().toStdString();
}

void QtSettings::setText(std::string_view key, const std::string& text) {
    file_.setValue(name(key), QString::fromStdString(text));
}

std::vector<std::string> QtSettings::list(std::string_view key) const {
    std::vector<std::string> members;
    for (const QString& member : file_.value(name(key)).toStringList())
        members.push_back(member.toStdString());
    return members;
}

void QtSettings::setList(std::string_view key, const std::vector<std::string>& list) {
    QStringList members;
    for (const std::string& member : list)
        members.append(QString::fromStdString(member));
    file_.setValue(name(key), members);
}

}  // namespace trimora::platform
