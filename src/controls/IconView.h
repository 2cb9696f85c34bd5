#pragma once

#include <QIcon>
#include <QWidget>

namespace trimora::controls {

/// Shows an icon, sharp at every scale.
class IconView final : public QWidget {
 public:
    explicit IconView(QWidget* parent = nullptr);

    void setImage(const QIcon& image);
    [[nodiscard]] const QIcon& image() const { return image_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QIcon image_;
};

}  // namespace trimora::controls
