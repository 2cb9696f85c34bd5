#include "editor/SaveFlow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDateTime>
#include <fstream>
#include <iterator>
#include <memory>

#include "editor/CutViewFixtureForTests.h"

namespace trimora::editor {
namespace {

using std::filesystem::path;
using ::testing::ElementsAre;

using ::testing::StartsWith;

class SaveFlowTest : public CutViewFixture {
 protected:
    static std::string contentsOf(const path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::size_t filesInFolder() {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(files_.path()), {}));
    }

    testing::TemporaryFolder files_;
    FakeEncoder encoder_;
    FakePanels panels_;
    RecordedMessages messages_;
    std::unique_ptr<SaveFlow> flow_ =
        std::make_unique<SaveFlow>(SaveFlow::Services{queues_, time_, encoder_, panels_, messages_}, view());
};

TEST_F(SaveFlowTest, TheProposedNameTellsProgramAndLocalTime) {
    const QDateTime moment(QDate(2026, 11, 15), QTime(18, 6, 28));
    const foundation::Clock::WallTime wall{std::chrono::milliseconds(moment.toMSecsSinceEpoch())};
    EXPECT_EQ(defaultFileName(wall), "Trimora - 15-11-2026 18:06:28.png");
    time_.setWallTime(wall);
    openPicture();
    flow_->savePicture("/pictures");
    ASSERT_EQ(panels_.questions.size(), 1U);
    EXPECT_TRUE(panels_.questions[0].saves);
    EXPECT_THAT(panels_.questions[0].name, StartsWith("Trimora - 15-11-2026 18:06:2"));
    EXPECT_EQ(panels_.questions[0].folder, "/pictures");
}

TEST_F(SaveFlowTest, WithoutAPictureNothingHappens) {
    flow_->savePicture("");
    EXPECT_TRUE(panels_.questions.empty());
}

TEST_F(SaveFlowTest, TheResultIsWrittenOnTheBackgroundQueueWhateverTheEnding) {
    openPicture();
    flow_->savePicture("");
    const path target = files_.path() / "cut.jpg";
    panels_.questions[0].answer(target);
    EXPECT_FALSE(std::filesystem::exists(target));
    EXPECT_TRUE(flow_->isSaving());
    queues_.settle();
    EXPECT_FALSE(flow_->isSaving());
    EXPECT_EQ(contentsOf(target), FakeEncoder::bytesFor(400, 300));
    EXPECT_THAT(messages_.lines, ElementsAre("progress: Saving cut.jpg", "note: Save complete: cut.jpg"));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(SaveFlowTest, WhoWaitsForASaveHearsOfAFileThatIsThere) {
    openPicture();
    const path target = files_.path() / "cut.png";
    bool thereWhenTold = false;
    flow_->savePicture("", [&] { thereWhenTold = std::filesystem::exists(target); });
    panels_.questions[0].answer(target);
    EXPECT_FALSE(thereWhenTold);
    queues_.settle();
    EXPECT_TRUE(thereWhenTold);
}

TEST_F(SaveFlowTest, WhoWaitsForASaveHearsNothingOfACancelledOrFailedOne) {
    openPicture();
    int told = 0;
    flow_->savePicture("", [&] { ++told; });
    panels_.questions[0].answer(std::nullopt);
    queues_.settle();
    encoder_.failure = foundation::Error{"the disk is full"};
    flow_->savePicture("", [&] { ++told; });
    panels_.questions[1].answer(files_.path() / "cut.png");
    queues_.settle();
    EXPECT_EQ(told, 0);
}

TEST_F(SaveFlowTest, TheNextPanelBeginsWhereTheLastSaveWent) {
    openPicture();
    flow_->saveTo(files_.path() / "cut.png");
    queues_.settle();
    flow_->savePicture("/pictures");
    EXPECT_EQ(panels_.questions[0].folder, files_.path());
}

TEST_F(SaveFlowTest, AFailureIsToldOnceAndTheOldFileIsIntact) {
    openPicture();
    const path target = files_.path() / "cut.png";
    std::ofstream(target) << "the old picture";
    encoder_.failure = foundation::Error{"the disk is full"};
    flow_->saveTo(target);
    queues_.settle();
    EXPECT_EQ(contentsOf(target), "the old picture");
    EXPECT_EQ(filesInFolder(), 1U);
    EXPECT_THAT(messages_.lines, ElementsAre("progress: Saving cut.png",
                                             "trouble: cut.png could not be saved: the disk is full"));
}

TEST_F(SaveFlowTest, AFolderThatIsNotThereIsToldToo) {
    openPicture();
    flow_->saveTo(files_.path() / "nowhere" / "cut.png");
    queues_.settle();
    EXPECT_THAT(messages_.lines.back(), StartsWith("trouble: cut.png could not be saved: "));
}

TEST_F(SaveFlowTest, ACancelledPanelSavesNothing) {
    openPicture();
    flow_->savePicture("");
    panels_.questions[0].answer(std::nullopt);
    queues_.settle();
    EXPECT_TRUE(messages_.lines.empty());
}

TEST_F(SaveFlowTest, EveryPanelThatIsOpenSavesTheWorkThatItWasOpenedFor) {
    openPicture();
    flow_->savePicture("");
    flow_->savePicture("");
    flow_->pictureWillGo();
    view().setImage(nullptr);
    panels_.questions[0].answer(files_.path() / "first.png");
    panels_.questions[1].answer(files_.path() / "second.png");
    queues_.settle();
    EXPECT_TRUE(std::filesystem::exists(files_.path() / "first.png"));
    EXPECT_TRUE(std::filesystem::exists(files_.path() / "second.png"));
}

TEST_F(SaveFlowTest, AFlowThatIsGoneFinishesItsFileWithoutAWord) {
    openPicture();
    const path target = files_.path() / "cut.png";
    flow_->saveTo(target);
    flow_.reset();
    queues_.settle();
    EXPECT_EQ(contentsOf(target), FakeEncoder::bytesFor(400, 300));
    EXPECT_THAT(messages_.lines, ElementsAre("progress: Saving cut.png"));
}

}  // namespace
}  // namespace trimora::editor
