#include "editor/EditorPanels.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "controls/ButtonSaveAppearance.h"
#include "controls/ColorPickerView.h"
#include "controls/CustomSlider.h"
#include "controls/CustomViewWithButton.h"
#include "controls/Icons.h"
#include "controls/KrugButton.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/SliderVertical.h"
#include "controls/TopBarButton.h"
#include "controls/ViewWithSliderTextField.h"
#include "cutengine/RKImageCutView.h"
#include "editor/CursorResetView.h"
#include "util/ActionBlock.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
namespace palette = controls::palette;
using controls::ControlContext;
using controls::KrugButton;
using controls::LayerButton;
using controls::ViewWithSliderTextField;
using cutengine::RKImageCutView;

namespace {

// What the size controls start with: the cut view's own brush, and a broad one to bring back with.
constexpr int kEraserStart = 20;
constexpr int kInvertStart = 70;

QString tr(const char* text) {
    return QCoreApplication::translate("EditorPanels", text);
}

/// What a button is for the person: its name for assistive technology, and its tool tip with the key.
struct Words {
    const char* name;
    QString key = {};
};

void setWords(QWidget& control, const Words& words) {
    const QString name = tr(words.name);
    control.setAccessibleName(name);
    control.setToolTip(words.key.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, words.key));
}

template <typename View>
View* named(View* view, const char* name) {
    view->setObjectName(QString::fromLatin1(name));
    return view;
}

template <typename Button>
Button* makeButton(const ControlContext& context, const char* outlet, const char* image, const Words& words) {
    auto* const button = named(new Button(context), outlet);
    button->setImage(QString::fromLatin1(image));
    setWords(*button, words);
    return button;
}

/// One of a few buttons of which one is on: assistive technology hears which.
template <typename Button>
Button* makeChoice(const ControlContext& context, const char* outlet, const char* image, const Words& words) {
    Button* const button = makeButton<Button>(context, outlet, image, words);
    button->setCheckable(true);
    button->setAutoExclusive(true);
    return button;
}

QLabel* makeCaption(const QString& text) {
    auto* const caption = named(new QLabel(text), "caption");
    caption->setAlignment(Qt::AlignCenter);
    return caption;
}

/// A column of panel-coloured background; the pointer is an arrow over it.
QWidget* makePanel(const char* outlet, const ControlContext& context, QWidget* parent) {
    auto* const panel = named(new CursorResetView(context.notifications, parent), outlet);
    util::layerBackground(*panel, palette::kPanel);
    return panel;
}

QVBoxLayout* makeColumn(QWidget& panel, int margin) {
    auto* const column = new QVBoxLayout(&panel);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(metrics::kGap);
    return column;
}

/// A button with its name under it.
QVBoxLayout* withCaption(QWidget* button, const QString& text) {
    auto* const column = new QVBoxLayout;
    column->setSpacing(metrics::kGap / 2);
    column->addWidget(button, 0, Qt::AlignHCenter);
    column->addWidget(makeCaption(text));
    return column;
}

struct SizeBox {
    QWidget* box;
    ViewWithSliderTextField* size;
};

SizeBox makeSizeBox(const char* boxOutlet, const char* sizeOutlet, ViewWithSliderTextField::Settings settings,
                    const ControlContext& context) {
    auto* const box = named(new QWidget, boxOutlet);
    util::layerBackground(*box, palette::kRaised);
    QVBoxLayout* const column = makeColumn(*box, metrics::kGap);
    auto* const caption = makeCaption(settings.name);
    caption->setAlignment(Qt::AlignLeft);
    column->addWidget(caption);
    settings.minValue = static_cast<int>(RKImageCutView::kSmallestBrush);
    settings.maxValue = static_cast<int>(RKImageCutView::kLargestBrush);
    auto* const size = named(new ViewWithSliderTextField(std::move(settings), context), sizeOutlet);
    column->addWidget(size);
    return {box, size};
}

