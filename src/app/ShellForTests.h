#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QTest>
#include <any>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "analytics/TelemetrixForTests.h"
#include "app/MainInterface.h"
#include "controls/AppStyle.h"
#include "cutengine/RKImageCutView.h"
#include "editor/CutViewWidget.h"
#include "editor/EditorDoubles.h"

/// The whole shell round an editor screen that only writes down what it is told, on queues and a clock
/// that the test moves.
namespace trimora::app {

/// An editor screen with a real cut view, which keeps the toolbar in step with its history.
class RecordingEditor final : public util::RuntimeObject, private cutengine::RKImageCutViewDelegate {
 public:
    explicit RecordingEditor(const cutengine::RKImageCutView::Services& services)
        : RuntimeObject(util::RuntimeClass::create("RecordingEditor")),
          widget(new editor::CutViewWidget(services)) {
        view().setDelegate(this);
        for (const char* selector : {"openPicture:",
                                     "open_pressed:",
                                     "save_pressed:",
                                     "back_pressed:",
                                     "forward_pressed:",
                                     "reset_pressed:",
                                     "askForSave",
                                     "askForSaveThen:",
                                     "resetState",
                                     "hand_pressed_new:",
                                     "brush_pressed_new:",
                                     "invertBrush_pressed_new:",
                                     "swapBrushes:",
                                     "smallerBrush:",
                                     "largerBrush:",
                                     "chooseEraserMode:",
                                     "chooseColorMode:",
                                     "chooseBlurMode:",
                                     "zoomIn:",
                                     "zoomOut:",
                                     "zoomToFit:",
                                     "actualSize:",
                                     "copy:",
                                     "paste:",
                                     "showInterface",
                                     "hideInterface"})
            runtimeClass()->overrideSelector(selector, [this, selector](auto&, const std::any& argument) {
                told.emplace_back(selector);
                arguments[selector] = argument;
                if (const auto act = acts.find(selector); act != acts.end())
                    act->second();
                return std::any();
            });
    }

    cutengine::RKImageCutView& view() { return widget->view(); }

    editor::CutViewWidget* widget;  ///< the window's, once it is in there
    editor::EditorToolbar* toolbar = nullptr;
    std::vector<std::string> told;
    std::map<std::string, std::any> arguments;          ///< of the last message of each name
    std::map<std::string, std::function<void()>> acts;  ///< what a message does beside being written down

 private:
    void cutViewWillStartDraw(cutengine::RKImageCutView* /*view*/) override {
        toolbar->btnSave()->setEnabled(true);
    }
    void cutViewDidEndDraw(cutengine::RKImageCutView* /*view*/) override {}
    void cutViewDidChangeHistoryState(cutengine::RKImageCutView* changed) override {
        toolbar->updateHistoryButtons(*changed);
    }
    void cutView_didChangeBrushDiameter(cutengine::RKImageCutView* /*view*/, float /*to*/) override {}
    void RectBorderForMiniMap(cutengine::RKImageCutView* /*view*/, float /*SootnX*/, float /*SootnY*/,
                              float /*SizeW*/, float /*SizeH*/) override {}
};

/// Notes what other programs are asked for.
class RecordingWorkspace final : public ports::Workspace {
 public:
    std::vector<std::string> opened;

    void revealFile(const std::filesystem::path& /*file*/) override {}
    void openUrl(const std::string& url) override { opened.push_back(url); }
};

class ShellTest : public analytics::TelemetrixTest {
 protected:
    ShellTest() { controls::applyAppStyle(); }

    void SetUp() override {
        TelemetrixTest::SetUp();
        load();
    }
    void TearDown() override {
        shell_.reset();
        TelemetrixTest::TearDown();
    }

    /// Makes the shell, as at a start of the program.
    void load() {
        shell_.reset();  // keeps its place before the next is made
        shell_ = std::make_unique<MainInterface>(MainInterface::Services{
            {time, time, queues.mainQueue(), notifications},
            {queues.mainQueue(), workspace_, [this] { ++quits_; }, [this] { ++consents_; },
             [] { return std::string("https://policy.invalid/"); }, [this] { ++usageDialogs_; }},
            {[this] { return place_; }, [this](const std::string& place) { place_ = place; }}});
        editor_ = std::make_unique<RecordingEditor>(
            cutengine::RKImageCutView::Services{queues, time, notifications, home.path() / "history"});
        editor_->toolbar = &controller();
        shell_->setContent(*editor_, editor_->widget,
                           {.cutView = [this] { return &editor_->view(); },
                            .recentFiles = {},
                            .openRecent = {},
                            .clearRecent = {}});
    }
    void show() {
        window().orderFront();
        update();
    }
    /// Lets everything that was posted happen.
    void update() {
        settle();
        QCoreApplication::processEvents();
    }
    void openPicture() {
        editor_->view().setImage(editor::plainPicture(400, 300));
        notifications.post("viewIsNotEmpty");
        update();
    }
    void stroke() {
        QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {},
                          editor_->widget->mapTo(&window(), editor_->widget->rect().center()));
        update();
    }
    void press(QKeyCombination key) {
        QTest::keyClick(window().windowHandle(), key.key(), key.keyboardModifiers());
        update();
    }
    void click(const QWidget& target) {
        QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {},
                          target.mapTo(&window(), target.rect().center()));
        update();
    }

    AppDelegate& application() { return shell_->appDelegate(); }
    WindowController& controller() { return shell_->windowController(); }
    MainWindow& window() { return shell_->window(); }
    QAction& item(const char* selector) { return shell_->menu().item(selector); }
    /// The button of the toolbar that is called so.
    QAbstractButton& button(const char* name) {
        for (auto* found : window().findChildren<QAbstractButton*>()) {
            if (found->accessibleName() == name)
                return *found;
        }
        throw std::out_of_range(name);
    }

    RecordingWorkspace workspace_;
    std::string place_;
    int quits_ = 0;
    int consents_ = 0;
    int usageDialogs_ = 0;
    std::unique_ptr<RecordingEditor> editor_;
    std::unique_ptr<MainInterface> shell_;
};

}  // namespace trimora::app
