#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace trimora::util {

/// A wheel of strokes that turns in the middle of its bounds while it is visible: work of unknown
/// length is being done. Drawn in the palette's text colour. Main thread only.
class SpinningProgress final : public QWidget {
 public:
    explicit SpinningProgress(QWidget* parent = nullptr);

    [[nodiscard]] bool isSpinning() const { return turning_.state() == QAbstractAnimation::Running; }

 protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    QVariantAnimation turning_;  // the number of the brightest stroke
};

}  // namespace trimora::util
