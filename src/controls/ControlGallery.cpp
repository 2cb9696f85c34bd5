#include "controls/ControlGallery.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <array>
#include <utility>

#include "controls/AnimatedGradientButton.h"
#include "controls/ButtonAppearance.h"
#include "controls/ButtonOpenAppereance.h"
#include "controls/ButtonSaveAppearance.h"
#include "controls/ColorPickerView.h"
#include "controls/GradientButton.h"
#include "controls/KrugButton.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/PolukrugButton.h"
#include "controls/ScaleButton.h"
#include "controls/SelectableView.h"
#include "controls/TopBarButton.h"

namespace trimora::controls {
namespace {

void showHovered(LayerButton& button) {
    const QPointF inside(button.width() / 2.0, button.height() / 2.0);
    QMouseEvent move(QEvent::MouseMove, inside, button.mapToGlobal(inside), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&button, &move);
}

void showHeld(LayerButton& button) {
    button.setDown(true);
    emit button.pressed();
}

void showFocused(LayerButton& button) {
    QFocusEvent arrival(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&button, &arrival);
}

struct State {
    const char* name;
    void (*putOn)(LayerButton&);
};

constexpr std::array<State, 5> kStates{{
    {"rest", [](LayerButton&) {}},
    {"pointer", showHovered},
    {"held", showHeld},
    {"keyboard", showFocused},
    {"disabled", [](LayerButton& button) { button.setEnabled(false); }},
}};

/// One button of a kind for each state.
template <typename Button>
std::vector<LayerButton*> makeButtons(const ControlContext& context, const char* text,
                                      const char* image = nullptr) {
    std::vector<LayerButton*> made;
    for (std::size_t i = 0; i < kStates.size(); ++i) {
        auto* const button = new Button(context);
        button->setText(QString::fromLatin1(text));
        if (image != nullptr)
            button->setImage(QString::fromLatin1(image));
        if constexpr (std::is_same_v<Button, AnimatedGradientButton>)
            button->startAnimation();
        made.push_back(button);
    }
    return made;
}

}  // namespace

ControlGallery::ControlGallery(const ControlContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    setAutoFillBackground(true);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, palette::kPanel);
    colors.setColor(QPalette::WindowText, palette::kSecondaryText);
    setPalette(colors);

    auto* const grid = new QGridLayout(this);
    grid->setSpacing(2 * metrics::kGap);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    for (std::size_t i = 0; i < kStates.size(); ++i)
        grid->addWidget(new QLabel(QString::fromLatin1(kStates[i].name)), 0, static_cast<int>(i) + 1,
                        Qt::AlignCenter);

    addRow({"KrugButton", makeButtons<KrugButton>(context, "", "hand_noActive_new")});
    addRow({"KrugButton, active", makeButtons<KrugButton>(context, "", "hand_active_new")});
    addRow({"ButtonAppearance", makeButtons<ButtonAppearance>(context, "", "eraser_noActive")});
    addRow({"PolukrugButton", makeButtons<PolukrugButton>(context, "Cut")});
    addRow({"PolukrugButton, inverted", makeButtons<PolukrugButton>(context, "Cut out")});
    for (LayerButton* const button : rows_.back().buttons)
        static_cast<PolukrugButton*>(button)->invert();
    addRow({"ButtonOpenAppereance", makeButtons<ButtonOpenAppereance>(context, "Open picture")});
    addRow({"ButtonSaveAppearance", makeButtons<ButtonSaveAppearance>(context, "Save")});
    addRow({"ScaleButton", makeButtons<ScaleButton>(context, "Open", "open")});
    addRow({"TopBarButton", makeButtons<TopBarButton>(context, "Save", "save")});
    addRow({"TopBarButton, image", makeButtons<TopBarButton>(context, "", "back")});
    addRow({"GradientButton", makeButtons<GradientButton>(context, "Don't save")});
    addRow({"AnimatedGradientButton", makeButtons<AnimatedGradientButton>(context, "Try it")});
    addOthers();
}

ControlGallery::~ControlGallery() = default;

void ControlGallery::addRow(Row row) {
    auto* const grid = static_cast<QGridLayout*>(layout());
    const int line = static_cast<int>(rows_.size()) + 1;
    grid->addWidget(new QLabel(row.name), line, 0);
    for (std::size_t i = 0; i < row.buttons.size(); ++i) {
        row.buttons[i]->setAccessibleName(row.name);
        grid->addWidget(row.buttons[i], line, static_cast<int>(i) + 1, Qt::AlignCenter);
    }
    rows_.push_back(std::move(row));
}

void ControlGallery::addOthers() {
    auto* const grid = static_cast<QGridLayout*>(layout());
    const int column = static_cast<int>(kStates.size()) + 1;
    auto* const picker = new ColorPickerView(context_);
    picker->setEyedropper([](const auto&) {});
    grid->addWidget(picker, 1, column, 4, 1, Qt::AlignTop);
    for (const bool selected : {false, true}) {
        auto* const tile = new SelectableView(context_);
        tile->setFixedSize(metrics::kToolButton, metrics::kToolButton);
        tile->setColor(palette::kRaised);
        tile->setCornerRadius(metrics::kCornerRadius);
        tile->setSelected(selected);
        grid->addWidget(tile, selected ? 6 : 5, column);
    }
}

void ControlGallery::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    for (const Row& row : rows_) {
        for (std::size_t i = 0; i < row.buttons.size(); ++i)
            kStates[i].putOn(*row.buttons[i]);
    }
}

}  // namespace trimora::controls
