#include "app/MessageLine.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "controls/Metrics.h"
#include "controls/StyleSheet.h"
#include "util/SpinningProgress.h"

namespace trimora::app {

namespace metrics = controls::metrics;

namespace {

constexpr double kNoteTime = 8;  // seconds

constexpr const char* kSheet = R"(
#messageText[trouble="true"] { color: @accentEnd; }
#messageLine { background: @raised; border: 1px solid @line; border-radius: @radius; }
#messageButton { background: transparent; border: none; color: @accentEnd; padding: 0px 4px; }
#messageButton:hover { color: @text; }
)";

}  // namespace

MessageLine::MessageLine(const controls::ControlContext& context, QWidget* parent)
    : QFrame(parent),
      scheduler_(context.scheduler),
      mainQueue_(context.mainQueue),
      busy_(new util::SpinningProgress(this)),
      label_(new QLabel(this)),
      button_(new QPushButton(this)) {
    setObjectName(QStringLiteral("messageLine"));
    setAccessibleName(QCoreApplication::translate("MessageLine", "Message"));
    setCursor(Qt::ArrowCursor);
    setFixedHeight(metrics::kMessageHeight);
    label_->setObjectName(QStringLiteral("messageText"));
    label_->setTextFormat(Qt::PlainText);
    busy_->setFixedSize(metrics::kMessageWheel, metrics::kMessageWheel);

    button_->setObjectName(QStringLiteral("messageButton"));
    button_->setCursor(Qt::PointingHandCursor);
    button_->setFocusPolicy(Qt::NoFocus);
    connect(button_, &QPushButton::clicked, this, [this] {
        const auto action = std::exchange(action_, nullptr);
        dismiss();
        action();
    });

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(metrics::kPanelMargin, 0, metrics::kPanelMargin, 0);
    row->setSpacing(metrics::kGap);
    row->addWidget(busy_);
    row->addWidget(label_);
    row->addWidget(button_);
    parent->installEventFilter(this);
    hide();
}

MessageLine::~MessageLine() = default;

void MessageLine::progress(const std::string& line) {
    show(line, Kind::progress);
}

void MessageLine::note(const std::string& line) {
    show(line, Kind::note);
}

void MessageLine::trouble(const std::string& line) {
    show(line, Kind::trouble);
}

void MessageLine::offer(const std::string& line, const std::string& title, std::function<void()> action) {
    action_ = std::move(action);
    button_->setText(QString::fromStdString(title));
    show(line, Kind::offer);
}

QString MessageLine::text() const {
    return text_;
}

void MessageLine::show(const std::string& line, Kind kind) {
    if (lineShown_)
        lineShown_(kind, line);
    if (styleSheet().isEmpty())  // not sooner: most starts show no line, and pay for none
        setStyleSheet(controls::styleSheet(kSheet));
    text_ = QString::fromStdString(line);
    label_->setToolTip(text_);
    label_->setAccessibleName(text_);
    label_->setProperty("trouble", kind == Kind::trouble);
    label_->style()->polish(label_);
    busy_->setVisible(kind == Kind::progress);
    button_->setVisible(kind == Kind::offer);
    const bool goesByItself = kind == Kind::note || kind == Kind::offer;
    setAttribute(Qt::WA_TransparentForMouseEvents, kind == Kind::note || kind == Kind::progress);
    fade_ = goesByItself ? scheduler_.after(kNoteTime, mainQueue_, [this] { dismiss(); }) : nullptr;
    place();
    raise();
    setVisible(true);
    if (kind == Kind::trouble) {
        QAccessibleEvent alert(label_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void MessageLine::dismiss() {
    text_.clear();
    hide();
}

void MessageLine::place() {
    const int most = std::max(parentWidget()->width() - 2 * metrics::kMessageDistance, 0);
    label_->setText(text_);
    const int beside = sizeHint().width() - label_->sizeHint().width();
    label_->setText(label_->fontMetrics().elidedText(text_, Qt::ElideMiddle, most - beside));
    const int width = std::min(sizeHint().width(), most);
    setGeometry((parentWidget()->width() - width) / 2,
                parentWidget()->height() - metrics::kMessageDistance - height(), width, height());
}

bool MessageLine::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize && !text_.isEmpty())
        place();
    return QFrame::eventFilter(watched, event);
}

void MessageLine::mousePressEvent(QMouseEvent* /*event*/) {
    dismiss();
}

}  // namespace trimora::app
