#include "editor/WarningRestoreImageController.h"

#include <QEvent>

#include "controls/GradientButton.h"
#include "controls/Metrics.h"

namespace trimora::editor {

namespace metrics = controls::metrics;

WarningRestoreImageController::WarningRestoreImageController(const controls::ControlContext& context,
                                                             QWidget& screen)
    : QDialog(&screen, Qt::Dialog | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    loadView(context);
    viewDidLoad();
}

void WarningRestoreImageController::loadView(const controls::ControlContext& context) {
    warningView_ = new WarningRestoreImage(context, this);
    warningView_->setGeometry(0, 0, metrics::kWarningWidth, metrics::kWarningHeight);
    setFixedSize(warningView_->size());
    setWindowTitle(warningView_->accessibleName());
}

void WarningRestoreImageController::viewDidLoad() {
    warningView_->setCorners(controls::sheetCornersHere());
    makeWarningHandler();
}

void WarningRestoreImageController::makeWarningHandler() {
    warningView_->setCancelActionHandler([this] { done(QDialog::Accepted); });
}

void WarningRestoreImageController::presentAsSheet() {
    open();
}

void WarningRestoreImageController::reject() {
    warningView_->clickNo();
}

bool WarningRestoreImageController::event(QEvent* event) {
    // Before the toolkit hands the keyboard over itself, for a reason that shows no ring: here the ring
    // tells what Return will answer.
    if (event->type() == QEvent::WindowActivate && focusWidget() != nullptr)
        focusWidget()->setFocus(Qt::TabFocusReason);
    return QDialog::event(event);
}

void WarningRestoreImageController::showEvent(QShowEvent* event) {
    const QWidget& screen = *parentWidget();
    move(screen.mapToGlobal(QPoint((screen.width() - width()) / 2, 0)));
    QDialog::showEvent(event);
    warningView_->noDeleteProgress().setFocus();
}

}  // namespace trimora::editor
