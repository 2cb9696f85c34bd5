#pragma once

#include <QAction>
#include <functional>
#include <map>

class QMenuBar;
class QWidget;

namespace trimora::app {

/// Everything that the person can ask the window to do by name.
enum class Command {
    openPicture,
    savePicture,
    quit,
    undo,
    redo,
    restoreImage,
    zoomIn,
    zoomOut,
    zoomToFit,
    fullScreen,
    handTool,
    brushTool,
    restoreTool,
    swapBrushes,
    smallerBrush,
    largerBrush,
    transparentBackground,
    colourBackground,
    blurBackground,
    chooseColour,
    keyboardShortcuts,
    about,
};

/// The commands as actions, made from one table: words, keys, symbol, tool tip, and the menu of each.
/// Menus, buttons and keys all share the action, so enabling or checking it shows everywhere.
///
/// Tools and backgrounds are two groups of which one member each is checked. Lives as long as `window`,
/// which owns the actions. Main thread only.
class Commands {
 public:
    /// `run` is called with each command that the person gives.
    Commands(QWidget& window, std::function<void(Command)> run);

    [[nodiscard]] QAction& action(Command command) const { return *actions_.at(command); }
    [[nodiscard]] bool isChecked(Command command) const { return action(command).isChecked(); }
    void setEnabled(Command command, bool enabled) const { action(command).setEnabled(enabled); }
    void check(Command command) const { action(command).setChecked(true); }

    /// Adds the menus of the table to an empty menu bar.
    void fillMenus(QMenuBar& bar) const;

    /// The keys of every command that has some, as lines of a table for people to read.
    [[nodiscard]] static QString shortcutTable();

 private:
    std::map<Command, QAction*> actions_;
};

}  // namespace trimora::app
