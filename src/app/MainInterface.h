#pragma once

#include "app/AppDelegate.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "app/WindowController.h"
#include "controls/ControlContext.h"

namespace trimora::app {

/// The shell of the program, put together: window, toolbar, menus, and the two controllers that they
/// send their commands to.
///
/// Making it makes the window, without a content: the editor screen needs the toolbar and the line of
/// messages before its view loads. The first setContent() puts it in and loads the window. Nothing is shown
/// until appDelegate().applicationShouldHandleReopen…() or the window's orderFront(). Main thread only.
class MainInterface {
 public:
    struct Services {
        controls::ControlContext controls;
        AppDelegate::Services application;
        MainWindow::PlaceStore place;
    };

    explicit MainInterface(Services services);

    /// Puts the editor screen into the window. The window takes the view over; the controller outlives
    /// this object's last command. Texts are measured here and not before, so that at the start the fonts may
    /// be looked for while window and screen are made.
    void setContent(util::RuntimeObject& controller, QWidget* view, MainMenu::EditorReadings readings);

    [[nodiscard]] AppDelegate& appDelegate() { return appDelegate_; }
    [[nodiscard]] MainWindow& window() { return window_; }
    [[nodiscard]] WindowController& windowController() { return windowController_; }
    [[nodiscard]] const MainMenu& menu() const { return menu_; }
    [[nodiscard]] MessageLine& messages() { return window_.messages(); }

 private:
    [[nodiscard]] WindowController::Outlets fillToolbar();
    void loadWindow();
    [[nodiscard]] MainMenu::Mirrored mirroredButtons() const;
    void addCloseControl();

    controls::ControlContext context_;
    AppDelegate appDelegate_;
    MainWindow window_;
    WindowController::Outlets outlets_;
    WindowController windowController_;
    MainMenu menu_;
};

}  // namespace trimora::app
