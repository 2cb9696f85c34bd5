#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>

#include "controls/ControlContext.h"
#include "util/ObjectRuntime.h"

namespace trimora::controls {

class CustomSlider;
class CustomTextField;
class IconView;
class ViewWithSliderTextField;

/// Who hears of a slider with its field. The delegate must also respond to the selector
/// "hideViewWithSizeCursor" (no argument), which comes a moment after the value was let go.
class ViewWithSliderDelegate {
 public:
    /// The person moved the slider or committed a number; `value` is in the control's range.
    virtual void CustomSliderDidChange_withValue(ViewWithSliderTextField& view, double value) = 0;

 protected:
    ~ViewWithSliderDelegate() = default;
};

/// A slider, the number that it stands at as a whole percentage beside it, and an icon.
///
/// Dragging the slider, the wheel, and its keys write the field; typing into the field and committing
/// moves the slider, clamped to the range. Both report to one delegate. The delegate is asked to hide
/// its preview at once when a drag ends, and 1.2 seconds after a committed number (each commit has a
/// wait of its own) or after the last turn of the wheel or key.
///
/// Setting the slider from code writes the field and reports nothing. Main thread only.
class ViewWithSliderTextField final : public QWidget, public util::RuntimeObject {
 public:
    /// What tells one such control from another.
    struct Settings {
        std::int64_t tagView = 0;  ///< which parameter it edits; the delegate knows it by this
        std::int64_t minValue = 0;
        std::int64_t maxValue = 100;
        std::int64_t startValue = 0;
        QIcon imageForSlider;
        QString name;  ///< for tool tips and screen readers: "Brush size"
    };

    ViewWithSliderTextField(Settings settings, const ControlContext& context, QWidget* parent = nullptr);
    ~ViewWithSliderTextField() override;

    /// The delegate is not owned: it outlives this control, or is taken off with null.
    template <typename Delegate>
    void setSliderDelegate(Delegate* delegate) {
        sliderDelegate_ = delegate;
        selectorsOfDelegate_ = delegate;
    }
    void setSliderDelegate(std::nullptr_t) {
        sliderDelegate_ = nullptr;
        selectorsOfDelegate_ = nullptr;
    }

    [[nodiscard]] std::int64_t tagView() const { return settings_.tagView; }
    [[nodiscard]] std::int64_t minValue() const { return settings_.minValue; }
    [[nodiscard]] std::int64_t maxValue() const { return settings_.maxValue; }
    [[nodiscard]] std::int64_t startValue() const { return settings_.startValue; }
    [[nodiscard]] const QIcon& imageForSlider() const { return settings_.imageForSlider; }

    /// The parts; they live as long as this control.
    [[nodiscard]] QWidget& mainView() const { return *mainView_; }
    [[nodiscard]] CustomSlider& sliderClass() const { return *sliderClass_; }
    [[nodiscard]] CustomTextField& textField() const { return *textField_; }
    [[nodiscard]] IconView& imageSlider() const { return *imageSlider_; }

    /// The slider's action: reports its value and writes the field. ("change:")
    void change(const std::any& sender);

    /// Passes the selector on to the delegate.
    void hideViewWithSizeCursor();

 private:
    static util::RuntimeClassPtr makeClass();
    void setupNib();
    void setupView();
    void awakeFromNib();
    void takeTypedValue(std::int64_t value);
    void report();
    void hideLater();

    const Settings settings_;
    const ControlContext context_;
    ViewWithSliderDelegate* sliderDelegate_ = nullptr;
    util::RuntimeObject* selectorsOfDelegate_ = nullptr;
    QWidget* mainView_ = nullptr;
    CustomSlider* sliderClass_ = nullptr;
    CustomTextField* textField_ = nullptr;
    IconView* imageSlider_ = nullptr;
    std::list<std::unique_ptr<foundation::Timer>> hideAfterTyping_;
    std::unique_ptr<foundation::Timer> hideAfterSteps_;
};

}  // namespace trimora::controls
