#include "editor/CutViewCursors.h"

#include <QPixmap>
#include <cmath>

#include "util/BitmapImage.h"

namespace trimora::editor {

using cutengine::Cursor;

namespace {

QCursor brushCursor(const Cursor& cursor, double scaleFactor) {
    QPixmap picture = QPixmap::fromImage(util::sharedImage(cursor.picture->view()).copy());
    picture.setDevicePixelRatio(scaleFactor);
    const double fromTop = cursor.shape.side - cursor.shape.hotSpot.y;
    return QCursor(picture, static_cast<int>(std::lround(cursor.shape.hotSpot.x)),
                   static_cast<int>(std::lround(fromTop)));
}

}  // namespace

QCursor toolkitCursor(const Cursor& cursor, double scaleFactor) {
    switch (cursor.kind) {
        case Cursor::Kind::openHand:
            return Qt::OpenHandCursor;
        case Cursor::Kind::closedHand:
            return Qt::ClosedHandCursor;
        case Cursor::Kind::brush:
            if (cursor.picture != nullptr && !cursor.picture->isEmpty())
                return brushCursor(cursor, scaleFactor);
            break;
        case Cursor::Kind::arrow:
            break;
    }
    return Qt::ArrowCursor;
}

}  // namespace trimora::editor
