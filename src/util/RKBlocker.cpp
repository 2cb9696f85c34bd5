#include "util/RKBlocker.h"

#include <QMouseEvent>
#include <QPainter>

#include "util/SpinningProgress.h"

namespace trimora::util {
namespace {

constexpr float kVeil = 0.75;  // opacity; what is blocked can be made out, and the wheel stands clear of it

}  // namespace

RKBlocker::RKBlocker(QWidget* parent) : QWidget(parent), prog_(new SpinningProgress(this)) {
    coverParent();
}

void RKBlocker::block(const QString& key) {
    if (!blockers_.contains(key))
        blockers_.append(key);
}

void RKBlocker::unblock(const QString& key) {
    blockers_.removeAll(key);
    if (blockers_.isEmpty())
        removeFromParent();
}

void RKBlocker::removeFromParent() {
    hide();
    if (parentWidget() != nullptr)
        parentWidget()->removeEventFilter(this);
    setParent(nullptr);
    deleteLater();
}

void RKBlocker::coverParent() {
    if (parentWidget() == nullptr)
        return;
    parentWidget()->installEventFilter(this);
    setGeometry(parentWidget()->rect());
    raise();
}

bool RKBlocker::event(QEvent* event) {
    if (event->type() == QEvent::ParentAboutToChange && parentWidget() != nullptr)
        parentWidget()->removeEventFilter(this);
    if (event->type() == QEvent::ParentChange)
        coverParent();
    return QWidget::event(event);
}

bool RKBlocker::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void RKBlocker::paintEvent(QPaintEvent* /*event*/) {
    QColor veil = palette().color(QPalette::Window);
    veil.setAlphaF(kVeil);
    QPainter(this).fillRect(rect(), veil);
}

void RKBlocker::resizeEvent(QResizeEvent* /*event*/) {
    prog_->setGeometry(rect());
}

// An event that is accepted here, which it is unless somebody ignores it, goes no further.
void RKBlocker::mousePressEvent(QMouseEvent* /*event*/) {}
void RKBlocker::mouseMoveEvent(QMouseEvent* /*event*/) {}
void RKBlocker::mouseReleaseEvent(QMouseEvent* /*event*/) {}

}  // namespace trimora::util
