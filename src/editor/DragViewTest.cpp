#include "editor/DragView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "controls/Icons.h"
#include "controls/Palette.h"
#include "foundation/ManualQueues.h"
#include "testing/TemporaryFolder.h"

namespace trimora::editor {
namespace {

using std::filesystem::path;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::string contents(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class RecordingDelegate final : public DragViewDelegate {
 public:
    std::vector<std::string> calls;
    Files urls;

    void draggingFilesComplete_needsWait(const Files& files, bool wait) override {
        urls = files;
        calls.emplace_back(wait ? "complete, wait" : "complete");
    }
    void draggingFilesPerform_newSession(const Files& files, bool newSession) override {
        urls = files;
        calls.emplace_back(newSession ? "perform, new" : "perform");
    }
    void draggingFilesExited() override { calls.emplace_back("exited"); }
    void draggingFilesCancelled() override { calls.emplace_back("cancelled"); }
};

class DragViewTest : public ::testing::Test {
 protected:
    void SetUp() override {
        view_.resize(400, 300);
        view_.setDelegate(&delegate_);
        files_.setUrls({QUrl::fromLocalFile("/p/b cat.png"), QUrl("https://example.org/x.png"),
                        QUrl::fromLocalFile("/p/ä.jpg")});
    }

    template <typename Event>
    bool send(const QMimeData& data, QPoint place, QWidget* to = nullptr) {
        Event event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setAccepted(false);
        QCoreApplication::sendEvent(to != nullptr ? to : &view_, &event);
        return event.isAccepted();
    }
    bool enter(const QMimeData& data) { return send<QDragEnterEvent>(data, {10, 10}); }
    bool move(const QMimeData& data, QPoint place) { return send<QDragMoveEvent>(data, place); }
    bool drop(const QMimeData& data) { return send<QDropEvent>(data, {10, 10}); }
    /// A whole drag: the toolkit delivers a drop only where the drag was accepted before.
    bool dragHere(const QMimeData& data) { return enter(data) && drop(data); }
    void leave() {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(&view_, &event);
    }

    /// The view at one pixel to a point, whatever the screen's scale factor.
    QImage shown() {
        QImage image(view_.size(), QImage::Format_RGB32);
        view_.render(&image);
        return image;
    }

    testing::TemporaryFolder caches_;
    foundation::ManualQueueFactory queues_;
    RecordingDelegate delegate_;
    DragView view_{queues_, caches_.path()};
    QMimeData files_;
};

TEST_F(DragViewTest, LocalFilesAreHandedOverInTheirOrder) {
    EXPECT_TRUE(enter(files_));
    EXPECT_TRUE(drop(files_));
    EXPECT_THAT(delegate_.calls, ElementsAre("complete"));
    EXPECT_THAT(delegate_.urls, ElementsAre("/p/b cat.png", "/p/ä.jpg"));
}

TEST_F(DragViewTest, TheFrameLightsUpWhileFilesAreOverTheView) {
    const auto frameColour = [this] { return shown().pixelColor(35, 30 - 1); };
    view_.setLineColor(Qt::blue);
    view_.setHighlightedColor(Qt::green);
    EXPECT_EQ(frameColour(), QColor(Qt::blue));
    enter(files_);
    EXPECT_TRUE(view_.mouseIn());
    EXPECT_EQ(frameColour(), QColor(Qt::green));
    leave();
    EXPECT_EQ(frameColour(), QColor(Qt::blue));
    enter(files_);
    drop(files_);
    EXPECT_FALSE(view_.mouseIn());
}

TEST_F(DragViewTest, ADragThatHoversWithoutMovingIsToldOfOnce) {
    enter(files_);
    EXPECT_TRUE(move(files_, {20, 20}));
    EXPECT_TRUE(move(files_, {20, 20}));
    EXPECT_TRUE(move(files_, {21, 20}));
    EXPECT_THAT(delegate_.calls, ElementsAre("perform, new", "perform"));
    EXPECT_THAT(delegate_.urls, SizeIs(2));
}

TEST_F(DragViewTest, AnotherDragAtTheSamePlaceIsANewSession) {
    enter(files_);
    move(files_, {20, 20});
    leave();
    enter(files_);
    move(files_, {20, 20});
    EXPECT_THAT(delegate_.calls, ElementsAre("perform, new", "exited", "cancelled", "perform, new"));
}

TEST_F(DragViewTest, ADragThatLeavesIsCancelledAndOneThatDropsIsNot) {
    enter(files_);
    leave();
    EXPECT_THAT(delegate_.calls, ElementsAre("exited", "cancelled"));
    delegate_.calls.clear();
    enter(files_);
    drop(files_);
    EXPECT_THAT(delegate_.calls, ElementsAre("complete"));
}

TEST_F(DragViewTest, ADragAfterADropCanBeCancelledAgain) {
    enter(files_);
    drop(files_);
    enter(files_);
    leave();
    EXPECT_THAT(delegate_.calls, ElementsAre("complete", "exited", "cancelled"));
}

TEST_F(DragViewTest, ADragWithoutFilesOrPictureIsRefused) {
    QMimeData text;
    text.setText("not a file");
    EXPECT_FALSE(enter(text));
    QMimeData remote;
    remote.setUrls({QUrl("https://example.org/x.png")});
    EXPECT_FALSE(enter(remote));
    EXPECT_FALSE(view_.mouseIn());
}

TEST_F(DragViewTest, ADropWithNothingUsableDeliversAnEmptyListAndReportsNoDrop) {
    QMimeData hollow;
    hollow.setData("image/png", {});
    EXPECT_TRUE(enter(hollow)) << "what it offers looks like a picture";
    EXPECT_FALSE(drop(hollow));
    EXPECT_THAT(delegate_.calls, ElementsAre("complete"));
    EXPECT_THAT(delegate_.urls, IsEmpty());
}

TEST_F(DragViewTest, TheBytesOfAPictureBecomeAPromisedFileThatIsWrittenInTheBackground) {
    QMimeData bytes;
    bytes.setData("image/jpeg", "the bytes of a picture");
    bytes.setUrls({QUrl("https://example.org/pictures/Red%20vase.JPEG?size=large")});
    EXPECT_TRUE(enter(bytes));
    EXPECT_TRUE(drop(bytes));
    EXPECT_THAT(delegate_.calls, ElementsAre("complete, wait"));
    ASSERT_THAT(delegate_.urls, SizeIs(1));
    const path promised = delegate_.urls.front();
    EXPECT_EQ(promised.filename(), "Red vase.jpg");
    EXPECT_EQ(promised.parent_path().parent_path(), caches_.path());
    EXPECT_FALSE(exists(promised)) << "nothing is written on the main thread";
    queues_.settle();
    EXPECT_EQ(contents(promised), "the bytes of a picture");
}

TEST_F(DragViewTest, PixelsWithoutAFormatBecomeAPng) {
    QImage pixels(3, 2, QImage::Format_ARGB32);
    pixels.fill(QColor(10, 200, 30, 128));
    QMimeData image;
    image.setImageData(pixels);
    EXPECT_TRUE(enter(image));
    EXPECT_TRUE(drop(image));
    queues_.settle();
    ASSERT_THAT(delegate_.urls, SizeIs(1));
    EXPECT_EQ(delegate_.urls.front().filename(), "Dropped picture.png");
    EXPECT_EQ(QImage(QString::fromStdString(delegate_.urls.front())).convertToFormat(pixels.format()),
              pixels);
}

TEST_F(DragViewTest, APromisedNameCannotLeadOutOfItsFolder) {
    for (const char* address : {"https://example.org/..%2F..%2Fescape.png", "https://example.org/..",
                                "https://example.org/.png", "https://example.org/"}) {
        QMimeData bytes;
        bytes.setData("image/png", "p");
        bytes.setUrls({QUrl(address)});
        dragHere(bytes);
        queues_.settle();
        ASSERT_THAT(delegate_.urls, SizeIs(1)) << address;
        EXPECT_TRUE(exists(delegate_.urls.front())) << address;
        EXPECT_EQ(delegate_.urls.front().parent_path().parent_path(), caches_.path()) << address;
    }
}

TEST_F(DragViewTest, AVeryLongPromisedNameIsCut) {
    QMimeData bytes;
    bytes.setData("image/png", "p");
    bytes.setUrls({QUrl("https://example.org/" + QString(400, QChar(0x732b)) + ".png")});
    dragHere(bytes);
    queues_.settle();
    ASSERT_THAT(delegate_.urls, SizeIs(1));
    EXPECT_TRUE(exists(delegate_.urls.front()));
}

TEST_F(DragViewTest, APromisedFileStaysUntilTheNextOneIsDropped) {
    QMimeData bytes;
    bytes.setData("image/png", "one");
    dragHere(bytes);
    queues_.settle();
    const path first = delegate_.urls.front();
    bytes.setData("image/png", "two");
    dragHere(bytes);
    queues_.settle();
    EXPECT_FALSE(exists(first));
    EXPECT_EQ(contents(delegate_.urls.front()), "two");
}

TEST_F(DragViewTest, AFileWinsOverTheBytesBesideIt) {
    files_.setData("image/png", "bytes");
    dragHere(files_);
    EXPECT_THAT(delegate_.calls, ElementsAre("complete"));
    EXPECT_THAT(delegate_.urls, SizeIs(2));
}

TEST_F(DragViewTest, AnotherWidgetsDropsTakeTheSameRoad) {
    QWidget picture;
    picture.resize(200, 200);
    view_.alsoTakeDropsOn(picture);
    EXPECT_TRUE(picture.acceptDrops());
    EXPECT_TRUE(send<QDragEnterEvent>(files_, {5, 5}, &picture));
    EXPECT_TRUE(send<QDropEvent>(files_, {5, 5}, &picture));
    EXPECT_THAT(delegate_.calls, ElementsAre("complete"));
}

TEST_F(DragViewTest, ADelegateNeedsToKnowOfDropsAlone) {
    class DropsOnly final : public DragViewDelegate {
     public:
        int drops = 0;
        void draggingFilesComplete_needsWait(const Files& /*urls*/, bool /*wait*/) override { ++drops; }
    } dropsOnly;
    view_.setDelegate(&dropsOnly);
    enter(files_);
    move(files_, {20, 20});
    leave();
    enter(files_);
    drop(files_);
    EXPECT_EQ(dropsOnly.drops, 1);
}

// ── Look ───────────────────────────────────────────────────────────────────────────────────────

QRect inked(const QImage& image, const QColor& colour) {
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == colour)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

TEST_F(DragViewTest, ASmallPictureIsDrawnPixelForPixel) {
    QImage chequered(10, 10, QImage::Format_RGB32);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 10; ++x)
            chequered.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::red : Qt::blue);
    }
    view_.setImage(QIcon(QPixmap::fromImage(chequered)), chequered.size());
    view_.resize(401, 301);  // the middle falls between two pixels
    view_.setLineColor(Qt::transparent);
    const QImage image = shown();
    const QRect place = inked(image, Qt::red);
    EXPECT_EQ(place.size(), QSize(10, 10));
    EXPECT_EQ(image.copy(place), chequered);
}

