#include "controls/ColorPickerView.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPointer>
#include <array>
#include <utility>

#include "controls/ControlNotifications.h"
#include "controls/FieldLook.h"
#include "controls/Metrics.h"
#include "controls/TopBarButton.h"

namespace trimora::controls {

using cutengine::Colour;
using foundation::Point;

namespace {

struct Direction {
    Point start;
    Point end;
};

constexpr std::array<Direction, 4> kDirections{{
    {{0, 0}, {0, 1}},
    {{0, 0.5}, {1, 0.5}},
    {{0, 1}, {1, 0.5}},
    {{0, 0}, {0, 0.8}},
}};

QColor toolkitColor(const Colour& colour) {
    return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                            static_cast<float>(colour.blue), static_cast<float>(colour.alpha));
}

/// The pure colour of the same hue; none for a grey, which has no hue.
std::optional<Colour> pureHue(const Colour& colour) {
    const float hue = toolkitColor(colour).hsvHueF();
    if (hue < 0)
        return std::nullopt;
    const QColor pure = QColor::fromHsvF(hue, 1, 1);
    return Colour{pure.redF(), pure.greenF(), pure.blueF(), 1};
}

Point centreWithOriginAt(const ColorArea& area, Point origin) {
    return {origin.x + area.markerFrame().width / 2, origin.y + area.markerFrame().height / 2};
}

}  // namespace

ColorPickerView::ColorPickerView(const ControlContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    setupNib();
    startParametr();
    awakeFromNib();
}

void ColorPickerView::awakeFromNib() {
    observation_ = context_.notifications.observe(notifications::kClickColor,
                                                  [this](const auto&) { updateStartParametr(); });
    // The start runs once for a picker that was made and once more for one that is complete: it puts a
    // second strip of the same hues over the first, and reports once more.
    startParametr();
}

void ColorPickerView::setupNib() {
    const QSize strip(metrics::kHueStripWidth, metrics::kShadeField);
    const QSize field(metrics::kShadeField, metrics::kShadeField);
    mainColorSelectorView_ = new ColorArea(context_, strip, {strip.width(), metrics::kHueMarker}, this);
    secondColorSelectorView_ =
        new ColorArea(context_, field, {metrics::kShadeMarker, metrics::kShadeMarker}, this);
    hexField_ = new QLineEdit(this);
    eyedropperButton_ = new TopBarButton(context_, this);

    mainColorSelectorView_->setAccessibleName(tr("Hue"));
    mainColorSelectorView_->setToolTip(tr("Hue"));
    secondColorSelectorView_->setAccessibleName(tr("Shade"));
    secondColorSelectorView_->setToolTip(tr("Shade"));
    hexField_->setAccessibleName(tr("Colour as #RRGGBB"));
    giveFieldLook(*hexField_);
    hexField_->setToolTip(tr("Colour as #RRGGBB"));
    hexField_->setMaxLength(7);
    hexField_->setAlignment(Qt::AlignCenter);
    hexField_->setFixedHeight(metrics::kColorField);
    eyedropperButton_->setObjectName(QStringLiteral("eyedropper"));
    eyedropperButton_->setAccessibleName(tr("Take a colour from the picture"));
    eyedropperButton_->setToolTip(tr("Take a colour from the picture"));
    eyedropperButton_->setImage(QStringLiteral("eyedropper"));
    eyedropperButton_->setFixedSize(metrics::kColorField, metrics::kColorField);
    eyedropperButton_->hide();

    auto* const row = new QHBoxLayout;
    row->setSpacing(metrics::kGap / 2);
    row->addWidget(hexField_);
    row->addWidget(eyedropperButton_);
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setSpacing(metrics::kGap);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->addWidget(mainColorSelectorView_, 0, 0);
    grid->addWidget(secondColorSelectorView_, 0, 1);
    grid->addLayout(row, 1, 0, 1, 2);

    mainColorSelectorView_->setMarkerCentre(mainColorSelectorView_->clamped({}));
    secondColorSelectorView_->setMarkerCentre(
        secondColorSelectorView_->clamped({double(metrics::kShadeField), double(metrics::kShadeField)}));
    // Before the first shades are in place the field is painted over with black, not with nothing.
    secondColorSelectorView_->layer().backgroundColor = Qt::black;

    mainColorSelectorView_->onPan = [this](Point p) { mainPickerPanGesture(p); };
    mainColorSelectorView_->onPress = [this](Point p) { mainPickerPressGesture(p); };
    secondColorSelectorView_->onPan = [this](Point p) { secondPickerPanGesture(p); };
    secondColorSelectorView_->onPress = [this](Point p) { secondPickerPressGesture(p); };
    connect(hexField_, &QLineEdit::editingFinished, this, [this] { commitText(); });
    connect(eyedropperButton_, &QAbstractButton::clicked, this, [this] { takeFromPicture(); });
}