QHBoxLayout* makeTools(EditorOutlets& outlets, const ControlContext& context) {
    outlets.btnHandNew = makeChoice<KrugButton>(context, "btnHandNew", "hand_noActive_new",
                                                {QT_TRANSLATE_NOOP("EditorPanels", "Hand"), "H"});
    outlets.btnEraserNew = makeChoice<KrugButton>(context, "btnEraserNew", "eraser_active",
                                                  {QT_TRANSLATE_NOOP("EditorPanels", "Brush"), "B"});
    outlets.btnEraserHistoryNew =
        makeChoice<KrugButton>(context, "btnEraserHistoryNew", "history_brush_noActive_new",
                               {QT_TRANSLATE_NOOP("EditorPanels", "Restore brush"), "R"});
    outlets.btnEraserNew->setChecked(true);
    auto* const row = new QHBoxLayout;
    row->setSpacing(metrics::kGap);
    row->addLayout(withCaption(outlets.btnHandNew, tr("Hand")));
    row->addLayout(withCaption(outlets.btnEraserNew, tr("Brush")));
    row->addLayout(withCaption(outlets.btnEraserHistoryNew, tr("Restore")));
    for (KrugButton* const tool : {outlets.btnHandNew, outlets.btnEraserNew, outlets.btnEraserHistoryNew})
        tool->setFixedSize(metrics::kStripTool, metrics::kStripTool);
    return row;
}

QHBoxLayout* makeModes(EditorOutlets& outlets, const ControlContext& context) {
    using controls::TopBarButton;
    outlets.btnEraserMode =
        makeChoice<TopBarButton>(context, "btnEraserMode", "btnAlphaBack_select",
                                 {QT_TRANSLATE_NOOP("EditorPanels", "Transparent background"), "1"});
    outlets.btnColorMode =
        makeChoice<TopBarButton>(context, "btnColorMode", "btnColorBack_unselect",
                                 {QT_TRANSLATE_NOOP("EditorPanels", "Coloured background"), "2"});
    outlets.btnBlurMode =
        makeChoice<TopBarButton>(context, "btnBlurMode", "btnBlur_unselect",
                                 {QT_TRANSLATE_NOOP("EditorPanels", "Blurred background"), "3"});
    outlets.btnEraserMode->setChecked(true);
    auto* const row = new QHBoxLayout;
    row->setSpacing(metrics::kGap / 2);
    row->addLayout(withCaption(outlets.btnEraserMode, tr("None")));
    row->addLayout(withCaption(outlets.btnColorMode, tr("Colour")));
    row->addLayout(withCaption(outlets.btnBlurMode, tr("Blur")));
    for (LayerButton* const mode : {outlets.btnEraserMode, outlets.btnColorMode, outlets.btnBlurMode}) {
        mode->setFixedSize(metrics::kModeButton, metrics::kModeButton);
        mode->setIconSize({metrics::kModeImage, metrics::kModeImage});
    }
    return row;
}

/// The room in which Save slides; the screen places the button in it.
QWidget* makeSaveRoom(EditorOutlets& outlets, const ControlContext& context) {
    auto* const room = named(new QWidget, "savePictureFromRightPanel");
    room->setFixedHeight(metrics::kCallHeight);
    auto* const save = named(new controls::ButtonSaveAppearance(context, room), "btnSave");
    save->setText(tr("Save"));
    setWords(*save, {QT_TRANSLATE_NOOP("EditorPanels", "Save the result"), "Ctrl+S"});
    save->setEnabled(false);
    outlets.savePictureFromRightPanel = room;
    outlets.btnSave = save;
    return room;
}

KrugButton* makeQuickButton(const ControlContext& context, const char* outlet, const char* image,
                            const char* name) {
    auto* const button = makeButton<KrugButton>(context, outlet, image, {name});
    button->setFixedSize(metrics::kToolButton, metrics::kToolButton);
    button->setIconSize({metrics::kModeIcon, metrics::kModeIcon});
    return button;
}

}  // namespace