TEST_F(DragViewTest, TheGaugeFillsFromTheLeft) {
    view_.setImage(controls::icon("picture_drop"), {96, 96});
    view_.setLineColor(Qt::transparent);
    view_.setProgressMode(true);
    const auto done = [this](float progress) {
        view_.setProgress(progress);
        return inked(view_.grab().toImage(), controls::palette::kProgress);
    };
    EXPECT_TRUE(done(0).isEmpty()) << "nothing done is not a whole turn";
    const double scale = view_.devicePixelRatioF();
    const QRect half = done(0.5F);
    EXPECT_NEAR(half.left(), (200 - 48) * scale, 3 * scale);
    EXPECT_NEAR(half.right(), 200 * scale, 3 * scale);
    const QRect whole = done(1);
    EXPECT_NEAR(whole.right(), (200 + 48) * scale, 3 * scale);
    EXPECT_NEAR(whole.height(), 48 * scale, 3 * scale) << "half a disc, upper side";
    EXPECT_EQ(done(7), whole) << "more than everything is everything";
}

TEST_F(DragViewTest, HiddenItDrawsNothing) {
    view_.setStrTitle("Drop a picture here");
    view_.setAttribute(Qt::WA_TranslucentBackground);
    QImage blank(view_.size(), QImage::Format_ARGB32_Premultiplied);
    const auto drawn = [&] {
        blank.fill(Qt::transparent);
        view_.render(&blank, {}, {}, {});
        return blank.convertToFormat(QImage::Format_Alpha8);
    };
    QImage nothing(view_.size(), QImage::Format_Alpha8);
    nothing.fill(0);
    EXPECT_NE(drawn(), nothing);
    view_.setHideAll(true);
    EXPECT_EQ(drawn(), nothing);
}

