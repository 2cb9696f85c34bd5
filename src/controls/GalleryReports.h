#pragma once

#include <QObject>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>

#include "foundation/NotificationCenter.h"

class QScrollBar;
class QWidget;

namespace trimora::controls {

class ColorPickerView;
class CustomViewWithButton;
class LayerButton;
class SelectableView;
class SliderVertical;
class ViewWithSliderTextField;

/// Turns what the controls of a gallery report into lines of text: "KrugButton, rest: clicked".
///
/// The words after the name: "clicked", "menu", "value 45", "hide preview", "field 45%" (what a slider's
/// field shows now), "colour #FF0000", "selected", "not selected", "moved". Lines that begin with
/// "notification:" name a broadcast, those with "keyboard:" what has the keyboard now, and the part of it
/// that does, and those with "keys:" the modifier keys that are held.
///
/// Controls that are watched may go first or last: delegates are kept until the reports go, so delete
/// the controls before them. Main thread only.
class GalleryReports final : public QObject {
 public:
    using Sink = std::function<void(const std::string& line)>;

    GalleryReports(foundation::NotificationCenter& notifications, Sink sink);
    ~GalleryReports() override;

    /// Everything that is not one of the controls below reports its keyboard alone.
    void watch(QWidget& control, const std::string& name);
    void watch(LayerButton& button, const std::string& name);
    void watch(ViewWithSliderTextField& slider, const std::string& name);
    void watch(SliderVertical& slider, const std::string& name);
    void watch(QScrollBar& bar, const std::string& name);
    void watch(ColorPickerView& picker, const std::string& name);
    void watch(SelectableView& tile, const std::string& name);
    void watch(CustomViewWithButton& panel, const std::string& name);

    /// To be called for each key that no control takes.
    void tellHeldKeys() const;

    void say(const std::string& line) const {
        if (sink_)
            sink_(line);
    }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    class SliderDelegate;
    class PickerDelegate;

    void tellKeyboard(const QWidget* now) const;

    Sink sink_;
    std::map<const QObject*, std::string> names_;
    std::list<std::unique_ptr<SliderDelegate>> sliders_;
    std::list<std::unique_ptr<PickerDelegate>> pickers_;
    std::list<foundation::NotificationCenter::Observation> observations_;
};

}  // namespace trimora::controls