void makeToolStrip(EditorOutlets& outlets, const ControlContext& context, QWidget* parent) {
    QWidget* const strip = makePanel("toolStrip", context, parent);
    strip->setFixedWidth(metrics::kToolPanelWidth);
    outlets.toolStrip = strip;
    QVBoxLayout* const column = makeColumn(*strip, metrics::kGap);
    column->addLayout(makeTools(outlets, context));
    column->addSpacing(metrics::kGap);

    const SizeBox eraser = makeSizeBox("eraserViewSettings", "eraserSize",
                                       {.tagView = 1,
                                        .startValue = kEraserStart,
                                        .imageForSlider = controls::icon(QStringLiteral("eraser_noActive")),
                                        .name = tr("Brush size")},
                                       context);
    outlets.eraserViewSettings = eraser.box;
    outlets.eraserSize = eraser.size;
    const SizeBox invert =
        makeSizeBox("invertViewSettings", "invertSize",
                    {.tagView = 2,
                     .startValue = kInvertStart,
                     .imageForSlider = controls::icon(QStringLiteral("history_brush_noActive_new")),
                     .name = tr("Restore brush size")},
                    context);
    outlets.invertViewSettings = invert.box;
    outlets.invertSize = invert.size;
    invert.box->hide();
    column->addWidget(eraser.box);
    column->addWidget(invert.box);
    column->addStretch();
}

void makeRightPanel(EditorOutlets& outlets, const MiniMap::Services& services, QWidget* parent) {
    QWidget* const panel = makePanel("rightPanelWithMode", services.control, parent);
    panel->setFixedWidth(metrics::kRightPanelWidth);
    outlets.rightPanelWithMode = panel;
    QVBoxLayout* const column = makeColumn(*panel, metrics::kPanelMargin);
    column->addWidget(makeCaption(tr("Background")));
    column->addLayout(makeModes(outlets, services.control));

    outlets.colorPickerView = named(new controls::ColorPickerView(services.control), "colorPickerView");
    outlets.colorPickerView->hide();
    column->addSpacing(metrics::kGap);
    column->addWidget(outlets.colorPickerView, 0, Qt::AlignHCenter);
    column->addStretch();

    outlets.miniMap = named(new MiniMap(services), "miniMap");
    column->addWidget(outlets.miniMap, 0, Qt::AlignHCenter);
    column->addWidget(makeSaveRoom(outlets, services.control));
}

void makeQuickPanels(EditorOutlets& outlets, const ControlContext& context, QWidget* parent) {
    outlets.viLeftPanelVariant1 = makePanel("viLeftPanelVariant1", context, parent);

    QWidget* const left = makePanel("viLeftPanelVariant2", context, parent);
    outlets.viLeftPanelVariant2 = left;
    outlets.btnBrush2 =
        makeQuickButton(context, "btnBrush2", "brush", QT_TRANSLATE_NOOP("EditorPanels", "Brush or hand"));
    outlets.btnInvertBrush2 = makeQuickButton(context, "btnInvertBrush2", "restore",
                                              QT_TRANSLATE_NOOP("EditorPanels", "Bring back"));
    outlets.btnBlur2 = makeQuickButton(context, "btnBlur2", "blur",
                                       QT_TRANSLATE_NOOP("EditorPanels", "Blurred background on or off"));
    QVBoxLayout* const buttons = makeColumn(*left, metrics::kGap);
    for (KrugButton* const button : {outlets.btnBrush2, outlets.btnInvertBrush2, outlets.btnBlur2})
        buttons->addWidget(button);

    QWidget* const right = makePanel("viRightPanelVariant2", context, parent);
    outlets.viRightPanelVariant2 = right;
    auto* const slider = named(new controls::SliderVertical, "sldBrushDiameter2");
    setWords(*slider, {QT_TRANSLATE_NOOP("EditorPanels", "Brush size")});
    slider->setMaxValue(RKImageCutView::kLargestBrush);
    slider->setMinValue(RKImageCutView::kSmallestBrush);
    slider->setFloatValue(kEraserStart);
    slider->setFixedHeight(metrics::kSliderLength);
    outlets.sldBrushDiameter2 = slider;
    makeColumn(*right, metrics::kPanelMargin)->addWidget(slider, 0, Qt::AlignHCenter);
}

void makeFloatingPanel(EditorOutlets& outlets, const ControlContext& context, QWidget* parent) {
    auto* const floating = named(new controls::CustomViewWithButton(context, parent), "CustomViewWithButton");
    outlets.btnZoomToFit = makeButton<controls::TopBarButton>(
        context, "btnZoomToFit", "zoom_fit", {QT_TRANSLATE_NOOP("EditorPanels", "Fit the picture"), "0"});
    floating->setButton(outlets.btnZoomToFit);
    floating->move(metrics::kFloatingInset, metrics::kFloatingInset);
    outlets.viewWithButton = floating;
}

}  // namespace trimora::editor
