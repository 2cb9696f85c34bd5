#include "platform/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <utility>

namespace trimora::platform {

QtMainQueue::~QtMainQueue() {
    QCoreApplication::sendPostedEvents(&receiver_, QEvent::MetaCall);
}

void QtMainQueue::async(foundation::Task task) {
    QMetaObject::invokeMethod(&receiver_, std::move(task), Qt::QueuedConnection);
}

void QtMainQueue::sync(const foundation::Task& task) {
    if (isCurrent())
        task();
    else
        QMetaObject::invokeMethod(&receiver_, task, Qt::BlockingQueuedConnection);
}

bool QtMainQueue::isCurrent() const {
    return QThread::currentThread() == receiver_.thread();
}

}  // namespace trimora::platform
