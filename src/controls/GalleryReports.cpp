#include "controls/GalleryReports.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>
#include <QWidget>
#include <any>
#include <string>
#include <utility>

#include "controls/ColorPickerView.h"
#include "controls/ControlNotifications.h"
#include "controls/CustomTextField.h"
#include "controls/CustomViewWithButton.h"
#include "controls/KrugButton.h"
#include "controls/SelectableView.h"
#include "controls/SliderVertical.h"
#include "controls/ViewWithSliderTextField.h"
#include "util/RKMonitor.h"

namespace trimora::controls {

/// Hears one slider, with a field or without.
class GalleryReports::SliderDelegate final : public ViewWithSliderDelegate, public util::RuntimeObject {
 public:
    SliderDelegate(const GalleryReports& reports, std::string name)
        : RuntimeObject(makeClass()), reports_(reports), name_(std::move(name)) {}

    void CustomSliderDidChange_withValue(ViewWithSliderTextField& /*view*/, double value) override {
        tell(value);
    }

 private:
    static util::RuntimeClassPtr makeClass() {
        static const util::RuntimeClassPtr record = [] {
            util::RuntimeClassPtr made = util::RuntimeClass::create("GallerySliderDelegate");
            made->on("hideViewWithSizeCursor", &SliderDelegate::hideViewWithSizeCursor)
                .on("change:", &SliderDelegate::change);
            return made;
        }();
        return record;
    }
    void hideViewWithSizeCursor() { reports_.say(name_ + ": hide preview"); }
    void change(const std::any& sender) { tell(std::any_cast<util::ValueControl*>(sender)->doubleValue()); }
    void tell(double value) { reports_.say(name_ + ": value " + QString::number(value).toStdString()); }

    const GalleryReports& reports_;
    const std::string name_;
};

class GalleryReports::PickerDelegate final : public ColorPickerViewDelegate {
 public:
    PickerDelegate(const GalleryReports& reports, std::string name)
        : reports_(reports), name_(std::move(name)) {}
    void ColorPickerDidSelectNSColor(const cutengine::Colour& color) override {
        reports_.say(name_ + ": colour " + hexText(color).toStdString());
    }

 private:
    const GalleryReports& reports_;
    const std::string name_;
};

GalleryReports::GalleryReports(foundation::NotificationCenter& notifications, Sink sink)
    : sink_(std::move(sink)) {
    for (const char* const name :
         {notifications::kNeedsCursorUpdate, notifications::kOpenPicture, notifications::kSavePicture})
        observations_.push_back(notifications.observe(
            name, [this, name](const auto&) { say(std::string("notification: ") + name); }));
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget* /*before*/, const QWidget* now) { tellKeyboard(now); });
}

GalleryReports::~GalleryReports() = default;

void GalleryReports::tellKeyboard(const QWidget* now) const {
    for (const QWidget* owner = now; owner != nullptr; owner = owner->parentWidget()) {
        const auto name = names_.find(owner);
        if (name == names_.end())
            continue;
        const std::string part = owner == now ? "" : " / " + now->accessibleName().toStdString();
        say("keyboard: " + name->second + part);
        return;
    }
}

void GalleryReports::tellHeldKeys() const {
    std::string line = "keys:";
    for (const auto& [held, name] : {std::pair(util::RKMonitor::altPressed(), " alt"),
                                     std::pair(util::RKMonitor::cmndPressed(), " cmnd"),
                                     std::pair(util::RKMonitor::ctrlPressed(), " ctrl"),
                                     std::pair(util::RKMonitor::shiftPressed(), " shift")})
        line += held ? name : "";
    say(line);
}

void GalleryReports::watch(QWidget& control, const std::string& name) {
    names_[&control] = name;
}

void GalleryReports::watch(LayerButton& button, const std::string& name) {
    watch(static_cast<QWidget&>(button), name);
    connect(&button, &QAbstractButton::clicked, this, [this, name] { say(name + ": clicked"); });
    if (auto* const withMenu = dynamic_cast<KrugButton*>(&button))
        withMenu->onShowMenu = [this, name](KrugButton&) { say(name + ": menu"); };
}

void GalleryReports::watch(ViewWithSliderTextField& slider, const std::string& name) {
    watch(static_cast<QWidget&>(slider), name);
    slider.setSliderDelegate(sliders_.emplace_back(std::make_unique<SliderDelegate>(*this, name)).get());
    // What the signal carries may have been rewritten already.
    CustomTextField& field = slider.textField();
    connect(&field, &CustomTextField::textChanged, this,
            [this, name, &field] { say(name + ": field " + field.text().toStdString()); });
}

void GalleryReports::watch(SliderVertical& slider, const std::string& name) {
    watch(static_cast<QWidget&>(slider), name);
    slider.setTarget(sliders_.emplace_back(std::make_unique<SliderDelegate>(*this, name)).get());
    slider.setAction("change:");
}

void GalleryReports::watch(QScrollBar& bar, const std::string& name) {
    watch(static_cast<QWidget&>(bar), name);
    connect(&bar, &QScrollBar::valueChanged, this,
            [this, name](int value) { say(name + ": value " + std::to_string(value)); });
}

void GalleryReports::watch(ColorPickerView& picker, const std::string& name) {
    watch(static_cast<QWidget&>(picker), name);
    picker.setColorDelegate(pickers_.emplace_back(std::make_unique<PickerDelegate>(*this, name)).get());
}

void GalleryReports::watch(SelectableView& tile, const std::string& name) {
    watch(static_cast<QWidget&>(tile), name);
    tile.onSelect = [this, name](bool selected) { say(name + (selected ? ": selected" : ": not selected")); };
}

void GalleryReports::watch(CustomViewWithButton& panel, const std::string& name) {
    watch(static_cast<QWidget&>(panel), name);
    panel.installEventFilter(this);
}

bool GalleryReports::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Move)
        say(names_.at(watched) + ": moved");
    return QObject::eventFilter(watched, event);
}

}  // namespace trimora::controls
