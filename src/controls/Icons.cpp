#include "controls/Icons.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>

#include "controls/DrawnIcon.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "foundation/Log.h"

namespace trimora::controls {
namespace {

/// The file of the image; nothing for a name that no image has.
QString fileOf(const QString& name) {
    QString file = QStringLiteral(":/images/%1.svg").arg(name);
    if (QFile::exists(file))
        return file;
    foundation::log::error("no image is named %s", qUtf8Printable(name));
    return {};
}

}  // namespace

QIcon icon(const QString& name) {
    return icon(name, name);
}

QIcon icon(const QString& active, const QString& inactive) {
    const QString on = fileOf(active);
    const QString off = active == inactive ? on : fileOf(inactive);
    return on.isEmpty() || off.isEmpty() ? QIcon() : QIcon(new DrawnIcon(off, on));
}

QIcon swatchIcon(const QColor& colour) {
    QIcon made;
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        QPixmap swatch(QSize(metrics::kBarIcon, metrics::kBarIcon) * scale);
        swatch.setDevicePixelRatio(scale);
        swatch.fill(palette::kFrame);
        QPainter(&swatch).fillRect(QRect(1, 1, metrics::kBarIcon - 2, metrics::kBarIcon - 2), colour);
        made.addPixmap(swatch);
    }
    return made;
}

}  // namespace trimora::controls
