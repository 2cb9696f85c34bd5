#include "app/WindowController.h"

#include <QAbstractButton>
#include <initializer_list>
#include <utility>

#include "analytics/public/Telemetrix.h"
#include "app/AppDelegate.h"
#include "app/MainWindow.h"
#include "app/ToolbarItem.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "cutengine/RKImageCutView.h"
#include "util/ActionBlock.h"
#include "util/TitleBar.h"

namespace trimora::app {

using analytics::Telemetrix;
using foundation::Rect;

namespace {

constexpr const char* kViewIsNotEmpty = "viewIsNotEmpty";

void updateHistory(util::RuntimeObject& self, const std::any& argument) {
    if (const auto* const view = std::any_cast<cutengine::RKImageCutView*>(&argument))
        static_cast<WindowController&>(self).updateHistoryButtons(**view);
}

util::RuntimeClassPtr windowControllerClass() {
    static const util::RuntimeClassPtr record = [] {
        auto made = util::RuntimeClass::create("WindowController");
        made->on("showButton", &WindowController::showButton)
            .on("disableButtons", &WindowController::disableButtons)
            .on("enableButtons", &WindowController::enableButtons)
            .on("open_pressed:", &WindowController::open_pressed)
            .on("save_pressed:", &WindowController::save_pressed)
            .on("back_pressed:", &WindowController::back_pressed)
            .on("forward_pressed:", &WindowController::forward_pressed)
            .on("reset_pressed:", &WindowController::reset_pressed)
            .on("close_pressed", &WindowController::close_pressed)
            .on("performClose:", &WindowController::performClose)
            .on("toggleFullScreen:", &WindowController::toggleFullScreen);
        made->overrideSelector("updateHistoryButtons:", [](auto& self, const std::any& view) {
            updateHistory(self, view);
            return std::any();
        });
        return made;
    }();
    return record;
}

bool isOn(const QAbstractButton* button) {
    return button != nullptr && button->isEnabled();
}

void setOn(QAbstractButton* button, bool on) {
    if (button != nullptr)
        button->setEnabled(on);
}

void layOutAgain(QAbstractButton* button) {
    if (button == nullptr)
        return;
    button->updateGeometry();
    button->update();
}

QSize leastRoom(const ToolbarItem* item) {
    return item != nullptr ? item->minSize() : QSize();
}

QSize mostRoom(const ToolbarItem* item) {
    return item != nullptr ? item->maxSize() : QSize();
}

void giveRoom(ToolbarItem* item, QSize most) {
    if (item != nullptr)
        item->setMaxSize(most);
}

}  // namespace

WindowController::WindowController(const Services& services, const Outlets& outlets)
    : RuntimeObject(windowControllerClass()), services_(services), outlets_(outlets) {
    const std::initializer_list<std::pair<QAbstractButton*, const char*>> actions = {
        {outlets_.btnOpen, "open_pressed:"},          {outlets_.btnSave, "save_pressed:"},
        {outlets_.btnBack, "back_pressed:"},          {outlets_.btnForward, "forward_pressed:"},
        {outlets_.btnRestoreImage, "reset_pressed:"},
    };
    for (const auto& [button, selector] : actions) {
        if (button != nullptr)
            QObject::connect(button, &QAbstractButton::clicked, &listener_,
                             [this, selector = selector] { performSelector(selector); });
    }
}

WindowController::~WindowController() {
    if (window_ != nullptr && window_->windowController() == this)
        window_->setWindowController(nullptr);
}

// ── The window is loaded ───────────────────────────────────────────────────────────────────────

void WindowController::setWindow(MainWindow* window) {
    window_ = window;
    if (window_ == nullptr)
        return;
    window_->setWindowController(this);
    util::setBackgroundColor(*window_, controls::palette::kWindow);
    if (outlets_.viewTitle != nullptr)
        util::setTitleColor(outlets_.viewTitle->view(), controls::palette::kText);
}

void WindowController::windowDidLoad() {
    for (QAbstractButton* button : {outlets_.btnOpen, outlets_.btnSave}) {
        if (button == nullptr)
            continue;
        QFont font = button->font();
        font.setPointSizeF(controls::metrics::kSmallFont);
        button->setFont(font);
    }
    roomOfHistory_ = {leastRoom(outlets_.viewHistory), mostRoom(outlets_.viewHistory)};
    roomOfOpenSave_ = {leastRoom(outlets_.viewOpenSave), mostRoom(outlets_.viewOpenSave)};
    roomOfTitle_ = {leastRoom(outlets_.viewTitle), mostRoom(outlets_.viewTitle)};
    services_.mainQueue.async([this, alive = std::weak_ptr(alive_)] {
        if (alive.expired())
            return;
        setOn(outlets_.btnSave, false);
        layOutButtons();
        services_.mainQueue.async([this, alive] {
            if (alive.expired())
                return;
            layOutButtons();
            setOn(outlets_.btnOpen, true);
        });
    });
    giveRoom(outlets_.viewHistory, roomOfHistory_.least);
    giveRoom(outlets_.viewOpenSave, roomOfOpenSave_.least);
    giveRoom(outlets_.viewTitle, roomOfTitle_.least);
    for (QAbstractButton* button : {outlets_.btnBack, outlets_.btnForward, outlets_.btnRestoreImage})
        setOn(button, false);
    if (outlets_.viewHistory != nullptr)
        outlets_.viewHistory->view().hide();
    viewIsNotEmpty_ = services_.notifications.observe(kViewIsNotEmpty, [this](const auto&) { showButton(); });
    services_.application.setWindowVideo(window_);
}

void WindowController::layOutButtons() {
    layOutAgain(outlets_.btnOpen);
    layOutAgain(outlets_.btnSave);
}

void WindowController::showButton() {
    if (outlets_.viewHistory != nullptr)
        outlets_.viewHistory->view().show();
    giveRoom(outlets_.viewHistory, roomOfHistory_.most);
    giveRoom(outlets_.viewOpenSave, roomOfOpenSave_.most);
    giveRoom(outlets_.viewTitle, roomOfTitle_.most);
}

// ── Enabled states ─────────────────────────────────────────────────────────────────────────────

bool WindowController::hasUnsavedWork() const {
    return disabled_ ? enabled_.save : isOn(outlets_.btnSave);
}

void WindowController::updateHistoryButtons(const cutengine::RKImageCutView& view) {
    enabled_.back = view.historyCurrentState() != 0;
    enabled_.forward = view.historyCurrentState() < view.historyLength() - 1;
    enabled_.reset = view.historyLength() >= 2;
    setOn(outlets_.btnBack, enabled_.back);
    setOn(outlets_.btnForward, enabled_.forward);
    setOn(outlets_.btnRestoreImage, enabled_.reset);
}

void WindowController::disableButtons() {
    if (!std::exchange(disabled_, true))
        enabled_ = {.back = isOn(outlets_.btnBack),
                    .forward = isOn(outlets_.btnForward),
                    .reset = isOn(outlets_.btnRestoreImage),
                    .save = isOn(outlets_.btnSave),
                    .open = isOn(outlets_.btnOpen)};
    setButtons({});
}

void WindowController::enableButtons() {
    if (std::exchange(disabled_, false))
        setButtons(enabled_);
}

void WindowController::setButtons(const States& states) {
    setOn(outlets_.btnBack, states.back);
    setOn(outlets_.btnForward, states.forward);
    setOn(outlets_.btnRestoreImage, states.reset);
    setOn(outlets_.btnSave, states.save);
    setOn(outlets_.btnOpen, states.open);
}

// ── Actions ────────────────────────────────────────────────────────────────────────────────────

void WindowController::open_pressed() {
    Telemetrix::logEvent("button open pressed");
    forward("open_pressed:");
}

void WindowController::save_pressed() {
    Telemetrix::logEvent("button Save pressed: toolbar");
    forward("save_pressed:");
}

void WindowController::back_pressed() {
    forward("back_pressed:");
}

void WindowController::forward_pressed() {
    forward("forward_pressed:");
}

void WindowController::reset_pressed() {
    Telemetrix::logEvent("button restoreImage pressed: toolbar");
    forward("reset_pressed:");
}

void WindowController::close_pressed() {
    services_.application.terminate();
}

void WindowController::performClose() {
    if (window_ != nullptr)
        window_->close();
}

void WindowController::toggleFullScreen() {
    if (window_ != nullptr)
        window_->toggleFullScreen();
}

void WindowController::forward(const char* selector) {
    if (window_ != nullptr && window_->contentViewController() != nullptr)
        window_->contentViewController()->performSelector(selector, static_cast<RuntimeObject*>(this));
}

Rect WindowController::window_willPositionSheet_usingRect(Rect proposed) const {
    const QWidget* const content = window_ != nullptr ? window_->contentView() : nullptr;
    proposed.y = content != nullptr ? content->height() : 0;
    return proposed;
}

}  // namespace trimora::app