TEST_F(DragViewTest, TextsAreEmptyToBeginWithAndTheThirdIsNotThere) {
    const DragView fresh(queues_, caches_.path());
    EXPECT_TRUE(fresh.strTitle().isEmpty());
    EXPECT_TRUE(fresh.strDescription().isEmpty());
    EXPECT_FALSE(fresh.strInfoText().has_value());
}

TEST_F(DragViewTest, TheThirdLineIsDrawnWhereItIsSet) {
    const QImage without = view_.grab().toImage();
    view_.setStrInfoText("PNG, JPEG, TIFF or GIF");
    EXPECT_NE(view_.grab().toImage(), without);
}

TEST_F(DragViewTest, EveryPartThatIsPaintedAloneIsAsInTheWhole) {
    view_.setImage(controls::icon("picture_drop"), {96, 96});
    view_.setStrTitle("Drop a picture here");
    view_.setStrDescription("or open one");
    view_.setStrInfoText("PNG, JPEG, TIFF or GIF");
    const QImage whole = shown();
    constexpr int kPart = 20;
    for (int y = 0; y < view_.height(); y += kPart) {
        for (int x = 0; x < view_.width(); x += kPart) {
            const QRect part(x, y, kPart, kPart);
            QImage alone(part.size(), QImage::Format_RGB32);
            view_.render(&alone, {}, part);
            EXPECT_EQ(alone, whole.copy(part)) << x << ", " << y;
        }
    }
}

TEST_F(DragViewTest, TheLayoutFollowsWhatItIsMadeFrom) {
    view_.setStrTitle("Drop a picture here");
    const double narrow = view_.currentLayout().frame.width;
    view_.resize(500, 300);
    EXPECT_EQ(view_.currentLayout().frame.width, narrow + 100);
    const double without = view_.currentLayout().description.height;
    view_.setStrDescription("or open one");
    EXPECT_NE(view_.currentLayout().description.height, without);
    view_.setImage(controls::icon("picture_drop"), {96, 96});
    EXPECT_EQ(view_.currentLayout().image.width, 96);
}

}  // namespace
}  // namespace trimora::editor
