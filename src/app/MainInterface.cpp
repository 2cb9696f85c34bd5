#include "app/MainInterface.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <algorithm>
#include <initializer_list>
#include <utility>

#include "app/MessageLine.h"
#include "app/Toolbar.h"
#include "controls/Metrics.h"
#include "controls/TopBarButton.h"

namespace trimora::app {

namespace metrics = controls::metrics;

namespace {

using Place = ToolbarItem::Place;

enum class Label { symbol, symbolAndText };

/// A button of the toolbar with the words and keys of its command in the menus.
QAbstractButton* makeButton(const controls::ControlContext& context, const char* image,
                            std::string_view selector, Label label) {
    const MenuRow& row = rowFor(selector);
    auto* const button = new controls::TopBarButton(context);
    button->setImage(QString::fromLatin1(image));
    button->setText(label == Label::symbolAndText ? plainTextOf(row) : QString());
    button->setAccessibleName(plainTextOf(row));
    button->setToolTip(tipOf(row));
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return button;
}

QHBoxLayout* makeRow(QWidget* view) {
    auto* const row = new QHBoxLayout(view);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(metrics::kBarGap);
    return row;
}

/// Buttons side by side.
ToolbarItem* addGroup(Toolbar& bar, Place place, std::initializer_list<QAbstractButton*> buttons) {
    auto* const view = new QWidget;
    QHBoxLayout* const row = makeRow(view);
    for (QAbstractButton* button : buttons)
        row->addWidget(button);
    return &bar.addItem(view, place);
}

/// The buttons need their own widths and may have some room beside.
void giveRoom(ToolbarItem& group, QSize least) {
    group.setRoom(least, least + QSize(metrics::kBarGroupRoom, 0));
}

}  // namespace

MainInterface::MainInterface(Services services)
    : context_(services.controls),
      appDelegate_(std::move(services.application)),
      window_(context_, std::move(services.place)),
      outlets_(fillToolbar()),
      windowController_({context_.mainQueue, context_.notifications, appDelegate_}, outlets_),
      menu_({appDelegate_, windowController_, window_}, mirroredButtons()) {
    window_.onOcclusionChange([this] { appDelegate_.applicationDidChangeOcclusionState(); });
}

void MainInterface::setContent(util::RuntimeObject& controller, QWidget* view,
                               MainMenu::EditorReadings readings) {
    window_.setContentViewController(&controller, view);
    menu_.setEditorReadings(std::move(readings));
    if (windowController_.window() == nullptr)
        loadWindow();
}

WindowController::Outlets MainInterface::fillToolbar() {
    Toolbar& bar = window_.toolbar();
    WindowController::Outlets made;
    made.btnOpen = makeButton(context_, "open", "openPicture:", Label::symbolAndText);
    made.btnSave = makeButton(context_, "save", "save_pressed:", Label::symbolAndText);
    made.btnSave->setEnabled(false);  // a picture that is named at the start comes before the first turn
    made.btnBack = makeButton(context_, "back", "undo_pressed:", Label::symbol);
    made.btnForward = makeButton(context_, "forward", "redo_pressed:", Label::symbol);
    made.btnRestoreImage = makeButton(context_, "restoreImage", "reset_pressed:", Label::symbolAndText);
    made.viewOpenSave = addGroup(bar, Place::leading, {made.btnOpen, made.btnSave});
    auto* const title = new QWidget;
    made.viewTitle = &bar.addItem(title, Place::middle);
    made.viewHistory = addGroup(bar, Place::trailing, {made.btnBack, made.btnForward, made.btnRestoreImage});
    return made;
}

void MainInterface::loadWindow() {
    windowController_.setWindow(&window_);
    addCloseControl();
    // Both are measured before either has room: the bar hides buttons for which there is none.
    const QSize openSave = outlets_.viewOpenSave->view().sizeHint();
    const QSize history = outlets_.viewHistory->view().sizeHint();
    giveRoom(*outlets_.viewOpenSave, openSave);
    giveRoom(*outlets_.viewHistory, history);
    outlets_.viewTitle->setRoom({metrics::kTitleLeast, metrics::kBarButton},
                                {metrics::kTitleMost, metrics::kBarButton});
    windowController_.windowDidLoad();
}

MainMenu::Mirrored MainInterface::mirroredButtons() const {
    return {{"save_pressed:", outlets_.btnSave},
            {"undo_pressed:", outlets_.btnBack},
            {"redo_pressed:", outlets_.btnForward},
            {"reset_pressed:", outlets_.btnRestoreImage}};
}

/// Beside the title while the window fills the screen and the desktop shows no frame around it.
void MainInterface::addCloseControl() {
    QWidget& title = outlets_.viewTitle->view();
    auto* const close = new controls::TopBarButton(context_, &title);
    close->setImage(QStringLiteral("close"));
    close->setAccessibleName(QCoreApplication::translate("MainInterface", "Quit"));
    close->setToolTip(tipOf(rowFor("terminate:")));
    close->hide();
    QHBoxLayout* const row = makeRow(&title);
    row->addStretch();
    row->addWidget(close);
    QObject::connect(close, &QAbstractButton::clicked, close,
                     [this] { windowController_.performSelector("close_pressed"); });
    window_.onFullScreenChange([this, close] { close->setVisible(window_.isFullScreen()); });
}

}  // namespace trimora::app
