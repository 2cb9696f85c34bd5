#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>
#include <cstdint>
#include <span>
#include <string_view>

namespace trimora::app {

/// Who answers to a row's selector.
enum class Receiver : std::uint8_t {
    application,  ///< the application delegate
    window,       ///< the window controller
    editor,       ///< the window's content view controller
    recentFiles,  ///< nobody: the row is the submenu of recent files
};

/// Where a row's check mark comes from, if it has one.
enum class CheckSource : std::uint8_t {
    none,
    windowShown,  ///< set by the application delegate
    fullScreen,
    handTool,
    brushTool,
    restoreBrush,
    transparentBackground,
    colourBackground,
    blurredBackground,
};

/// One line of the menus, and the keys, words and tool tip that its command has anywhere.
struct MenuRow {
    const char* menu;
    const char* text;  ///< with the mnemonic letter marked by &
    const char* keys;  ///< separated by "; "; empty for none
    const char* tip;
    Receiver receiver;
    const char* selector;  ///< no two rows share one
    CheckSource check = CheckSource::none;
    bool opensSection = false;  ///< a line above it
    bool needsPicture = false;  ///< greyed in an open menu while there is no picture
};

/// Every command of the menus: menus from left to right, rows from top to bottom.
[[nodiscard]] std::span<const MenuRow> menuRows();

/// The row with this selector; it must exist.
[[nodiscard]] const MenuRow& rowFor(std::string_view selector);

/// A row's words, keys and tool tip (its first key in brackets after it), in the person's language.
[[nodiscard]] QString menuTitle(const MenuRow& row);
[[nodiscard]] QString textOf(const MenuRow& row);
[[nodiscard]] QString plainTextOf(const MenuRow& row);  ///< without mnemonic and dots
[[nodiscard]] QList<QKeySequence> keysOf(const MenuRow& row);
[[nodiscard]] QString tipOf(const MenuRow& row);

}  // namespace trimora::app
