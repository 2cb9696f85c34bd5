#include "controls/ViewWithSliderTextField.h"

#include <QHBoxLayout>

#include "controls/CustomSlider.h"
#include "controls/CustomTextField.h"
#include "controls/IconView.h"
#include "controls/Metrics.h"
#include "foundation/Log.h"

namespace trimora::controls {
namespace {

constexpr const char* kChange = "change:";
constexpr const char* kHide = "hideViewWithSizeCursor";
constexpr double kHideDelay = 1.2;  // seconds

}  // namespace

util::RuntimeClassPtr ViewWithSliderTextField::makeClass() {
    static const util::RuntimeClassPtr record = [] {
        util::RuntimeClassPtr made = util::RuntimeClass::create("ViewWithSliderTextField");
        made->on(kChange, &ViewWithSliderTextField::change)
            .on(kHide, &ViewWithSliderTextField::hideViewWithSizeCursor);
        return made;
    }();
    return record;
}

ViewWithSliderTextField::ViewWithSliderTextField(Settings settings, const ControlContext& context,
                                                 QWidget* parent)
    : QWidget(parent), RuntimeObject(makeClass()), settings_(std::move(settings)), context_(context) {
    setupNib();
    setupView();
    awakeFromNib();
}

ViewWithSliderTextField::~ViewWithSliderTextField() {
    // The parts are deleted later, as children: what they still send must find nobody.
    sliderClass_->setTarget(nullptr);
    textField_->setValueDidChange({});
}

void ViewWithSliderTextField::setupNib() {
    mainView_ = new QWidget;
    auto* const fill = new QHBoxLayout(this);
    fill->setContentsMargins(0, 0, 0, 0);
    fill->addWidget(mainView_);

    imageSlider_ = new IconView;
    imageSlider_->setFixedSize(metrics::kSliderIcon, metrics::kSliderIcon);
    sliderClass_ = new CustomSlider;
    textField_ = new CustomTextField;
    auto* const row = new QHBoxLayout(mainView_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(metrics::kGap);
    row->addWidget(imageSlider_);
    row->addWidget(sliderClass_);
    row->addWidget(textField_);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusProxy(sliderClass_);
}

void ViewWithSliderTextField::setupView() {
    textField_->setShowMode(QStringLiteral("decimal"));
    textField_->boundWithControl(sliderClass_);
    textField_->setValueDidChange([this](std::int64_t value) { takeTypedValue(value); });
    sliderClass_->setTarget(this);
    sliderClass_->setAction(kChange);
}

void ViewWithSliderTextField::awakeFromNib() {
    sliderClass_->setMaxValue(static_cast<double>(settings_.maxValue));
    sliderClass_->setMinValue(static_cast<double>(settings_.minValue));
    sliderClass_->setFloatValue(static_cast<float>(settings_.startValue));
    textField_->setMin(settings_.minValue);
    textField_->setMax(settings_.maxValue);
    imageSlider_->setImage(settings_.imageForSlider);

    sliderClass_->setToolTip(settings_.name);
    sliderClass_->setAccessibleName(settings_.name);
    textField_->setAccessibleName(QStringLiteral("%1 in percent").arg(settings_.name));
    textField_->setToolTip(QStringLiteral("%1, %2 to %3 percent")
                               .arg(settings_.name)
                               .arg(settings_.minValue)
                               .arg(settings_.maxValue));
}

void ViewWithSliderTextField::report() {
    if (sliderDelegate_ != nullptr)
        sliderDelegate_->CustomSliderDidChange_withValue(*this,
                                                         static_cast<double>(sliderClass_->floatValue()));
}

void ViewWithSliderTextField::change(const std::any& /*sender*/) {
    if (settings_.tagView == 2)
        foundation::log::debug("123234");
    report();
    textField_->setFloatValue(sliderClass_->floatValue());
    // A drag ends when it is let go; keys and wheel end when they rest.
    if (!sliderClass_->isTracking())
        hideAfterSteps_ =
            context_.scheduler.after(kHideDelay, context_.mainQueue, [this] { hideViewWithSizeCursor(); });
}

void ViewWithSliderTextField::takeTypedValue(std::int64_t value) {
    sliderClass_->setFloatValue(static_cast<float>(value));
    report();
    hideLater();
}

void ViewWithSliderTextField::hideLater() {
    const auto timer = hideAfterTyping_.emplace(hideAfterTyping_.end());
    *timer = context_.scheduler.after(kHideDelay, context_.mainQueue, [this, timer] {
        hideAfterTyping_.erase(timer);
        hideViewWithSizeCursor();
    });
}

void ViewWithSliderTextField::hideViewWithSizeCursor() {
    if (selectorsOfDelegate_ != nullptr)
        selectorsOfDelegate_->performSelector(kHide);
}

}  // namespace trimora::controls
