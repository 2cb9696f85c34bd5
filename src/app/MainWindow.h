#pragma once

#include <QMainWindow>
#include <functional>
#include <string>

#include "controls/ControlContext.h"

class QVBoxLayout;

namespace trimora::util {
class RuntimeObject;
}

namespace trimora::app {

class MessageLine;
class Toolbar;
class WindowController;

/// The one window: menu bar, toolbar, the content view controller's view, and a line of messages.
///
/// Closing hides it and changes nothing else; it lives as long as the program and always comes back the
/// same. Its size and place are kept when it goes out of sight, for the next start. Dialogs that belong to it
/// open as sheets: under the toolbar, in the middle. Main thread only.
class MainWindow final : public QMainWindow {
 public:
    /// Where size and place are kept between two runs: a word of letters, digits, "+", "/" and "=".
    /// Nothing, or a word that is not understood, gives a new window's size.
    struct PlaceStore {
        std::function<std::string()> read;
        std::function<void(const std::string&)> write;
    };

    MainWindow(const controls::ControlContext& context, PlaceStore place);
    ~MainWindow() override;

    [[nodiscard]] Toolbar& toolbar() { return *toolbar_; }
    [[nodiscard]] MessageLine& messages() { return *messages_; }

    /// Puts the controller's view under the toolbar and the keyboard into it. The window takes the view
    /// over; the controller outlives the window.
    void setContentViewController(util::RuntimeObject* controller, QWidget* view);
    [[nodiscard]] util::RuntimeObject* contentViewController() const { return contentViewController_; }
    /// Points from the window's upper edge to its content, below the menus and the toolbar.
    [[nodiscard]] int contentTop() const;
    [[nodiscard]] QWidget* contentView() const { return contentView_; }

    /// Borrowed; null while there is none.
    void setWindowController(WindowController* controller) { windowController_ = controller; }
    [[nodiscard]] WindowController* windowController() const { return windowController_; }

    /// Whether a person can see it: neither closed nor minimised.
    [[nodiscard]] bool isShown() const { return isVisible() && !isMinimized(); }

    /// Shows the window before all others, whatever it was before.
    void orderFront();

    void toggleFullScreen();

    /// Called whenever the window may have come into sight or gone out of it.
    void onOcclusionChange(std::function<void()> changed) { occlusionChanged_ = std::move(changed); }
    /// Called when the window fills the screen, and when it no longer does.
    void onFullScreenChange(std::function<void()> changed) { fullScreenChanged_ = std::move(changed); }

 protected:
    void changeEvent(QEvent* event) override;
    void childEvent(QChildEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    void takePlace();
    void keepPlace() const;
    void placeSheet(QWidget& sheet);

    PlaceStore place_;
    Toolbar* toolbar_;
    QVBoxLayout* column_;
    MessageLine* messages_;
    util::RuntimeObject* contentViewController_ = nullptr;
    QWidget* contentView_ = nullptr;
    WindowController* windowController_ = nullptr;
    std::function<void()> occlusionChanged_;
    std::function<void()> fullScreenChanged_;
};

}  // namespace trimora::app
