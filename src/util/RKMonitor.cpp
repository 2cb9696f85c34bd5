#include "util/RKMonitor.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

namespace trimora::util {
namespace {

class SharedMonitor final : public QObject {
 public:
    explicit SharedMonitor(QCoreApplication* application) : QObject(application) {
        application->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
            record(static_cast<QKeyEvent*>(event)->modifiers());
        else if (event->isInputEvent())
            record(static_cast<QInputEvent*>(event)->modifiers());
        else if (event->type() == QEvent::ApplicationDeactivate)
            record({});
        return QObject::eventFilter(watched, event);
    }

    bool alt = false;
    bool ctrl = false;
    bool cmnd = false;
    bool shift = false;

 private:
    void record(Qt::KeyboardModifiers held) {
        alt = held.testFlag(Qt::AltModifier);
        ctrl = held.testFlag(Qt::MetaModifier);
        cmnd = held.testFlag(Qt::ControlModifier);
        shift = held.testFlag(Qt::ShiftModifier);
    }
};

// Owned by the application, so it is none before there is one and after it has gone.
QPointer<SharedMonitor> shared;

void startMonitor() {
    shared = new SharedMonitor(QCoreApplication::instance());
}

bool recorded(bool SharedMonitor::*key) {
    return shared && shared->*key;
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(startMonitor)

bool RKMonitor::altPressed() {
    return recorded(&SharedMonitor::alt);
}

bool RKMonitor::cmndPressed() {
    return recorded(&SharedMonitor::cmnd);
}

bool RKMonitor::ctrlPressed() {
    return recorded(&SharedMonitor::ctrl);
}

bool RKMonitor::shiftPressed() {
    return recorded(&SharedMonitor::shift);
}

}  // namespace trimora::util
