#pragma once

#include <QAction>
#include <QObject>
#include <filesystem>
#include <functional>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "app/MenuTable.h"

class QAbstractButton;
class QMenu;

namespace trimora::cutengine {
class RKImageCutView;
}

namespace trimora::app {

class AppDelegate;
class MainWindow;
class WindowController;

/// The window's menu bar, made from the table of its rows.
///
/// A row sends its selector to its receiver and knows nothing more of it. Its keys work whether or not
/// a menu is open. Undo, Redo, Restore image and Save are enabled as the toolbar's buttons are. Check
/// marks are read when a menu opens, and again after each command. Rows that need a picture are grey in
/// an open menu while there is none; their keys then come to nothing in the editor. F10 opens the first menu.
///
/// Lives as long as the window, which owns the actions. Main thread only.
class MainMenu {
 public:
    struct Receivers {
        AppDelegate& application;
        WindowController& controller;
        MainWindow& window;
    };
    /// What the menus show of the editor. Each may be missing; what there is works as long as the menu lives.
    struct EditorReadings {
        std::function<const cutengine::RKImageCutView*()> cutView;  ///< asked when a menu opens, not sooner
        std::function<std::vector<std::filesystem::path>()> recentFiles;  ///< newest first
        std::function<void(const std::filesystem::path&)> openRecent;
        std::function<void()> clearRecent;
    };
    /// Buttons whose enabled states menu items share, each with the selector of its row.
    using Mirrored = std::map<std::string_view, QAbstractButton*>;

    MainMenu(const Receivers& receivers, const Mirrored& mirrored);

    void setEditorReadings(EditorReadings readings) { editor_ = std::move(readings); }

    /// The action of the row with this selector; it must exist.
    [[nodiscard]] QAction& item(std::string_view selector) const { return *items_.at(selector); }
    [[nodiscard]] QMenu& recentMenu() const { return *recentMenu_; }

 private:
    QAction* makeItem(const MenuRow& row);
    void perform(const MenuRow& row);
    void menuOpens();
    void menuCloses();
    void readChecks();
    [[nodiscard]] bool isChecked(CheckSource source) const;
    [[nodiscard]] bool hasPicture() const;
    void fillRecentMenu();

    Receivers receivers_;
    QObject listener_;  // the window's menus outlive this object, their calls to it do not
    EditorReadings editor_;
    std::map<std::string_view, QAction*> items_;
    QMenu* recentMenu_ = nullptr;
};

}  // namespace trimora::app
