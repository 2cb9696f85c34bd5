#pragma once

#include <QPointer>
#include <any>
#include <functional>
#include <memory>
#include <string>

#include "foundation/Queues.h"
#include "ports/Workspace.h"
#include "util/ObjectRuntime.h"

class QAction;
class QMenu;

namespace trimora::app {

class MainWindow;

/// The application as its menus, the tray and the desktop see it: routes each command to the editor
/// screen, and shows, hides and ends.
///
/// It knows the editor screen by the names of its actions only, which it sends to the content view
/// controller of the one window, whether or not that window is shown. It has no editing state of its
/// own. Before the window is there, commands come to nothing.
///
/// Closing the window leaves the program running; the program ends by terminate(), which asks first
/// where work would be lost. Main thread only.
class AppDelegate final : public util::RuntimeObject {
 public:
    /// All outlive the delegate.
    struct Services {
        foundation::SerialQueue& mainQueue;
        ports::Workspace& workspace;
        std::function<void()> quit;  ///< ends the event loop
        /// The privacy component.
        std::function<void()> startConsent;
        std::function<std::string()> privacyUrl;
        std::function<void()> showUsageData;
    };

    /// Items of the main menu that belong to the delegate; each may be missing.
    struct Outlets {
        QPointer<QAction> showWindow;  ///< its check mark mirrors whether the window is shown
        QPointer<QAction> mUndo;
        QPointer<QAction> mRedo;
        QPointer<QAction> mNew;
    };

    explicit AppDelegate(Services services);
    ~AppDelegate() override;

    void setOutlets(Outlets outlets) { outlets_ = std::move(outlets); }
    [[nodiscard]] const Outlets& outlets() const { return outlets_; }

    /// The window lives longer than commands come.
    void setWindowVideo(MainWindow* window) { windowVideo_ = window; }
    [[nodiscard]] MainWindow* windowVideo() const { return windowVideo_; }

    // What the host tells and asks.

    /// The event loop is about to run and the window is on its way: consent is seen to, nothing else.
    void applicationDidFinishLaunching();
    [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() const { return false; }
    /// Launched again, or asked for by the desktop: shows the window. Always handled.
    bool applicationShouldHandleReopen_hasVisibleWindows(bool hasVisibleWindows);
    /// The menu of the tray: one item, "Show", checked while the window is shown. A new menu each time,
    /// the caller's own.
    [[nodiscard]] std::unique_ptr<QMenu> applicationDockMenu();
    /// Windows came into sight or went out of it.
    void applicationDidChangeOcclusionState();

    // Actions.

    /// With the window shown the editor asks before it clears; with the window hidden it clears at once
    /// and the window comes.
    void new_pressed();
    void openPicture();
    void save_pressed();
    void undo_pressed();
    void redo_pressed();
    void showWindowAction();
    void privacyPolicyAction();
    void usageDataAction();
    void keyboardShortcutsAction();
    void aboutAction();

    /// Ends the program; where something is there to lose, the editor asks first, and the program ends
    /// when the work is saved or given up.
    void terminate();

 private:
    void forward(const char* selector, const std::any& argument = {});
    void showTheWindow();
    [[nodiscard]] bool windowIsVisible() const;

    Services services_;
    Outlets outlets_;
    MainWindow* windowVideo_ = nullptr;
    std::unique_ptr<QAction> dockMenuItem_;
};

}  // namespace trimora::app
