#include "controls/IconsAhead.h"

#include <QPainter>
#include <QSvgRenderer>
#include <map>
#include <mutex>
#include <tuple>
#include <utility>

namespace trimora::controls {
namespace {

QImage draw(const QString& file, const QSize& size) {
    QSvgRenderer image(file);
    QImage pixels(image.defaultSize().scaled(size, Qt::KeepAspectRatio), QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    image.render(&painter);
    painter.end();
    return pixels;
}

/// On their way from the thread that draws them to the one that shows them.
class Ready {
 public:
    static Ready& images() {
        static Ready ready;
        return ready;
    }

    void put(const QString& file, const QSize& size, QImage image) {
        const std::scoped_lock lock(mutex_);
        images_.insert_or_assign({file, size.width(), size.height()}, std::move(image));
    }

    QImage take(const QString& file, const QSize& size) {
        const std::scoped_lock lock(mutex_);
        const auto taken = images_.extract({file, size.width(), size.height()});
        return taken.empty() ? QImage() : taken.mapped();
    }

 private:
    std::mutex mutex_;
    std::map<std::tuple<QString, int, int>, QImage> images_;
};

}  // namespace

void drawIconsAhead(std::initializer_list<IconInSize> icons, double scale) {
    for (const auto& [name, side] : icons) {
        const QString file = QStringLiteral(":/images/%1.svg").arg(QLatin1String(name));
        const QSize size = (QSizeF(side, side) * scale).toSize();
        Ready::images().put(file, size, draw(file, size));
    }
}

QImage drawnImage(const QString& file, const QSize& size) {
    const QImage ready = Ready::images().take(file, size);
    return ready.isNull() ? draw(file, size) : ready;
}

}  // namespace trimora::controls
