#include "controls/DrawnIcon.h"

#include <QApplication>
#include <QPainter>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>
#include <utility>

#include "controls/IconsAhead.h"

namespace trimora::controls {

DrawnIcon::DrawnIcon(QString off, QString on) : off_(std::move(off)), on_(std::move(on)) {}

QPixmap DrawnIcon::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    if (size.isEmpty())
        return {};
    const QString& file = state == QIcon::On ? on_ : off_;
    const QString key =
        QStringLiteral("%1 %2 %3 %4").arg(file).arg(size.width()).arg(size.height()).arg(mode);
    QPixmap found;
    if (QPixmapCache::find(key, &found))
        return found;
    QStyleOption option;
    option.palette = QGuiApplication::palette();
    found =
        QApplication::style()->generatedIconPixmap(mode, QPixmap::fromImage(drawnImage(file, size)), &option);
    QPixmapCache::insert(key, found);
    return found;
}

void DrawnIcon::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
    const double scale = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state));
}

}  // namespace trimora::controls
