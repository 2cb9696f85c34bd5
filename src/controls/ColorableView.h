#pragma once

#include <QColor>
#include <QWidget>

namespace trimora::controls {

/// Fills its bounds with one colour.
class ColorableView final : public QWidget {
 public:
    explicit ColorableView(QWidget* parent = nullptr) : QWidget(parent) {}

    [[nodiscard]] const QColor& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(const QColor& color);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QColor backgroundColor_ = Qt::transparent;
};

}  // namespace trimora::controls
