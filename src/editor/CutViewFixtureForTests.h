#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "cutengine/RKImageCutView.h"
#include "editor/CutViewWidget.h"
#include "editor/EditorDoubles.h"
#include "foundation/ManualQueues.h"
#include "foundation/NotificationCenter.h"
#include "foundation/VirtualTime.h"
#include "testing/TemporaryFolder.h"

namespace trimora::editor {

/// A real cut view widget of 400 x 300 points in a window of its own, on queues and a clock that the
/// test moves.
class CutViewFixture : public ::testing::Test {
 protected:
    cutengine::RKImageCutView::Services services() {
        return {queues_, time_, notifications_, folder_.path() / "history"};
    }

    void SetUp() override {
        widget_.resize(400, 300);
        widget_.show();
        widget_.activateWindow();
        widget_.setFocus();
        QCoreApplication::processEvents();
    }

    /// A picture that fills the view, one picture point to a view point.
    void openPicture() {
        view().setImage(plainPicture(400, 300));
        settle();
    }

    void settle() {
        queues_.settle();
        time_.advance(1);
        QCoreApplication::processEvents();
    }

    cutengine::RKImageCutView& view() { return widget_.view(); }

    /// Alpha of the mask where the widget shows it, y down, for a picture that fills the view.
    int maskAt(int x, int y) { return view().copyMaskPlane().pixel(x, y).alpha; }

    testing::TemporaryFolder folder_;
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    CutViewWidget widget_{services()};
};

}  // namespace trimora::editor