void ColorPickerView::startParametr() {
    context_.mainQueue.async([self = QPointer(this)] {
        if (!self)
            return;
        self->mainColorSelectorView_->layer().cornerRadius = metrics::kHueCorner;
        self->secondColorSelectorView_->layer().cornerRadius = metrics::kShadeCorner;
        self->createMainColorPickerView();
        self->updateStartParametr();
    });
}

void ColorPickerView::createMainColorPickerView() {
    mainColorSelectorView_->layer().addSublayer(
        gradientLayer(*mainColorSelectorView_,
                      {Qt::red, Qt::magenta, Qt::blue, Qt::cyan, Qt::green, Qt::yellow, Qt::red}, 0));
    mainColorSelectorView_->update();
}

void ColorPickerView::updateStartParametr() {
    selectedColor_ = mainColorSelectorView_->colorAtMarker();
    updateSecondPickerView(selectedColor_);
}

std::shared_ptr<GradientLayer> ColorPickerView::makeShades(const Colour& hue) const {
    auto shades = gradientLayer(*secondColorSelectorView_, {Qt::black, toolkitColor(hue)}, 3);
    shades->addSublayer(gradientLayer(*secondColorSelectorView_, {Qt::white, Qt::transparent}, 2));
    return shades;
}

void ColorPickerView::updateSecondPickerView(const Colour& color) {
    nextBackLayer_ = makeShades(color);
    context_.mainQueue.async([self = QPointer(this)] {
        if (self && self->nextBackLayer_)
            self->showShades(std::exchange(self->nextBackLayer_, nullptr));
    });
    updateBackgroundColor();
}

void ColorPickerView::showShades(std::shared_ptr<GradientLayer> shades) {
    if (backLayer_)
        backLayer_->removeFromSuperlayer();
    backLayer_ = std::move(shades);
    secondColorSelectorView_->layer().insertSublayer(backLayer_, 0);
    secondColorSelectorView_->update();
}

void ColorPickerView::updateBackgroundColor() {
    selectedColor_ = exactColor_.value_or(secondColorSelectorView_->colorAtMarker());
    hexField_->setText(hexText(selectedColor_));
    if (colorDelegate_ != nullptr)
        colorDelegate_->ColorPickerDidSelectNSColor(selectedColor_);
}

void ColorPickerView::mainPickerPanGesture(Point location) {
    mainColorSelectorView_->setMarkerCentre(location);
}

void ColorPickerView::secondPickerPanGesture(Point location) {
    secondColorSelectorView_->setMarkerCentre(location);
}

void ColorPickerView::mainPickerPressGesture(Point location) {
    exactColor_.reset();
    mainColorSelectorView_->setMarkerCentre(mainColorSelectorView_->clamped(location));
    updateStartParametr();
}

void ColorPickerView::secondPickerPressGesture(Point location) {
    exactColor_.reset();
    secondColorSelectorView_->setMarkerCentre(secondColorSelectorView_->clamped(location));
    updateBackgroundColor();
}

void ColorPickerView::chooseColor(const Colour& color) {
    exactColor_ = Colour{color.red, color.green, color.blue, 1};
    ColorArea& hues = *mainColorSelectorView_;
    if (const auto hue = pureHue(color))
        hues.setMarkerCentre(hues.clamped(centreWithOriginAt(hues, hues.placeOf(*hue))));
    nextBackLayer_.reset();
    showShades(makeShades(hues.colorAtMarker()));
    ColorArea& shades = *secondColorSelectorView_;
    shades.setMarkerCentre(shades.clamped(centreWithOriginAt(shades, shades.placeOf(color))));
    updateBackgroundColor();
}

void ColorPickerView::commitText() {
    const std::optional<Colour> typed = colourOfHexText(hexField_->text());
    if (typed && hexText(*typed) != hexText(selectedColor_))
        chooseColor(*typed);
    else
        hexField_->setText(hexText(selectedColor_));
}

void ColorPickerView::setEyedropper(Eyedropper eyedropper) {
    eyedropper_ = std::move(eyedropper);
    eyedropperButton_->setVisible(eyedropper_ != nullptr);
}

void ColorPickerView::takeFromPicture() {
    eyedropper_([self = QPointer(this)](const std::optional<Colour>& taken) {
        if (self && taken)
            self->chooseColor(*taken);
    });
}

std::shared_ptr<GradientLayer> ColorPickerView::gradientLayer(const QWidget& view, std::vector<QColor> colors,
                                                              int direction) {
    const Direction& line = kDirections.at(static_cast<std::size_t>(direction));
    auto layer = std::make_shared<GradientLayer>();
    layer->setFrame({0, 0, static_cast<double>(view.width()), static_cast<double>(view.height())});
    layer->colors = std::move(colors);
    layer->startPoint = line.start;
    layer->endPoint = line.end;
    return layer;
}

}  // namespace trimora::controls
