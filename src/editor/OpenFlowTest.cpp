#include "editor/OpenFlow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "editor/EditorDoubles.h"
#include "foundation/ManualQueues.h"

namespace trimora::editor {
namespace {

using cutengine::PicturePtr;
using std::filesystem::path;
using ::testing::ElementsAre;

class OpenFlowTest : public ::testing::Test {
 protected:
    OpenFlowTest() {
        decoder_.files["/p/cat.png"] = {40, 30, ""};
        decoder_.files["/p/dog.jpg"] = {20, 10, ""};
        decoder_.files["/p/half.jpg"] = {20, 10, "the file is cut short; what could be read is shown"};
    }

    foundation::ManualQueueFactory queues_;
    FakeDecoder decoder_;
    FakePanels panels_;
    RecordedMessages messages_;
    std::vector<std::pair<PicturePtr, path>> shown_;
    std::unique_ptr<OpenFlow> flow_ = std::make_unique<OpenFlow>(
        OpenFlow::Services{queues_, decoder_, panels_, messages_},
        [this](PicturePtr picture, const path& file) { shown_.emplace_back(std::move(picture), file); });
};

TEST_F(OpenFlowTest, TheFileIsDecodedOnTheBackgroundQueueAndShownOnTheMainOne) {
    flow_->open({"/p/cat.png"});
    EXPECT_TRUE(decoder_.asked.empty());
    EXPECT_TRUE(flow_->isOpening());
    EXPECT_THAT(messages_.lines, ElementsAre("progress: Opening cat.png"));

    EXPECT_TRUE(queues_.manualBackground().runOne());
    EXPECT_THAT(decoder_.asked, ElementsAre("/p/cat.png"));
    EXPECT_TRUE(shown_.empty());

    queues_.settle();
    ASSERT_EQ(shown_.size(), 1U);
    EXPECT_EQ(shown_[0].first->size(), (foundation::Size{40, 30}));
    EXPECT_EQ(shown_[0].second, "/p/cat.png");
    EXPECT_EQ(flow_->folder(), "/p");
    EXPECT_FALSE(flow_->isOpening());
}

TEST_F(OpenFlowTest, TheFirstReadablePictureWinsAndTheRestIsNotRead) {
    flow_->open({"/p/notes.txt", "/p/list.csv", "/p/dog.jpg", "/p/cat.png"});
    queues_.settle();
    ASSERT_EQ(shown_.size(), 1U);
    EXPECT_EQ(shown_[0].second, "/p/dog.jpg");
    EXPECT_THAT(decoder_.asked, ElementsAre("/p/notes.txt", "/p/list.csv", "/p/dog.jpg"));
    EXPECT_EQ(messages_.lines.back(), "note: Opened dog.jpg");
}

TEST_F(OpenFlowTest, AnUnreadableFileIsToldInOneLineAndChangesNothing) {
    flow_->open({"/p/notes.txt"});
    queues_.settle();
    EXPECT_TRUE(shown_.empty());
    EXPECT_EQ(flow_->folder(), "");
    EXPECT_EQ(messages_.lines.back(), "trouble: notes.txt could not be opened: it is not a picture");
}

TEST_F(OpenFlowTest, SeveralUnreadableFilesAreOneLineToo) {
    flow_->open({"/p/a.txt", "/p/b.txt", "/p/c.txt"});
    queues_.settle();
    EXPECT_THAT(messages_.lines,
                ElementsAre("progress: Opening a.txt",
                            "trouble: a.txt could not be opened: it is not a picture (nor could 2 more)"));
}

TEST_F(OpenFlowTest, WhatAFileLacksIsToldOnce) {
    flow_->open({"/p/half.jpg"});
    queues_.settle();
    ASSERT_EQ(shown_.size(), 1U);
    EXPECT_THAT(messages_.lines,
                ElementsAre("progress: Opening half.jpg",
                            "note: half.jpg: the file is cut short; what could be read is shown"));
}

TEST_F(OpenFlowTest, AnEmptyListChangesNothing) {
    flow_->open({});
    queues_.settle();
    EXPECT_TRUE(messages_.lines.empty());
    EXPECT_TRUE(shown_.empty());
}

TEST_F(OpenFlowTest, ALaterOpeningReplacesTheOneOnItsWay) {
    flow_->open({"/p/cat.png"});
    flow_->open({"/p/dog.jpg"});
    queues_.settle();
    ASSERT_EQ(shown_.size(), 1U);
    EXPECT_EQ(shown_[0].second, "/p/dog.jpg");
}

TEST_F(OpenFlowTest, ThePanelBeginsInTheFolderOfTheLastPicture) {
    flow_->openPicture();
    ASSERT_EQ(panels_.questions.size(), 1U);
    EXPECT_EQ(panels_.questions[0].folder, "");
    panels_.questions[0].answer(path("/p/cat.png"));
    queues_.settle();
    EXPECT_EQ(shown_.size(), 1U);

    flow_->openPicture();
    EXPECT_EQ(panels_.questions[1].folder, "/p");
}

TEST_F(OpenFlowTest, ACancelledPanelChangesNothing) {
    flow_->openPicture();
    panels_.questions[0].answer(std::nullopt);
    queues_.settle();
    EXPECT_TRUE(messages_.lines.empty());
}

TEST_F(OpenFlowTest, OnePanelIsOpenAtATime) {
    flow_->openPicture();
    flow_->openPicture();
    ASSERT_EQ(panels_.questions.size(), 1U);
    panels_.questions[0].answer(std::nullopt);
    flow_->openPicture();
    EXPECT_EQ(panels_.questions.size(), 2U);
}

TEST_F(OpenFlowTest, AFlowThatIsGoneShowsNothingAnyMore) {
    flow_->open({"/p/cat.png"});
    flow_->openPicture();
    flow_.reset();
    panels_.questions[0].answer(path("/p/dog.jpg"));
    queues_.settle();
    EXPECT_TRUE(shown_.empty());
}

}  // namespace
}  // namespace trimora::editor
