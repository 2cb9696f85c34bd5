#pragma once

#include <QImage>
#include <QWidget>

namespace trimora::util {

/// An image that fills a view: scaled with its proportions kept until it covers the bounds, centred,
/// and cut where it reaches over. Takes no part in mouse events.
class FillingImage final : public QWidget {
 public:
    FillingImage(QImage image, QWidget* parent);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QImage image_;
};

}  // namespace trimora::util
