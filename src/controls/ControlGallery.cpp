#include "controls/ControlGallery.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <utility>

#include "controls/AnimatedGradientButton.h"
#include "controls/ButtonAppearance.h"
#include "controls/ButtonOpenAppereance.h"
#include "controls/ButtonSaveAppearance.h"
#include "controls/ColorPickerView.h"
#include "controls/ColorableView.h"
#include "controls/ControlNotifications.h"
#include "controls/CustomSlider.h"
#include "controls/CustomViewWithButton.h"
#include "controls/GallerySpecimens.h"
#include "controls/GradientButton.h"
#include "controls/Icons.h"
#include "controls/KrugButton.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/PolukrugButton.h"
#include "controls/ScaleButton.h"
#include "controls/SelectableView.h"
#include "controls/SliderVertical.h"
#include "controls/TopBarButton.h"
#include "controls/ViewWithSliderTextField.h"

namespace trimora::controls {
namespace {

constexpr int kSliderWidth = 176;
constexpr cutengine::Colour kTaken{0, 0.5, 1, 1};  // what the eyedropper takes here

/// The states of what has none, or none but the keyboard.
const GalleryState kRest = kTileStates.front();
const GalleryState kReached{"keyboard", kRest.putOn, [](QWidget& control) { return &control; }};

}  // namespace

ControlGallery::ControlGallery(const ControlContext& context, GalleryReports::Sink report, QWidget* parent)
    : QWidget(parent), context_(context), reports_(context.notifications, std::move(report)) {
    setWindowTitle(tr("Controls"));
    setAutoFillBackground(true);
    auto* const columns = new QHBoxLayout(this);
    columns->setSpacing(4 * metrics::kGap);
    columns->setSizeConstraint(QLayout::SetFixedSize);
    for (void (ControlGallery::*const add)() : {&ControlGallery::addButtons, &ControlGallery::addSliders}) {
        grid_ = new QGridLayout;
        grid_->setHorizontalSpacing(metrics::kGap);
        grid_->setVerticalSpacing(2 * metrics::kGap);
        line_ = 0;
        columns->addLayout(grid_);
        (this->*add)();
        grid_->setRowStretch(line_, 1);
    }
}

ControlGallery::~ControlGallery() {
    // Before the reports, which hold their delegates.
    qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

void ControlGallery::addCaptions(const GalleryStates& states) {
    for (std::size_t i = 0; i < states.size(); ++i) {
        auto* const caption = new QLabel(QString::fromLatin1(states[i].name));
        caption->setObjectName(QStringLiteral("caption"));
        grid_->addWidget(caption, line_, static_cast<int>(i) + 1, Qt::AlignHCenter | Qt::AlignBottom);
    }
    ++line_;
}

void ControlGallery::addTitle(const char* title) {
    grid_->addWidget(new QLabel(QString::fromLatin1(title)), line_, 0);
}

template <typename Control>
void ControlGallery::addCell(const std::string& name, const GalleryState& state, Control* control,
                             int column) {
    control->setAccessibleName(QString::fromStdString(name));
    grid_->addWidget(control, line_, column, Qt::AlignCenter);
    reports_.watch(*control, name);
    cells_.push_back({name, control, &state});
}

template <typename Make>
void ControlGallery::addRow(const char* title, const GalleryStates& states, Make make) {
    addTitle(title);
    for (std::size_t i = 0; i < states.size(); ++i) {
        const std::string name = std::string(title) + ", " + states[i].name;
        addCell(name, states[i], make(name), static_cast<int>(i) + 1);
    }
    ++line_;
}

template <typename Button>
void ControlGallery::addButtonRow(const char* title, const char* text, const char* image) {
    addRow(title, kButtonStates, [&](const std::string& /*name*/) {
        auto* const button = new Button(context_);
        button->setText(QString::fromLatin1(text));
        if (image != nullptr)
            button->setImage(QString::fromLatin1(image));
        if constexpr (std::is_same_v<Button, AnimatedGradientButton>)
            button->startAnimation();
        return button;
    });
}

void ControlGallery::addButtons() {
    addCaptions(kButtonStates);
    addButtonRow<KrugButton>("KrugButton", "", "hand_noActive_new");
    addButtonRow<KrugButton>("KrugButton, active", "", "hand_active_new");
    addButtonRow<ButtonAppearance>("ButtonAppearance", "", "eraser_noActive");
    addButtonRow<ButtonOpenAppereance>("ButtonOpenAppereance", "Open picture");
    addButtonRow<ButtonSaveAppearance>("ButtonSaveAppearance", "Save");
    addButtonRow<ScaleButton>("ScaleButton", "Open", "open");
    addButtonRow<TopBarButton>("TopBarButton", "Save", "save");
    addButtonRow<TopBarButton>("TopBarButton, image", "", "back");
    addButtonRow<GradientButton>("GradientButton", "Don't save");
    addButtonRow<AnimatedGradientButton>("AnimatedGradientButton", "Try it");
    addCaptions(kTileStates);
    addRow("SelectableView", kTileStates, [this](const std::string& /*name*/) {
        auto* const tile = new SelectableView(context_);
        tile->setFixedSize(metrics::kToolButton, metrics::kToolButton);
        tile->setColor(palette::kRaised);
        tile->setCornerRadius(metrics::kCornerRadius);
        return tile;
    });
    addOthers();
}

void ControlGallery::addOthers() {
    addTitle("ColorableView, text cell, panel");
    auto* const colored = new ColorableView;
    colored->setFixedSize(metrics::kToolButton, metrics::kToolButton);
    colored->setBackgroundColor(palette::kAccent);
    addCell("ColorableView, rest", kRest, static_cast<QWidget*>(colored), 1);
    addCell("Text cell, rest", kRest, static_cast<QWidget*>(new TextCellSpecimen), 2);
    for (const GalleryState* const state : {&kRest, &kReached}) {
        auto* const panel = new CustomViewWithButton(context_);
        auto* const button = new TopBarButton(context_);
        button->setText(QStringLiteral("Fit"));
        panel->setButton(button);
        addCell(std::string("CustomViewWithButton, ") + state->name, *state, panel, state == &kRest ? 3 : 4);
        panel->unHideView();
    }
    ++line_;
}

void ControlGallery::addHalfDiscs() {
    addCaptions(kButtonStates);
    addButtonRow<PolukrugButton>("PolukrugButton", "Cut");
    addRow("PolukrugButton, inverted", kButtonStates, [this](const std::string& /*name*/) {
        auto* const button = new PolukrugButton(context_);
        button->setText(QStringLiteral("Cut out"));
        button->invert();
        return button;
    });
}

void ControlGallery::addSliders() {
    addHalfDiscs();
    addCaptions(kSliderWithFieldStates);
    addRow("ViewWithSliderTextField", kSliderWithFieldStates, [this](const std::string& name) {
        auto* const slider = new ViewWithSliderTextField(
            {0, 1, 100, 45, icon(QStringLiteral("eraser_noActive")), QString::fromStdString(name)}, context_);
        slider->setFixedWidth(kSliderWidth);
        return slider;
    });
    addCaptions(kUprightSliderStates);
    addRow("SliderVertical", kUprightSliderStates, [](const std::string& /*name*/) {
        auto* const slider = new SliderVertical;
        slider->setFixedSize(slider->minimumSizeHint());
        slider->setMaxValue(100);
        slider->setMinValue(1);
        slider->setFloatValue(45);
        return slider;
    });
    addColors();
}

void ControlGallery::addColors() {
    addCaptions(kColorPickerStates);
    addRow("ColorPickerView", kColorPickerStates, [this](const std::string& /*name*/) {
        auto* const picker = new ColorPickerView(context_);
        picker->setEyedropper([](const auto& taken) { taken(kTaken); });
        return picker;
    });
    addScrollBars();
    addBlockers();
}

void ControlGallery::addScrollBars() {
    addCaptions(kScrollBarStates);
    addRow("KnobScrollBar", kScrollBarStates,
           [](const std::string& /*name*/) { return makeScrollBarSpecimen(); });
}

void ControlGallery::addBlockers() {
    addCaptions(kBlockerStates);
    addTitle("RKBlocker, ButtonBlocker");
    int column = 0;
    const auto add = [&](const std::string& name, auto* control) {
        addCell(name, kBlockerStates[static_cast<std::size_t>(column)], control, column + 1);
        ++column;
    };
    auto* const free = new PanelSpecimen(context_);
    add("RKBlocker, rest", static_cast<QWidget*>(free));
    reports_.watch(free->button(), "RKBlocker, rest");
    auto* const panel = new PanelSpecimen(context_);
    add("RKBlocker, blocked", static_cast<QWidget*>(panel));
    reports_.watch(panel->button(), "RKBlocker, blocked");
    auto* const button = new TopBarButton(context_);
    button->setText(QStringLiteral("Work"));
    add("ButtonBlocker, blocked", button);
    for (const BlockKey key : {BlockKey::first, BlockKey::second}) {
        auto* const giveBack = new TopBarButton(context_);
        giveBack->setText(QStringLiteral("Unblock"));
        add(key == BlockKey::first ? "First key, rest" : "Second key, rest", giveBack);
        connect(giveBack, &QAbstractButton::clicked, this,
                [panel, button, key] { unblockBoth(*panel, *button, key); });
    }
    ++line_;
}

bool ControlGallery::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && !std::exchange(ready_, true))
        inTwoTurns();
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
        reports_.tellHeldKeys();
    return QWidget::event(event);
}

