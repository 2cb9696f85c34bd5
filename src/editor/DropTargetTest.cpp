#include "editor/DropTarget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace trimora::editor {
namespace {

using std::filesystem::path;
using ::testing::ElementsAre;

class DropTargetTest : public ::testing::Test {
 protected:
    bool enter(const QMimeData& data) {
        QDragEnterEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setAccepted(false);
        QCoreApplication::sendEvent(&widget_, &event);
        return event.isAccepted();
    }
    bool drop(const QMimeData& data) {
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setAccepted(false);
        QCoreApplication::sendEvent(&widget_, &event);
        return event.isAccepted();
    }

    QWidget widget_;
    std::vector<path> dropped_;
    std::vector<bool> hovers_;
    DropTarget* target_ = new DropTarget(
        widget_, [this](std::vector<path> files) { dropped_ = std::move(files); },
        [this](bool over) { hovers_.push_back(over); });
};

TEST_F(DropTargetTest, LocalFilesAreHandedOverInTheirOrder) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/p/b cat.png"), QUrl("https://example.org/x.png"),
                  QUrl::fromLocalFile("/p/ä.jpg")});
    EXPECT_TRUE(enter(data));
    EXPECT_TRUE(drop(data));
    EXPECT_THAT(dropped_, ElementsAre("/p/b cat.png", "/p/ä.jpg"));
    EXPECT_THAT(hovers_, ElementsAre(true, false));
}

TEST_F(DropTargetTest, ADragWithoutLocalFilesIsRefused) {
    QMimeData text;
    text.setText("not a file");
    EXPECT_FALSE(enter(text));
    QMimeData remote;
    remote.setUrls({QUrl("https://example.org/x.png")});
    EXPECT_FALSE(enter(remote));
    EXPECT_FALSE(drop(remote));
    EXPECT_TRUE(dropped_.empty());
}

TEST_F(DropTargetTest, LeavingEndsTheHover) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/p/cat.png")});
    enter(data);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&widget_, &leave);
    EXPECT_THAT(hovers_, ElementsAre(true, false));
    EXPECT_TRUE(dropped_.empty());
}

}  // namespace
}  // namespace trimora::editor
