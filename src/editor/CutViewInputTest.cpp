#include "editor/CutViewInput.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QWheelEvent>

namespace trimora::editor {
namespace {

using foundation::IntRect;
using foundation::Point;

QWheelEvent wheel(QPoint pixels, QPoint angle, Qt::KeyboardModifiers held = Qt::NoModifier,
                  Qt::ScrollPhase phase = Qt::NoScrollPhase) {
    return {QPointF(), QPointF(), pixels, angle, Qt::NoButton, held, phase, false};
}

QKeyEvent key(Qt::Key letter, quint32 place) {
    return {QEvent::KeyPress, letter, Qt::NoModifier, place, 0, 0};
}

TEST(CutViewInput, YCountsUpFromTheBottomEdge) {
    EXPECT_EQ(viewPoint({10, 0}, 300), (Point{10, 300}));
    EXPECT_EQ(viewPoint({10.5, 300}, 300), (Point{10.5, 0}));
}

TEST(CutViewInput, AnAreaIsCoveredByWholePoints) {
    EXPECT_EQ(widgetRect({1.5, 2.25, 3, 4}, 100), QRect(1, 93, 4, 5));
    EXPECT_EQ(widgetRect({0, 0, 400, 300}, 300), QRect(0, 0, 400, 300));
}

TEST(CutViewInput, DevicePixelsRoundOutwards) {
    EXPECT_EQ(devicePixels({1, 2, 3, 4}, 1), (IntRect{1, 2, 3, 4}));
    EXPECT_EQ(devicePixels({1, 2, 3, 4}, 2), (IntRect{2, 4, 6, 8}));
    EXPECT_EQ(devicePixels({1, 1, 3, 3}, 1.5), (IntRect{1, 1, 5, 5}));
}

TEST(CutViewInput, ANotchOfTheWheelIsTenPoints) {
    EXPECT_EQ(scrollDelta(wheel({}, {0, 120})), 10);
    EXPECT_EQ(scrollDelta(wheel({}, {0, -240})), -20);
}

TEST(CutViewInput, ATrackpadCountsAsItReports) {
    EXPECT_EQ(scrollDelta(wheel({0, 7}, {0, 56}, Qt::NoModifier, Qt::ScrollUpdate)), 7);
}

TEST(CutViewInput, PixelsOfAWheelWithoutPhasesAreNotTrusted) {
    EXPECT_EQ(scrollDelta(wheel({0, 120}, {0, 120})), 10);
}

TEST(CutViewInput, AltTurnsASidewaysWheelBack) {
    EXPECT_EQ(scrollDelta(wheel({}, {120, 0}, Qt::AltModifier)), 10);
    EXPECT_EQ(scrollDelta(wheel({}, {120, 0})), 0);
    EXPECT_EQ(scrollDelta(wheel({}, {0, -120}, Qt::AltModifier)), -10);
}

TEST(CutViewInput, APinchZoomsByItsGrowth) {
    EXPECT_DOUBLE_EQ(scrollDeltaOfPinch(0.1) / 50 + 1, 1.1);
}

TEST(CutViewInput, CommandIsCtrlAndOptionIsAlt) {
    EXPECT_EQ(modifiers(Qt::ControlModifier), (cutengine::Modifiers{.option = false, .command = true}));
    EXPECT_EQ(modifiers(Qt::AltModifier | Qt::ShiftModifier),
              (cutengine::Modifiers{.option = true, .command = false}));
}

TEST(CutViewInput, OtherButtonsMeanNothing) {
    EXPECT_EQ(mouseButton(Qt::LeftButton), cutengine::MouseButton::left);
    EXPECT_EQ(mouseButton(Qt::RightButton), cutengine::MouseButton::right);
    EXPECT_EQ(mouseButton(Qt::MiddleButton), std::nullopt);
}

TEST(CutViewInput, AKeyIsKnownByItsPlaceWhateverTheLayoutPutsThere) {
    constexpr quint32 kPlaceOfI = 31;
    EXPECT_EQ(keyCode(key(Qt::Key_I, kPlaceOfI)), cutengine::kKeyCodeI);
    EXPECT_EQ(keyCode(key(Qt::Key_C, kPlaceOfI)), cutengine::kKeyCodeI);
    EXPECT_EQ(keyCode(key(Qt::Key_I, kPlaceOfI + 1)), std::nullopt);
    EXPECT_EQ(keyCode(key(Qt::Key_I, 0)), cutengine::kKeyCodeI);
}

}  // namespace
}  // namespace trimora::editor
