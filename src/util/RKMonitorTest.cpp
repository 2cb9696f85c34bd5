#include "util/RKMonitor.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>

namespace trimora::util {
namespace {

class RKMonitorTest : public ::testing::Test {
 protected:
    RKMonitorTest() {
        QEvent leaving(QEvent::ApplicationDeactivate);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &leaving);
    }
    static int held() {
        return RKMonitor::altPressed() * 8 + RKMonitor::ctrlPressed() * 4 + RKMonitor::cmndPressed() * 2 +
               RKMonitor::shiftPressed();
    }
    QWidget window_;
};

TEST_F(RKMonitorTest, EachModifierKeyIsHeldFromItsPressToItsRelease) {
    const std::pair<Qt::Key, int> keys[] = {
        {Qt::Key_Alt, 8}, {Qt::Key_Meta, 4}, {Qt::Key_Control, 2}, {Qt::Key_Shift, 1}};
    for (const auto& [key, bit] : keys) {
        QTest::keyPress(&window_, key);
        EXPECT_EQ(held(), bit) << key;
        const Qt::KeyboardModifiers before = key == Qt::Key_Alt       ? Qt::AltModifier
                                             : key == Qt::Key_Meta    ? Qt::MetaModifier
                                             : key == Qt::Key_Control ? Qt::ControlModifier
                                                                      : Qt::ShiftModifier;
        QTest::keyRelease(&window_, key, before);
        EXPECT_EQ(held(), 0) << key;
    }
}

TEST_F(RKMonitorTest, AClickTellsTheKeysThatAreHeldToo) {
    QTest::mouseClick(&window_, Qt::LeftButton, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(held(), 8 + 1);
}

TEST_F(RKMonitorTest, LosingTheKeyboardLetsAllKeysGo) {
    QTest::keyPress(&window_, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(held(), 2);
    QEvent leaving(QEvent::ApplicationDeactivate);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &leaving);
    EXPECT_EQ(held(), 0);
}

TEST_F(RKMonitorTest, EventsPassOnUnchanged) {
    struct Counting : QWidget {
        void keyPressEvent(QKeyEvent*) override { ++keys; }
        int keys = 0;
    } widget;
    QTest::keyPress(&widget, Qt::Key_Alt);
    EXPECT_EQ(widget.keys, 1);
}

}  // namespace
}  // namespace trimora::util