void ControlGallery::inTwoTurns() {
    // The pickers start in a task of theirs, and put their shades in place in another one after it.
    context_.mainQueue.async([self = QPointer(this)] {
        if (self)
            self->context_.mainQueue.async([self] {
                if (self)
                    self->putStatesOn();
            });
    });
}

void ControlGallery::putStatesOn() {
    context_.notifications.post(notifications::kClickColor);  // as when the pickers come into view
    for (Cell& cell : cells_) {
        cell.state->putOn(*cell.widget);
        if (cell.state->keyboardIn != nullptr)
            portray(cell);
    }
    tellPlaces();
}

void ControlGallery::portray(Cell& cell) {
    cell.state->keyboardIn(*cell.widget)->setFocus(Qt::TabFocusReason);
    auto* const portrait = new QLabel;
    portrait->setPixmap(cell.widget->grab());
    portrait->setFixedSize(cell.widget->size());
    delete cell.widget->parentWidget()->layout()->replaceWidget(cell.widget, portrait);
    portrait->show();
    delete std::exchange(cell.widget, portrait);
}

void ControlGallery::tellPlace(const QWidget& widget, const std::string& name) {
    const QRect place(widget.mapTo(this, QPoint()), widget.size());
    const QString line = QStringLiteral("place: %1 %2 %3 %4 ")
                             .arg(place.x())
                             .arg(place.y())
                             .arg(place.width())
                             .arg(place.height());
    reports_.say(line.toStdString() + name);
}

void ControlGallery::tellPlaces() {
    for (const Cell& cell : cells_) {
        if (cell.state->keyboardIn != nullptr)
            continue;
        tellPlace(*cell.widget, cell.name);
        if (const auto* const slider = dynamic_cast<ViewWithSliderTextField*>(cell.widget))
            tellPlace(slider->sliderClass(), cell.name + " / slider");
    }
    reports_.say("ready");
}

}  // namespace trimora::controls
