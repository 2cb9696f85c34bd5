#pragma once

#include <QCoreApplication>
#include <QPushButton>
#include <QTest>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analytics/TelemetrixForTests.h"
#include "controls/KrugButton.h"
#include "editor/CutViewWidget.h"
#include "editor/EditorDoubles.h"
#include "editor/EditorToolbar.h"
#include "editor/ViewController.h"
#include "util/ThreadFlow.h"

namespace trimora::editor {

/// A toolbar that only takes notes. Its Save button is as the window leaves it: off.
class RecordedToolbar final : public EditorToolbar {
 public:
    RecordedToolbar() { save.setEnabled(false); }
    QAbstractButton* btnSave() override { return &save; }
    void updateHistoryButtons(const cutengine::RKImageCutView& view) override {
        states.push_back({view.historyCurrentState(), view.historyLength()});
    }

    QPushButton save;
    std::vector<std::pair<std::int64_t, std::int64_t>> states;  ///< current state and length, as told
};

/// The whole editor screen in a window of 1280 x 784 points, on queues and a clock that the test moves,
/// with files that the decoder knows by name and everything around it in memory.
class EditorScreenTest : public analytics::TelemetrixTest {
 protected:
    void SetUp() override {
        TelemetrixTest::SetUp();
        rememberLaunch();
        decoder_.files["/p/cat.png"] = {600, 400, ""};
        decoder_.files["/p/dog.png"] = {400, 600, ""};
        decoder_.files["/p/wide.png"] = {3000, 1000, ""};
        controller_ = std::make_unique<ViewController>(services());
        controller_->setToolbar(&toolbar_);
        screen().resize(1280, 784);
        screen().show();
        controller_->completeScreen();
        screen().activateWindow();
        rest();
    }
    void TearDown() override {
        controller_.reset();
        TelemetrixTest::TearDown();
    }

    ViewController::Services services() {
        return {.cutView = {queues, time, notifications, home.path() / "history"},
                .scheduler = time,
                .threadFlows = threadFlows_,
                .decoder = decoder_,
                .encoder = encoder_,
                .panels = panels_,
                .settings = settings_,
                .userNotifications = userNotifications_,
                .workspace = workspace_,
                .messages = messages_,
                .caches = home.path() / "caches",
                .randomMicroseconds = [] { return 0; }};
    }

    /// Until nothing is left to do now.
    void rest() {
        queues.settle();
        QCoreApplication::processEvents();
        queues.settle();
    }
    /// So many seconds, and all that becomes due on the way.
    void wait(double seconds) {
        time.advance(seconds, [this] { rest(); });
        rest();
    }

    void send(const char* selector) {
        controller_->performSelector(selector);
        rest();
    }

    /// As a drop or the open panel hands files over.
    void open(const std::vector<std::filesystem::path>& files, bool needsWait = false) {
        controller_->draggingFilesComplete_needsWait(files, needsWait);
        rest();
        wait(1);
    }

    /// A stroke of the left button across the middle of the cut view.
    void stroke() {
        const QPoint middle = cutWidget().rect().center();
        QTest::mousePress(&cutWidget(), Qt::LeftButton, {}, middle);
        QTest::mouseMove(&cutWidget(), middle + QPoint(20, 0));
        QTest::mouseRelease(&cutWidget(), Qt::LeftButton, {}, middle + QPoint(20, 0));
        rest();
    }

    void click(QWidget& widget) {
        QTest::mouseClick(&widget, Qt::LeftButton);
        rest();
    }

    /// The names of the events that were logged since the last call, without the full stop that the
    /// library puts after each, and without the library's own.
    std::vector<std::string> events() {
        rest();
        std::vector<std::string> all;
        for (std::string name : currentNames()) {
            name.pop_back();
            if (name.starts_with("button ") || name.starts_with("Brush ") || name.starts_with("User "))
                all.push_back(std::move(name));
        }
        const auto fresh = all.begin() + static_cast<std::ptrdiff_t>(seenEvents_);
        seenEvents_ = all.size();
        return {fresh, all.end()};
    }

    EditorView& screen() { return controller_->view(); }
    EditorOutlets& outlets() { return controller_->outlets(); }
    EditorConstraints& constraints() { return controller_->constraints(); }
    CutViewWidget& cutWidget() { return *outlets().viCut; }
    cutengine::RKImageCutView& view() { return controller_->cutView(); }

    FakeDecoder decoder_;
    FakeEncoder encoder_;
    FakePanels panels_;
    MemorySettings settings_;
    RecordedNotifications userNotifications_;
    RecordedWorkspace workspace_;
    RecordedMessages messages_;
    RecordedToolbar toolbar_;
    util::ThreadFlowRegistry threadFlows_{queues, time, time};
    std::unique_ptr<ViewController> controller_;
    std::size_t seenEvents_ = 0;
};

}  // namespace trimora::editor
