#include "app/GdprSheet.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/Sheet.h"

namespace trimora::app {

namespace metrics = controls::metrics;
namespace palette = controls::palette;

namespace {

QString words(const char* english) {
    return QCoreApplication::translate("GdprSheet", english);
}

constexpr int kSheetWidth = 520;  // lines of a length that is read without effort

QLabel* makeText(const QString& text, const QColor& colour) {
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QPalette colours = label->palette();
    colours.setColor(QPalette::WindowText, colour);
    label->setPalette(colours);
    return label;
}

QLabel* makeTitle(const QString& text) {
    QLabel* const title = makeText(text, palette::kText);
    QFont font = title->font();
    font.setPointSizeF(metrics::kQuestionFont);
    font.setBold(true);
    title->setFont(font);
    return title;
}

}  // namespace

QString GdprSheet::whatIsRecorded() {
    return words(
        "Trimora keeps a record on this machine of which of its buttons are pressed and when, how long it is "
        "in "
        "use, its own version, and what kind of machine this is: model, system, language and time zone. "
        "After a "
        "crash it adds the error's message and its place in the program. Beyond that it never records "
        "pictures, "
        "file names or anything that you type.");
}

QString GdprSheet::hostOf(const std::string& destination) {
    const QString address = QString::fromStdString(destination);
    const QString host = QUrl(address).host();
    return host.isEmpty() ? address : host;
}

GdprSheet::GdprSheet(const Place& place, const std::string& destination,
                     std::function<void(GdprConsent::Answer)> answered)
    : QWidget(&place.over),
      top_(place.top),
      answered_(std::move(answered)),
      yes_(makeButton(words("Yes, send it"), GdprConsent::Answer::yes)),
      no_(makeButton(words("No, record nothing"), GdprConsent::Answer::no)) {
    setObjectName(QStringLiteral("gdprSheet"));
    setFocusPolicy(Qt::StrongFocus);

    const QString question = words("May Trimora send usage data?");
    setAccessibleName(question);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(2 * metrics::kPanelMargin, 2 * metrics::kPanelMargin,
                               2 * metrics::kPanelMargin, 2 * metrics::kPanelMargin);
    column->setSpacing(metrics::kPanelMargin);
    column->addWidget(makeTitle(question));
    column->addWidget(makeText(whatIsRecorded(), palette::kText));
    column->addWidget(
        makeText(words("With your Yes the record is sent to %1, under a number that stands for this "
                       "machine and Trimora alone. With a No it is deleted, and nothing more is "
                       "recorded. Until you answer it stays here.")
                     .arg(hostOf(destination)),
                 palette::kText));
    auto* const row = new QHBoxLayout;
    row->setSpacing(metrics::kGap);
    row->addWidget(yes_, 1);
    row->addWidget(no_, 1);
    column->addLayout(row);
    column->addWidget(
        makeText(words("Escape puts the question off until the next start. You can see the record and "
                       "change your answer at any time: Help > Usage data…"),
                 palette::kSecondaryText));
    place.over.installEventFilter(this);
    hang();
    show();
    raise();
    setFocus(Qt::OtherFocusReason);
}

// The house's buttons take the keyboard by Tab alone; so neither of these has it when the sheet comes.
QPushButton* GdprSheet::makeButton(const QString& text, GdprConsent::Answer answer) {
    auto* const button = new QPushButton(text);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    button->setMinimumHeight(metrics::kBarButton);
    connect(button, &QPushButton::clicked, this, [this, answer] {
        hide();
        deleteLater();
        if (const auto tell = std::exchange(answered_, nullptr))
            tell(answer);
    });
    return button;
}

bool GdprSheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize)
        hang();
    return QWidget::eventFilter(watched, event);
}

void GdprSheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    hide();
    deleteLater();
}

void GdprSheet::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    controls::paintSheet(painter, rect(), controls::SheetCorners::lower);
}

void GdprSheet::hang() {
    const int available = parentWidget()->width() - 2 * metrics::kGap;
    const int width = std::min(kSheetWidth, available);
    setGeometry((parentWidget()->width() - width) / 2, top_ ? top_() : 0, width, heightForWidth(width));
}

}  // namespace trimora::app
