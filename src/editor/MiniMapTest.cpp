#include "editor/MiniMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QMimeData>
#include <QPixmap>
#include <QTest>
#include <QUrl>

#include "controls/ControlsForTests.h"
#include "controls/Palette.h"
#include "editor/EditorDoubles.h"
#include "testing/TemporaryFolder.h"

namespace trimora::editor {
namespace {

using controls::TestWindow;
using foundation::Point;
using foundation::Rect;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A landscape picture whose left half is red and whose right half is blue.
cutengine::PicturePtr twoHalves(int width, int height) {
    auto bitmap = foundation::Bitmap::createFilled(width, height, {0, 0, 255, 255});
    for (int y = 0; y < height; ++y) {
        for (int x = width / 2; x < width; ++x)
            bitmap->setPixel(x, y, {255, 0, 0, 255});
    }
    return cutengine::Picture::create(std::move(*bitmap));
}

class MiniMapTest : public ::testing::Test {
 protected:
    void SetUp() override {
        window_.hold(map_, map_.sizeHint());
        map_.onCentreWanted([this](Point centre) { wanted_.push_back(centre); });
    }

    /// A place of the map by its share of the picture, as the toolkit counts.
    QPoint placeOf(double x, double y) {
        const Rect frame = map_.miniMapImage().frame();
        const double w = static_cast<double>(map_.sizeWidthMiniMap());
        const double h = static_cast<double>(map_.sizeHeightMiniMap());
        const double left = frame.x + (frame.width - w) / 2 + x * w;
        const double up = frame.y + (frame.height - h) / 2 + y * h;
        return QPointF(left, map_.height() - up).toPoint();
    }
    void load(cutengine::PicturePtr picture) {
        map_.setPicture(std::move(picture));
        world_.settle();
    }
    QColor shownAt(double x, double y) {
        const QPoint place = placeOf(x, y) * map_.devicePixelRatioF();
        return map_.grab().toImage().pixelColor(place);
    }

