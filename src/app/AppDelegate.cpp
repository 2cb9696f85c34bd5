#include "app/AppDelegate.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <utility>

#include "app/HelpPages.h"
#include "app/MainWindow.h"
#include "app/WindowController.h"

namespace trimora::app {
namespace {

util::RuntimeClassPtr appDelegateClass() {
    static const util::RuntimeClassPtr record = [] {
        auto made = util::RuntimeClass::create("AppDelegate");
        made->on("new_pressed:", &AppDelegate::new_pressed)
            .on("openPicture:", &AppDelegate::openPicture)
            .on("save_pressed:", &AppDelegate::save_pressed)
            .on("undo_pressed:", &AppDelegate::undo_pressed)
            .on("redo_pressed:", &AppDelegate::redo_pressed)
            .on("showWindowAction:", &AppDelegate::showWindowAction)
            .on("privacyPolicyAction:", &AppDelegate::privacyPolicyAction)
            .on("usageDataAction:", &AppDelegate::usageDataAction)
            .on("keyboardShortcutsAction:", &AppDelegate::keyboardShortcutsAction)
            .on("aboutAction:", &AppDelegate::aboutAction)
            .on("terminate:", &AppDelegate::terminate)
            .on("applicationDidChangeOcclusionState:", &AppDelegate::applicationDidChangeOcclusionState);
        made->overrideSelector(
            "applicationShouldHandleReopen:hasVisibleWindows:", [](auto& self, const auto&) {
                return std::any(
                    static_cast<AppDelegate&>(self).applicationShouldHandleReopen_hasVisibleWindows(false));
            });
        return made;
    }();
    return record;
}

}  // namespace

AppDelegate::AppDelegate(Services services)
    : RuntimeObject(appDelegateClass()), services_(std::move(services)) {}

AppDelegate::~AppDelegate() = default;

// ── What the host tells and asks ───────────────────────────────────────────────────────────────

void AppDelegate::applicationDidFinishLaunching() {
    services_.startConsent();
}

bool AppDelegate::applicationShouldHandleReopen_hasVisibleWindows(bool /*hasVisibleWindows*/) {
    showTheWindow();
    return true;
}

std::unique_ptr<QMenu> AppDelegate::applicationDockMenu() {
    auto menu = std::make_unique<QMenu>();
    dockMenuItem_ = std::make_unique<QAction>(QCoreApplication::translate("AppDelegate", "Show"));
    dockMenuItem_->setCheckable(true);
    dockMenuItem_->setChecked(windowIsVisible());
    QObject::connect(dockMenuItem_.get(), &QAction::triggered, dockMenuItem_.get(),
                     [this] { performSelector("showWindowAction:"); });
    menu->addAction(dockMenuItem_.get());
    return menu;
}

void AppDelegate::applicationDidChangeOcclusionState() {
    if (outlets_.showWindow)
        outlets_.showWindow->setChecked(windowIsVisible());
}

// ── Actions ────────────────────────────────────────────────────────────────────────────────────

void AppDelegate::new_pressed() {
    if (windowIsVisible())
        return forward("askForSave");
    forward("resetState");
    showTheWindow();
}

void AppDelegate::openPicture() {
    if (!windowIsVisible())
        showTheWindow();
    forward("openPicture:");
}

void AppDelegate::save_pressed() {
    forward("save_pressed:");
}

void AppDelegate::undo_pressed() {
    forward("back_pressed:");
}

void AppDelegate::redo_pressed() {
    forward("forward_pressed:");
}

void AppDelegate::showWindowAction() {
    showTheWindow();
}

void AppDelegate::privacyPolicyAction() {
    services_.mainQueue.async(
        [&workspace = services_.workspace, url = services_.privacyUrl()] { workspace.openUrl(url); });
}

void AppDelegate::usageDataAction() {
    services_.showUsageData();
}

void AppDelegate::keyboardShortcutsAction() {
    if (windowVideo_ != nullptr)
        showShortcutPage(*windowVideo_);
}

void AppDelegate::aboutAction() {
    if (windowVideo_ != nullptr)
        showAboutPage(*windowVideo_);
}

void AppDelegate::terminate() {
    const auto* const controller = windowVideo_ != nullptr ? windowVideo_->windowController() : nullptr;
    if (controller == nullptr || !controller->hasUnsavedWork())
        return services_.quit();
    showTheWindow();
    forward("askForSaveThen:", foundation::Task(services_.quit));
}

// ── The window ─────────────────────────────────────────────────────────────────────────────────

void AppDelegate::forward(const char* selector, const std::any& argument) {
    if (windowVideo_ != nullptr && windowVideo_->contentViewController() != nullptr)
        windowVideo_->contentViewController()->performSelector(selector, argument);
}

void AppDelegate::showTheWindow() {
    if (windowVideo_ != nullptr)
        windowVideo_->orderFront();
}

bool AppDelegate::windowIsVisible() const {
    return windowVideo_ != nullptr && windowVideo_->isShown();
}

}  // namespace trimora::app
