#include "platform/FileUri.h"

#include <QByteArray>

namespace trimora::platform {

QString fileUri(const std::filesystem::path& file) {
    return QStringLiteral("file://") + QString::fromLatin1(QByteArray(file.c_str()).toPercentEncoding("/"));
}

std::optional<std::filesystem::path> fileOfUri(const QString& uri) {
    for (const char* scheme : {"file:///", "file://localhost/"}) {
        const QByteArray prefix(scheme);
        const QByteArray bytes = uri.toUtf8();
        if (!bytes.startsWith(prefix))
            continue;
        const QByteArray name = QByteArray::fromPercentEncoding(bytes.mid(prefix.size() - 1));
        if (name.contains('\0'))
            return std::nullopt;
        return std::filesystem::path(name.toStdString());
    }
    return std::nullopt;
}

}  // namespace trimora::platform
