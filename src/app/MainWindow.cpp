#include "app/MainWindow.h"

#include <QChildEvent>
#include <QDialog>
#include <QHideEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "app/FirstPaint.h"
#include "app/MessageLine.h"
#include "app/Toolbar.h"
#include "app/WindowController.h"
#include "controls/Icons.h"
#include "controls/Metrics.h"

namespace trimora::app {

namespace metrics = controls::metrics;

using foundation::Rect;

MainWindow::MainWindow(const controls::ControlContext& context, PlaceStore place) : place_(std::move(place)) {
    setWindowTitle(QStringLiteral("Trimora"));
    // Panels and task switchers show it, which nobody waits for, and it is drawn in many sizes.
    afterFirstPaint(
        *this, *this, [this] { setWindowIcon(controls::icon(QStringLiteral("trimora"))); }, kUntilShown);
    setContextMenuPolicy(Qt::NoContextMenu);
    setMinimumSize(metrics::kSmallestWidth, metrics::kSmallestHeight);
    auto* const content = new QWidget;
    toolbar_ = new Toolbar(context, content);
    messages_ = new MessageLine(context, content);
    column_ = new QVBoxLayout(content);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    column_->addWidget(toolbar_);
    column_->addStretch();
    setCentralWidget(content);
    takePlace();
}

MainWindow::~MainWindow() {
    if (isVisible())
        keepPlace();
}

void MainWindow::setContentViewController(util::RuntimeObject* controller, QWidget* view) {
    contentViewController_ = controller;
    delete std::exchange(contentView_, view);
    column_->insertWidget(1, view, 1);
    messages_->raise();
    view->setFocus();
}

int MainWindow::contentTop() const {
    return toolbar_->mapTo(this, QPoint(0, toolbar_->height())).y();
}

void MainWindow::orderFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::toggleFullScreen() {
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

// ── Size and place ─────────────────────────────────────────────────────────────────────────────

void MainWindow::takePlace() {
    const QByteArray kept = QByteArray::fromBase64(QByteArray::fromStdString(place_.read()));
    if (!restoreGeometry(kept))
        resize(QSize(metrics::kWindowWidth, metrics::kWindowHeight)
                   .boundedTo(screen()->availableSize())
                   .expandedTo(minimumSize()));
}

void MainWindow::keepPlace() const {
    place_.write(saveGeometry().toBase64().toStdString());
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (occlusionChanged_)
        occlusionChanged_();
}

void MainWindow::hideEvent(QHideEvent* event) {
    QMainWindow::hideEvent(event);
    if (!event->spontaneous())
        keepPlace();
    if (occlusionChanged_)
        occlusionChanged_();
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    if (occlusionChanged_)
        occlusionChanged_();
    if (fullScreenChanged_)
        fullScreenChanged_();
}

// ── Sheets ─────────────────────────────────────────────────────────────────────────────────────

void MainWindow::childEvent(QChildEvent* event) {
    QMainWindow::childEvent(event);
    if (event->added() && event->child()->isWidgetType())
        event->child()->installEventFilter(this);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        auto* const sheet = qobject_cast<QDialog*>(watched);
        if (sheet != nullptr && sheet->windowModality() == Qt::WindowModal)
            placeSheet(*sheet);
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::placeSheet(QWidget& sheet) {
    if (windowController_ == nullptr)
        return;
    // Proposed as sheets are on a bare window: in the middle, hanging from the upper edge. y runs up.
    const Rect proposed{(width() - sheet.width()) / 2.0, static_cast<double>(height()),
                        static_cast<double>(sheet.width()), 0};
    const Rect place = windowController_->window_willPositionSheet_usingRect(proposed);
    // A sheet with a title bar hangs from that: the desktop gives it one as high as the window's own.
    const bool hasBar = !sheet.windowFlags().testFlag(Qt::FramelessWindowHint) && windowHandle() != nullptr;
    const int bar = hasBar ? windowHandle()->frameMargins().top() : 0;
    sheet.setGeometry(QRect(mapToGlobal(QPointF(place.x, height() - place.y + bar).toPoint()), sheet.size()));
}

}  // namespace trimora::app
