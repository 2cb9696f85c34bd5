#pragma once

#include <QCoreApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>
#include <string>
#include <vector>

#include "controls/ControlContext.h"
#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"

/// What the tests of controls share: a world whose time stands still, and a window in it that is driven
/// by the events of a real pointer and keyboard.
namespace trimora::controls {

struct VirtualWorld {
    foundation::ManualQueueFactory queues;
    foundation::VirtualTime time;
    foundation::NotificationCenter notifications;

    [[nodiscard]] ControlContext context() { return {time, time, queues.mainQueue(), notifications}; }

    /// Runs what is due on the way, and lets the toolkit deliver its events after each.
    void advance(double seconds) {
        time.advance(seconds, [this] { settle(); });
        settle();
    }
    void settle() {
        queues.settle();
        QCoreApplication::processEvents();
    }
};

/// Counts how often a notification is posted.
class NotificationCount {
 public:
    NotificationCount(foundation::NotificationCenter& center, const char* name)
        : observation_(center.observe(name, [this](const auto&) { ++count_; })) {}
    [[nodiscard]] int operator*() const { return count_; }

 private:
    int count_ = 0;
    foundation::NotificationCenter::Observation observation_;
};

/// A shown window with some room round the control under test, which lies at kPlace.
class TestWindow : public QWidget {
 public:
    static constexpr QPoint kPlace{60, 60};

    TestWindow() {
        resize(360, 300);
        // Holds the keyboard to begin with, as the picture does in the program.
        setFocusPolicy(Qt::StrongFocus);
        setFocus();
    }

    /// Takes the control in and shows both.
    void hold(QWidget& control, const QSize& size) {
        control.setParent(this);
        control.setGeometry(QRect(kPlace, size));
        control.show();
        show();
        activateWindow();
        QCoreApplication::processEvents();
        moveOut();
    }

    /// All positions are the control's own, y-down; the events take the road of a real pointer.
    void moveTo(const QWidget& control, const QPoint& position) {
        QTest::mouseMove(windowHandle(), control.mapTo(this, position));
        QCoreApplication::processEvents();
    }
    void moveOut() {
        QTest::mouseMove(windowHandle(), QPoint(4, 4));
        QCoreApplication::processEvents();
    }
    void press(const QWidget& control, const QPoint& position, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(windowHandle(), button, {}, control.mapTo(this, position));
    }
    void release(const QWidget& control, const QPoint& position, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(windowHandle(), button, {}, control.mapTo(this, position));
    }
    void click(const QWidget& control, const QPoint& position) {
        press(control, position);
        release(control, position);
    }
};

}  // namespace trimora::controls
