#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "controls/ColorArea.h"
#include "controls/GradientLayer.h"

class QLineEdit;

namespace trimora::controls {

class TopBarButton;

/// Hears what the colour picker picks. Main thread.
class ColorPickerViewDelegate {
 public:
    virtual ~ColorPickerViewDelegate() = default;
    virtual void ColorPickerDidSelectNSColor(const cutengine::Colour& color) = 0;
};

/// Chooses the colour behind the cut-out: a strip of hues, beside it a field of shades of the chosen hue
/// from black to the full colour with a wash of white, and under them the colour as "#RRGGBB" and an
/// eyedropper.
///
/// The two areas compute nothing: a colour is read back from the painted gradients, at the lower left
/// corner of the marker, so what is shown is what is picked. The markers' places are the choice.
///
/// Reports: every press on an area (with the mouse or an arrow key) reports one colour to the delegate;
/// a pan alone reports none. A press on the strip reports what the shade field still shows of the hue
/// before, because the new shades are put in place by the next task of the main queue; the next press on
/// the field reads the new ones. "clickColor" makes the picker report its present colour again. Every
/// reported colour is opaque.
///
/// A colour that was typed or taken from the picture is reported exactly; the markers go to the nearest
/// place, and it stays the choice until one of them is moved.
///
/// Main thread only.
class ColorPickerView final : public QWidget {
 public:
    /// Takes one colour from elsewhere, the picture say, and hands it over; none when the person gave up.
    /// Calls back at most once, on the main thread, while the picker lives.
    using Eyedropper = std::function<void(std::function<void(std::optional<cutengine::Colour>)> taken)>;

    explicit ColorPickerView(const ControlContext& context, QWidget* parent = nullptr);

    /// Who hears of picked colours; not owned, may be null, and outlives the picker or is taken off it.
    void setColorDelegate(ColorPickerViewDelegate* delegate) { colorDelegate_ = delegate; }

    /// What the eyedropper button starts; without one the button is hidden.
    void setEyedropper(Eyedropper eyedropper);

    /// The colour reported last.
    [[nodiscard]] const cutengine::Colour& selectedColor() const { return selectedColor_; }

    /// Chooses a colour that comes from neither area, and reports it.
    void chooseColor(const cutengine::Colour& color);

    [[nodiscard]] ColorArea& mainColorSelectorView() { return *mainColorSelectorView_; }
    [[nodiscard]] ColorArea& secondColorSelectorView() { return *secondColorSelectorView_; }

    /// Reads the hue under its marker, renews the shades and reports the colour under the other marker.
    void updateStartParametr();

    /// Pans move a marker there, its centre on the place, and no more. Presses move it wholly inside the
    /// area and pick. Places are y-up in the area's own space.
    void mainPickerPanGesture(foundation::Point location);
    void mainPickerPressGesture(foundation::Point location);
    void secondPickerPanGesture(foundation::Point location);
    void secondPickerPressGesture(foundation::Point location);

    /// A gradient over the whole of a view. `direction`: 0 upwards; 1 to the right; 2 from the top left
    /// corner to the middle of the right edge; 3 upwards, all of it within the lower 80 per cent.
    [[nodiscard]] static std::shared_ptr<GradientLayer> gradientLayer(const QWidget& view,
                                                                      std::vector<QColor> colors,
                                                                      int direction);

 private:
    void setupNib();
    void awakeFromNib();
    void startParametr();
    void createMainColorPickerView();
    void updateSecondPickerView(const cutengine::Colour& color);
    void updateBackgroundColor();
    [[nodiscard]] std::shared_ptr<GradientLayer> makeShades(const cutengine::Colour& hue) const;
    void showShades(std::shared_ptr<GradientLayer> shades);
    void commitText();
    void takeFromPicture();

    ControlContext context_;
    ColorPickerViewDelegate* colorDelegate_ = nullptr;
    Eyedropper eyedropper_;
    ColorArea* mainColorSelectorView_ = nullptr;
    ColorArea* secondColorSelectorView_ = nullptr;
    QLineEdit* hexField_ = nullptr;
    TopBarButton* eyedropperButton_ = nullptr;
    cutengine::Colour selectedColor_;
    /// A choice that came from neither area, until a marker is moved.
    std::optional<cutengine::Colour> exactColor_;
    std::shared_ptr<GradientLayer> backLayer_;
    /// The shades that the next task of the main queue puts in place.
    std::shared_ptr<GradientLayer> nextBackLayer_;
    foundation::NotificationCenter::Observation observation_;
};

}  // namespace trimora::controls
