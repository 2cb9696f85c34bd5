#include "controls/Icons.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "foundation/Log.h"

namespace trimora::controls {
namespace {

void addImage(QIcon& icon, const QString& name, QIcon::State state) {
    const QString file = QStringLiteral(":/images/%1.svg").arg(name);
    if (QFile::exists(file))
        icon.addFile(file, {}, QIcon::Normal, state);
    else
        foundation::log::error("no image is named %s", qUtf8Printable(name));
}

}  // namespace

QIcon icon(const QString& name) {
    QIcon made;
    addImage(made, name, QIcon::Off);
    return made;
}

QIcon icon(const QString& active, const QString& inactive) {
    QIcon made;
    addImage(made, inactive, QIcon::Off);
    addImage(made, active, QIcon::On);
    return made;
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
