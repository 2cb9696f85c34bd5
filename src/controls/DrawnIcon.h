#pragma once

#include <QIconEngine>
#include <QString>

namespace trimora::controls {

/// An icon of one or two drawn images of the program (":/images/….svg"), which reads them when it is first
/// painted: most icons belong to panels that are hidden when the window comes, and reading all of them took a
/// tenth of the time until then.
///
/// What it drew is kept in the toolkit's cache of pixmaps. Main thread only.
class DrawnIcon final : public QIconEngine {
 public:
    /// The files of the images; `on` is drawn where the button or action is checked, `off` elsewhere.
    DrawnIcon(QString off, QString on);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    [[nodiscard]] QIconEngine* clone() const override { return new DrawnIcon(*this); }

 private:
    QString off_;
    QString on_;
};

}  // namespace trimora::controls
