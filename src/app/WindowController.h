#pragma once

#include <QObject>
#include <QSize>
#include <memory>

#include "editor/EditorToolbar.h"
#include "foundation/Geometry.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Queues.h"
#include "util/ObjectRuntime.h"

class QAbstractButton;

namespace trimora::app {

class AppDelegate;
class MainWindow;
class ToolbarItem;

/// The controller of the editor window: dresses the window, and owns what its toolbar does.
///
/// Toolbar: at first Open (usable), Save (not) and the title, with little room; the history group comes
/// with the first picture ("viewIsNotEmpty"), and all groups get their full room. Back, Forward and
/// Restore image follow the history; Save follows the editor screen, which reaches it by btnSave().
///
/// Buttons reach the editor screen by selector name only: each action goes to the window's content view
/// controller with this controller as the argument. Three of them are logged as usage events first.
///
/// A missing outlet is null, and whatever concerns it does nothing. Main thread only; the window may
/// outlive the controller and then works without.
class WindowController final : public util::RuntimeObject, public editor::EditorToolbar {
 public:
    /// The parts of the toolbar, made by whoever builds it; they live as long as the window.
    struct Outlets {
        ToolbarItem* viewHistory = nullptr;   ///< Back, Forward and Restore image
        ToolbarItem* viewOpenSave = nullptr;  ///< Open and Save
        ToolbarItem* viewTitle = nullptr;     ///< the window's title
        QAbstractButton* btnOpen = nullptr;
        QAbstractButton* btnSave = nullptr;
        QAbstractButton* btnBack = nullptr;
        QAbstractButton* btnForward = nullptr;
        QAbstractButton* btnRestoreImage = nullptr;
    };
    struct Services {
        foundation::SerialQueue& mainQueue;
        foundation::NotificationCenter& notifications;
        AppDelegate& application;
    };

    WindowController(const Services& services, const Outlets& outlets);
    ~WindowController() override;

    [[nodiscard]] const Outlets& outlets() const { return outlets_; }

    /// Stores and dresses the window: black, its title in the toolbar's title item.
    void setWindow(MainWindow* window);
    [[nodiscard]] MainWindow* window() const { return window_; }

    /// The window is loaded: the toolbar takes its first state, and the application gets the window.
    /// Open ends enabled and Save disabled two turns of the main queue later, when the buttons have
    /// been laid out on the screen.
    void windowDidLoad();

    /// Shows the history group and gives all groups their full room; enables nothing.
    void showButton();

    /// Whether Save is on, or was before the toolbar was switched off: something is there to lose.
    [[nodiscard]] bool hasUnsavedWork() const;

    // editor::EditorToolbar
    [[nodiscard]] QAbstractButton* btnSave() override { return outlets_.btnSave; }
    void updateHistoryButtons(const cutengine::RKImageCutView& view) override;

    /// Switches all five buttons off, for whoever covers the whole window; calls do not nest.
    void disableButtons();
    /// Back to the states of before, or to those that the history has reached meanwhile.
    void enableButtons();

    // Actions.
    void open_pressed();
    void save_pressed();
    void back_pressed();
    void forward_pressed();
    void reset_pressed();
    /// The close control of the title: quits the application.
    void close_pressed();
    void performClose();
    void toggleFullScreen();

    /// Where a sheet of the window goes: as proposed, but hanging from the top edge of the content view.
    /// Points of the window, y-up, from its lower left corner; the sheet hangs from the rectangle's y.
    [[nodiscard]] foundation::Rect window_willPositionSheet_usingRect(foundation::Rect proposed) const;

 private:
    struct Room {
        QSize least;
        QSize most;
    };
    struct States {
        bool back = false;
        bool forward = false;
        bool reset = false;
        bool save = false;
        bool open = false;
    };

    void layOutButtons();
    void setButtons(const States& states);
    void forward(const char* selector);

    Services services_;
    Outlets outlets_;
    QObject listener_;  // the buttons outlive this object, their calls to it do not
    MainWindow* window_ = nullptr;
    Room roomOfHistory_;
    Room roomOfOpenSave_;
    Room roomOfTitle_;
    bool disabled_ = false;
    States enabled_;
    foundation::NotificationCenter::Observation viewIsNotEmpty_;
    // Posted work that finds it gone does nothing.
    std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace trimora::app
