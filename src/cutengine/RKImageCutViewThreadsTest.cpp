#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "cutengine/CutViewForTests.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"

namespace trimora::cutengine {
namespace {

using foundation::Bitmap;
using foundation::Point;

/// The cut view on real threads, the main queue pumped by the test, which plays the main thread.
class ThreadsTest : public ::testing::Test {
 protected:
    static PicturePtr picture(int width, int height) {
        return Picture::create(
            Bitmap::createFilled(width, height, {90, 80, 70, 255}, foundation::AlphaMode::opaque).value());
    }
    void stroke(Point from, Point to) {
        view.mouseDown({MouseButton::left, from});
        view.mouseDragged({MouseButton::left, to});
        view.mouseUp({MouseButton::left, to});
    }
    void drawFrame() { view.drawRect(frame.view(), frame.view().bounds()); }

    testing::TemporaryFolder home;
    foundation::ManualQueue main{"main"};
    foundation::ThreadQueueFactory queues{main};
    foundation::RealClock clock;
    foundation::NotificationCenter notifications;
    RecordingHost host;
    RKImageCutView view{{queues, clock, notifications, home.path()}, host};
    Bitmap frame = Bitmap::create(300, 200, foundation::AlphaMode::opaque).value();
};

TEST_F(ThreadsTest, PaintsUndoesAndLoadsWhileTheScreenIsDrawn) {
    auto random = testing::seededGenerator();
    const auto number = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    const auto place = [&] {
        return Point{static_cast<double>(number(300)), static_cast<double>(number(200))};
    };
    view.setViewSize({300, 200});
    view.setImage(picture(640, 480));
    for (int i = 0; i < 120; ++i) {
        switch (number(8)) {
            case 0:
                view.prevHistoryState();
                break;
            case 1:
                view.nextHistoryState();
                break;
            case 2:
                view.setBlurOn(number(2) == 0);
                break;
            case 3:
                if (number(8) == 0)
                    view.setImage(picture(100 + number(900), 100 + number(900)));
                break;
            case 4:
                view.setBrushHardness(static_cast<float>(number(10)) / 10);
                view.setBrushAlphaValue(static_cast<float>(number(2)));
                break;
            default:
                stroke(place(), place());
        }
        main.runAll();
        drawFrame();
    }
    const PicturePtr result = view.getResult();
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->size(), view.image()->size());
    // A picture that was loaded last has no state until the queue has come to it.
    ASSERT_FALSE(view.copyMaskPlane().isEmpty());
    EXPECT_GE(view.historyCurrentState(), 0);
    EXPECT_LT(view.historyCurrentState(), view.historyLength());
}

TEST_F(ThreadsTest, PictureThatComesWhileAnotherIsWorkedOnBeginsWithOneStateAndAWholeMask) {
    view.setViewSize({300, 200});
    for (int round = 0; round < 100; ++round) {
        view.setImage(picture(300, 200));
        stroke({20, 20}, {250, 150});
        view.prevHistoryState();
        view.loadMask(Bitmap::createFilled(300, 200, {0, 0, 0, 9}).value());
        for (int i = 0; i < round % 10; ++i)
            drawFrame();  // more or less of that is done then
        view.setImage(picture(100, 80));
        const Bitmap mask = view.copyMaskPlane();
        ASSERT_EQ(mask.width(), 100) << "round " << round;
        EXPECT_EQ(mask.pixel(50, 40).alpha, 255) << "round " << round;
        EXPECT_EQ(view.historyLength(), 1) << "round " << round;
        main.runAll();
    }
}

TEST_F(ThreadsTest, HistoryThatCannotBeKeptIsNotToldOfThePictureAfter) {
    view.setViewSize({300, 200});
    view.setImage(picture(300, 200));
    static_cast<void>(view.copyMaskPlane());
    std::filesystem::create_directory(view.historyDirectory() / "1.his");
    for (int round = 0; round < 200; ++round) {
        stroke({20, 20}, {250, 150});
        for (int i = 0; i < round % 20; ++i)
            drawFrame();  // more or less of that is done then
        view.setImage(picture(300, 200));
        static_cast<void>(view.copyMaskPlane());
        main.runAll();
        ASSERT_THAT(host.troubles, ::testing::IsEmpty()) << "round " << round;
    }
    stroke({20, 20}, {250, 150});
    static_cast<void>(view.copyMaskPlane());
    main.runAll();
    EXPECT_EQ(host.troubles.size(), 1U);
}

TEST_F(ThreadsTest, MaskPaintedOnThreadsEqualsTheMaskPaintedByHand) {
    foundation::ManualQueueFactory manual;
    RKImageCutView other{{manual, clock, notifications, home.path() / "other"}, host};
    for (RKImageCutView* each : {&view, &other}) {
        each->setViewSize({300, 200});
        each->setImage(picture(900, 600));
        each->setBrushHardness(0.4F);
        each->mouseDown({MouseButton::left, {20, 20}});
        for (int i = 1; i < 60; ++i)
            each->mouseDragged({MouseButton::left, {20 + 4.0 * i, 20 + 2.5 * i}});
        each->mouseUp({});
    }
    manual.settle();
    EXPECT_TRUE(samePixels(view.copyMaskPlane().view(), other.copyMaskPlane().view()));
}

TEST_F(ThreadsTest, DestroyedInTheMiddleOfItsWork) {
    for (int i = 0; i < 20; ++i) {
        RKImageCutView other{{queues, clock, notifications, home.path() / "other"}, host};
        other.setViewSize({300, 200});
        other.setImage(picture(400, 300));
        other.setBlurOn(true);
        other.mouseDown({MouseButton::left, {20, 20}});
        other.mouseDragged({MouseButton::left, {250, 150}});
        other.mouseUp({});
        other.prevHistoryState();
    }
    main.runAll();
}

}  // namespace
}  // namespace trimora::cutengine
