#include "app/MainMenu.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <string>

#include "app/AppDelegate.h"
#include "app/MainWindow.h"
#include "app/WindowController.h"
#include "cutengine/RKImageCutView.h"

namespace trimora::app {

using cutengine::DragMode;

namespace {

constexpr std::size_t kMostRecent = 10;
constexpr float kRestoringAlpha = 0.5F;  // a brush above it restores

/// Keeps an action as enabled as a button is. Belongs to the action.
class EnabledMirror final : public QObject {
 public:
    EnabledMirror(QAction& action, QAbstractButton& button)
        : QObject(&action), action_(action), button_(button) {
        button.installEventFilter(this);
        action_.setEnabled(button_.isEnabled());
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::EnabledChange)
            action_.setEnabled(button_.isEnabled());
        return QObject::eventFilter(watched, event);
    }

 private:
    QAction& action_;
    QAbstractButton& button_;
};

/// "&1 cat.png": a digit to choose it by, and a name in which no letter is one.
QString recentTitle(std::size_t number, const std::filesystem::path& file) {
    QString name = QFile::decodeName(file.filename().c_str());
    name.replace(u'&', QLatin1String("&&"));
    return QStringLiteral("&%1 %2").arg(number % 10).arg(name);
}

bool showsBackground(const cutengine::RKImageCutView& view) {
    return view.bluredLayer() != nullptr && !view.bluredLayer()->isHidden();
}

}  // namespace

MainMenu::MainMenu(const Receivers& receivers, const Mirrored& mirrored) : receivers_(receivers) {
    QMenuBar& bar = *receivers_.window.menuBar();
    QMenu* menu = nullptr;
    for (const MenuRow& row : menuRows()) {
        if (menu == nullptr || menu->title() != menuTitle(row)) {
            menu = bar.addMenu(menuTitle(row));
            QObject::connect(menu, &QMenu::aboutToShow, &listener_, [this] { menuOpens(); });
            QObject::connect(menu, &QMenu::aboutToHide, &listener_, [this] { menuCloses(); });
        } else if (row.opensSection) {
            menu->addSeparator();
        }
        if (row.receiver == Receiver::recentFiles) {
            recentMenu_ = menu->addMenu(textOf(row));
            QObject::connect(recentMenu_, &QMenu::aboutToShow, &listener_, [this] { fillRecentMenu(); });
        } else {
            menu->addAction(makeItem(row));
        }
    }
    for (const auto& [selector, button] : mirrored)
        new EnabledMirror(item(selector), *button);
    // Alt by itself does not open the menus: it sizes the brush.
    auto* const opensMenus = new QShortcut(Qt::Key_F10, &receivers_.window);
    QObject::connect(opensMenus, &QShortcut::activated, &listener_,
                     [&bar] { bar.setActiveAction(bar.actions().front()); });
    receivers_.application.setOutlets({.showWindow = &item("showWindowAction:"),
                                       .mUndo = &item("undo_pressed:"),
                                       .mRedo = &item("redo_pressed:"),
                                       .mNew = &item("new_pressed:")});
}

QAction* MainMenu::makeItem(const MenuRow& row) {
    auto* const made = new QAction(textOf(row), &receivers_.window);
    made->setShortcuts(keysOf(row));
    made->setToolTip(tipOf(row));
    made->setCheckable(row.check != CheckSource::none);
    QObject::connect(made, &QAction::triggered, &listener_, [this, &row] { perform(row); });
    receivers_.window.addAction(made);
    items_.emplace(row.selector, made);
    return made;
}

void MainMenu::perform(const MenuRow& row) {
    if (row.check == CheckSource::windowShown)
        item(row.selector).toggle();  // back to what the delegate has set; a press changes nothing
    switch (row.receiver) {
        case Receiver::application:
            receivers_.application.performSelector(row.selector);
            break;
        case Receiver::window:
            receivers_.controller.performSelector(row.selector);
            break;
        case Receiver::editor:
            if (auto* const editor = receivers_.window.contentViewController())
                editor->performSelector(row.selector);
            break;
        case Receiver::recentFiles:
            break;
    }
    readChecks();
}

// ── States ─────────────────────────────────────────────────────────────────────────────────────

void MainMenu::menuOpens() {
    readChecks();
    for (const MenuRow& row : menuRows()) {
        if (row.needsPicture)
            item(row.selector).setEnabled(hasPicture());
    }
    if (editor_.recentFiles)
        recentMenu_->setEnabled(!editor_.recentFiles().empty());
}

void MainMenu::menuCloses() {
    // A picture may come before the next menu opens, and the keys are to work then.
    for (const MenuRow& row : menuRows()) {
        if (row.needsPicture)
            item(row.selector).setEnabled(true);
    }
}

void MainMenu::readChecks() {
    for (const MenuRow& row : menuRows()) {
        if (row.check != CheckSource::none && row.check != CheckSource::windowShown)
            item(row.selector).setChecked(isChecked(row.check));
    }
}

bool MainMenu::isChecked(CheckSource source) const {
    if (source == CheckSource::fullScreen)
        return receivers_.window.isFullScreen();
    if (!editor_.cutView)
        return false;
    const cutengine::RKImageCutView& view = *editor_.cutView();
    const bool paints = view.dragMode() == DragMode::paint;
    const bool restores = view.brushAlphaValue() > kRestoringAlpha;
    switch (source) {
        case CheckSource::handTool:
            return !paints;
        case CheckSource::brushTool:
            return paints && !restores;
        case CheckSource::restoreBrush:
            return paints && restores;
        case CheckSource::transparentBackground:
            return !showsBackground(view);
        case CheckSource::colourBackground:
            return showsBackground(view) && !view.isBlurOn();
        case CheckSource::blurredBackground:
            return showsBackground(view) && view.isBlurOn();
        default:
            return false;
    }
}

bool MainMenu::hasPicture() const {
    return editor_.cutView && editor_.cutView()->image() != nullptr;
}

// ── Recent files ───────────────────────────────────────────────────────────────────────────────

void MainMenu::fillRecentMenu() {
    recentMenu_->clear();
    if (!editor_.recentFiles)
        return;
    std::size_t number = 0;
    for (const std::filesystem::path& file : editor_.recentFiles()) {
        if (number == kMostRecent)
            break;
        QAction* const entry = recentMenu_->addAction(recentTitle(++number, file));
        entry->setToolTip(QFile::decodeName(file.c_str()));
        QObject::connect(entry, &QAction::triggered, &listener_, [this, file] { editor_.openRecent(file); });
    }
    if (!editor_.clearRecent)
        return;
    recentMenu_->addSeparator();
    QAction* const clear = recentMenu_->addAction(QCoreApplication::translate("MainMenu", "&Clear list"));
    QObject::connect(clear, &QAction::triggered, &listener_, [this] { editor_.clearRecent(); });
}

}  // namespace trimora::app