    controls::VirtualWorld world_;
    testing::TemporaryFolder caches_;
    std::vector<Point> wanted_;
    TestWindow window_;
    MiniMap map_{{world_.context(), world_.queues, caches_.path()}};
};

TEST_F(MiniMapTest, APictureIsFittedBeforeTheMapWasEverShown) {
    MiniMap hidden({world_.context(), world_.queues, caches_.path()});
    hidden.setPicture(plainPicture(640, 320));
    EXPECT_FLOAT_EQ(hidden.sizeWidthMiniMap(), 128);
    EXPECT_EQ(hidden.testboirder().frame(), (Rect{0, 32, 128, 64}));
}

TEST_F(MiniMapTest, ThePictureIsFittedAndAllOfItInView) {
    load(twoHalves(640, 320));
    EXPECT_EQ(map_.miniMapImage().frame().size(), (foundation::Size{128, 128}));
    EXPECT_FLOAT_EQ(map_.sizeWidthMiniMap(), 128);
    EXPECT_FLOAT_EQ(map_.sizeHeightMiniMap(), 64);
    EXPECT_EQ(map_.testboirder().frame(), (Rect{0, 32, 128, 64}));
    EXPECT_EQ(shownAt(0.25, 0.5), QColor(255, 0, 0));
    EXPECT_EQ(shownAt(0.75, 0.5), QColor(0, 0, 255));
    EXPECT_EQ(shownAt(0.5, -0.2), QColor(0, 0, 0)) << "black behind the picture";
}

TEST_F(MiniMapTest, TheSmallCopyIsMadeOnceInTheBackgroundAtTheScreensPixels) {
    map_.setPicture(twoHalves(640, 320));
    EXPECT_EQ(world_.queues.manualBackground().pending(), 1);
    EXPECT_EQ(shownAt(0.25, 0.5), QColor(0, 0, 0)) << "not there yet";
    world_.settle();
    map_.grab();
    map_.showBorder(0.5F, 0.5F, 0.5F, 0.5F);
    map_.grab();
    EXPECT_EQ(world_.queues.manualBackground().pending(), 0);
    // Halves that meet on a whole pixel stay apart by one step, with no blurred column between.
    const double step = 1.0 / 128 / map_.devicePixelRatioF();
    EXPECT_GT(shownAt(0.5 - 2 * step, 0.5).red(), 200);
    EXPECT_GT(shownAt(0.5 + 2 * step, 0.5).blue(), 200);
}

TEST_F(MiniMapTest, APictureThatIsReplacedMeanwhileNeverShows) {
    map_.setPicture(twoHalves(640, 320));
    map_.setPicture(plainPicture(640, 320, {0, 255, 0, 255}));
    world_.settle();
    EXPECT_EQ(shownAt(0.25, 0.5), QColor(0, 255, 0));
    map_.setPicture(plainPicture(64, 32));
    map_.setPicture(nullptr);
    world_.settle();
    EXPECT_EQ(map_.sizeWidthMiniMap(), 0);
    EXPECT_EQ(map_.grab().toImage().pixelColor(map_.rect().center()), QColor(0, 0, 0));
}

TEST_F(MiniMapTest, ScalingThatEndsAfterTheMapIsGoneComesToNothing) {
    auto gone = std::make_unique<MiniMap>(MiniMap::Services{world_.context(), world_.queues, caches_.path()});
    gone->setPicture(twoHalves(640, 320));
    gone.reset();
    world_.settle();
    EXPECT_EQ(world_.queues.manualMain().pending(), 0);
}

TEST_F(MiniMapTest, TheBorderMarksThePartInViewAndTheRestIsShaded) {
    load(plainPicture(640, 320, {255, 255, 255, 255}));
    map_.showBorder(1, 1, 0.5F, 0.5F);
    EXPECT_EQ(map_.testboirder().frame(), (Rect{0, 32, 64, 32}));
    EXPECT_EQ(shownAt(0.25, 0.25), QColor(255, 255, 255));
    EXPECT_LT(shownAt(0.75, 0.75).red(), 128);
    EXPECT_FLOAT_EQ(map_.borderLayerScale().lineWidth, 1);
    EXPECT_EQ(map_.borderLayerScale().fillColor, QColor(Qt::white));
}

TEST_F(MiniMapTest, AViewLargerThanThePictureLeavesNothingShadedAndKeepsTheLineOnThePicture) {
    load(plainPicture(640, 320, {255, 255, 255, 255}));
    map_.showBorder(1.5F, 1.5F, 1.5F, 1.5F);
    EXPECT_EQ(map_.testboirder().frame().width, 192) << "the frame is as reported";
    EXPECT_EQ(map_.borderLayerScale().path.bounds(), (Rect{0, 32, 128, 64}));
    EXPECT_EQ(shownAt(0.5, 0.5), QColor(255, 255, 255));
}

TEST_F(MiniMapTest, AnotherPictureIsAllInViewAgain) {
    load(twoHalves(640, 320));
    map_.showBorder(1, 1, 0.5F, 0.5F);
    load(twoHalves(320, 640));
    EXPECT_EQ(map_.testboirder().frame(), (Rect{32, 0, 64, 128}));
}

TEST_F(MiniMapTest, ItsViewsHaveTheirColours) {
    EXPECT_EQ(map_.backgroundScaleView().backgroundColor, QColor(33, 33, 33));
    EXPECT_EQ(map_.openPictureViewScale().backgroundColor, QColor(44, 44, 44));
    EXPECT_EQ(map_.backMiniMapImage().backgroundColor, QColor(0, 0, 0));
    EXPECT_EQ(map_.backMiniMapImage().cornerRadius, 2);
}

TEST_F(MiniMapTest, PressingAndDraggingAsksForTheCentreUnderThePointer) {
    load(twoHalves(640, 320));
    window_.press(map_, placeOf(0.25, 0.75));
    window_.moveTo(map_, placeOf(0.5, 0.5));
    window_.moveTo(map_, placeOf(2, 0.5));  // beyond the picture, still near the box
    window_.release(map_, placeOf(2, 0.5));
    window_.moveTo(map_, placeOf(0.1, 0.1));  // nobody holds the button any more
    EXPECT_THAT(wanted_, ElementsAre(Point{0.25, 0.75}, Point{0.5, 0.5}, Point{1, 0.5}));
}

TEST_F(MiniMapTest, WithoutAPictureNothingIsAskedFor) {
    window_.click(map_, map_.rect().center());
    map_.setFocus();
    QTest::keyClick(&map_, Qt::Key_Left);
    EXPECT_THAT(wanted_, IsEmpty());
}

TEST_F(MiniMapTest, ArrowKeysMoveByAShareOfThePartInView) {
    load(twoHalves(640, 320));
    map_.showBorder(0.5F, 0.5F, 0.5F, 0.5F);
    map_.setFocus();
    QTest::keyClick(&map_, Qt::Key_Right);
    QTest::keyClick(&map_, Qt::Key_Up);
    QTest::keyClick(&map_, Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(&map_, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(wanted_, ElementsAre(Point{0.55, 0.5}, Point{0.5, 0.55}, Point{0.25, 0.5}, Point{0.5, 0.25}));
}

class MiniMapDragTest : public MiniMapTest {
 protected:
    void SetUp() override {
        MiniMapTest::SetUp();
        load(twoHalves(640, 320));
        map_.showBorder(0.5F, 0.5F, 0.5F, 0.5F);
        map_.setResultSupply([this] {
            ++supplied_;
            return OutgoingPicture{"Vase.png", "png bytes"};
        });
        map_.setDragStarter([this](std::unique_ptr<QMimeData> carried, const QPixmap& shown) {
            carried_ = std::move(carried);
            shown_ = shown;
        });
    }
    void dragOut() {
        window_.press(map_, placeOf(0.25, 0.75));
        window_.moveTo(map_, QPoint(map_.width() + 40, placeOf(0, 0.5).y()));
    }

    int supplied_ = 0;
    std::unique_ptr<QMimeData> carried_;
    QPixmap shown_;
};

TEST_F(MiniMapDragTest, DraggingThePictureOutCarriesTheResultAndPutsTheViewBack) {
    dragOut();
    ASSERT_NE(carried_, nullptr);
    EXPECT_FALSE(shown_.isNull());
    EXPECT_EQ(wanted_.back(), (Point{0.5, 0.5})) << "where the view was at the press";
    const std::size_t asked = wanted_.size();
    window_.moveTo(map_, placeOf(0.5, 0.5));
    EXPECT_EQ(wanted_.size(), asked) << "the press belongs to the drag now";
}

TEST_F(MiniMapDragTest, TheResultIsMadeOnlyWhenItIsAskedForAndOnlyOnce) {
    dragOut();
    ASSERT_NE(carried_, nullptr);
    EXPECT_TRUE(carried_->hasUrls());
    EXPECT_EQ(supplied_, 0);
    EXPECT_TRUE(std::filesystem::is_empty(caches_.path()));
    EXPECT_EQ(carried_->data("image/png"), "png bytes");
    ASSERT_EQ(carried_->urls().size(), 1);
    const QString file = carried_->urls().front().toLocalFile();
    EXPECT_TRUE(file.endsWith("/Vase.png"));
    EXPECT_EQ(carried_->data("text/uri-list"), carried_->urls().front().toEncoded() + "\r\n");
    EXPECT_EQ(supplied_, 1);
    carried_.reset();
    QFile kept(file);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly)) << "whoever got the drop may still copy the file";
    EXPECT_EQ(kept.readAll(), "png bytes");
}

TEST_F(MiniMapDragTest, NoResultIsNoFile) {
    map_.setResultSupply([] { return OutgoingPicture{}; });
    dragOut();
    ASSERT_NE(carried_, nullptr);
    EXPECT_TRUE(carried_->urls().isEmpty());
}

TEST_F(MiniMapDragTest, WithoutASupplyAPressThatLeavesGoesOnMovingTheView) {
    map_.setResultSupply({});
    dragOut();
    EXPECT_EQ(carried_, nullptr);
    EXPECT_EQ(wanted_.back(), (Point{1, 0.5}));
}

}  // namespace
}  // namespace trimora::editor
