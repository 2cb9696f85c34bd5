#pragma once

#include <QWidget>
#include <functional>

class QSlider;
class QSpinBox;

namespace trimora::controls {

/// A size as an upright slider with the number under it; either sets the other.
///
/// Whole points, from `smallest` to `largest`. A number that is typed counts once it is committed
/// (Return, or the focus going), after which the field gives the keyboard back. Main thread only.
class SizeControl final : public QWidget {
 public:
    SizeControl(const QString& name, int smallest, int largest, QWidget* parent = nullptr);

    [[nodiscard]] int value() const;

    /// Shows a value, clamped to the range, without calling anybody.
    void showValue(int value);

    /// Called with every value that the person sets.
    void onChange(std::function<void(int)> changed) { changed_ = std::move(changed); }

 private:
    void take(int value);

    QSlider* slider_;
    QSpinBox* number_;
    std::function<void(int)> changed_;
};

}  // namespace trimora::controls
