#include "app/StatusLine.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <chrono>

#include "controls/Metrics.h"

namespace trimora::app {

namespace metrics = controls::metrics;

namespace {

constexpr std::chrono::seconds kNoteTime{8};

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QFrame(parent), text_(new QLabel), numbers_(new QLabel), busy_(new QProgressBar) {
    setObjectName(QStringLiteral("statusLine"));
    setFixedHeight(metrics::kStatusHeight);
    text_->setObjectName(QStringLiteral("statusText"));
    text_->setTextFormat(Qt::PlainText);
    text_->setAccessibleName(QStringLiteral("Message"));
    text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    numbers_->setObjectName(QStringLiteral("statusNumbers"));
    numbers_->setAccessibleName(QStringLiteral("Size of the picture"));
    busy_->setRange(0, 0);
    busy_->setTextVisible(false);
    busy_->setFixedWidth(metrics::kBusyWidth);
    busy_->setAccessibleName(QStringLiteral("Working"));
    busy_->hide();

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(metrics::kPanelMargin, 0, metrics::kPanelMargin, 0);
    row->setSpacing(metrics::kGap);
    row->addWidget(busy_);
    row->addWidget(text_, 1);
    row->addWidget(numbers_);

    fade_.setSingleShot(true);
    fade_.setInterval(kNoteTime);
    fade_.callOnTimeout(text_, &QLabel::clear);
}

void StatusLine::progress(const std::string& line) {
    show(line, Kind::progress);
}

void StatusLine::note(const std::string& line) {
    show(line, Kind::note);
}

void StatusLine::trouble(const std::string& line) {
    show(line, Kind::trouble);
}

void StatusLine::setNumbers(const QString& text) {
    numbers_->setText(text);
}

QString StatusLine::text() const {
    return text_->text();
}

void StatusLine::show(const std::string& line, Kind kind) {
    const QString text = QString::fromStdString(line);
    text_->setText(text);
    text_->setToolTip(text);
    text_->setProperty("trouble", kind == Kind::trouble);
    text_->style()->polish(text_);
    busy_->setVisible(kind == Kind::progress);
    if (kind == Kind::note)
        fade_.start();
    else
        fade_.stop();
    if (kind == Kind::trouble) {
        QAccessibleEvent alert(text_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

}  // namespace trimora::app
