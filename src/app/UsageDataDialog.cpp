#include "app/UsageDataDialog.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <utility>

#include "app/GdprSheet.h"
#include "controls/Metrics.h"

namespace trimora::app {

namespace metrics = controls::metrics;

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 560;

QString words(const char* english) {
    return QCoreApplication::translate("UsageDataDialog", english);
}

/// What a Yes means, which depends on whether there is anywhere to send to.
QString meaningOfYes(const GdprConsent& consent) {
    if (const auto destination = consent.recording().destination())
        return words("Yes, record and send to %1").arg(GdprSheet::hostOf(*destination));
    return words("Yes, record on this machine (this build has nowhere to send it)");
}

QLabel* makeText(const QString& text) {
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}  // namespace

UsageDataDialog::UsageDataDialog(GdprConsent& consent, std::function<void()> answered, QWidget* parent)
    : QDialog(parent),
      consent_(consent),
      answered_(std::move(answered)),
      yes_(makeChoice(meaningOfYes(consent), GdprConsent::Answer::yes)),
      no_(makeChoice(words("No, record nothing and delete what is stored"), GdprConsent::Answer::no)),
      asStored_(new QCheckBox(words("Byte for byte, as it would be sent"))),
      stored_(new QPlainTextEdit),
      delete_(new QPushButton(words("Delete what is stored"))) {
    setWindowTitle(words("Usage data"));
    resize(kWidth, kHeight);

    stored_->setReadOnly(true);
    stored_->setLineWrapMode(QPlainTextEdit::NoWrap);
    stored_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    stored_->setAccessibleName(words("What is stored on this machine"));

    auto* const close = new QPushButton(words("Close"));
    for (QPushButton* const button : {delete_, close})
        button->setAutoDefault(false);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(delete_);
    buttons->addStretch();
    buttons->addWidget(close);

    auto* const column = new QVBoxLayout(this);
    column->setSpacing(metrics::kPanelMargin);
    column->addWidget(makeText(GdprSheet::whatIsRecorded()));
    column->addWidget(yes_);
    column->addWidget(no_);
    column->addWidget(makeText(words("Stored on this machine:")));
    column->addWidget(stored_, 1);
    column->addWidget(asStored_);
    column->addLayout(buttons);

    connect(asStored_, &QCheckBox::toggled, this, [this] { refresh(); });
    connect(delete_, &QPushButton::clicked, this, [this] {
        consent_.recording().erase();
        refresh();
    });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    showAnswer();
    refresh();
}

QString UsageDataDialog::shownText() const {
    return stored_->toPlainText();
}

void UsageDataDialog::refresh() {
    const auto form =
        asStored_->isChecked() ? analytics::EventForm::asStored : analytics::EventForm::readable;
    consent_.recording().describe(form, [dialog = QPointer(this)](const std::string& text) {
        if (dialog != nullptr)
            dialog->stored_->setPlainText(text.empty() ? words("Nothing.") : QString::fromStdString(text));
    });
}

QRadioButton* UsageDataDialog::makeChoice(const QString& text, GdprConsent::Answer answer) {
    auto* const choice = new QRadioButton(text);
    connect(choice, &QRadioButton::clicked, this, [this, answer] {
        consent_.give(answer);
        refresh();
        if (answered_)
            answered_();
    });
    return choice;
}

// Neither is checked as long as there is no answer.
void UsageDataDialog::showAnswer() {
    const GdprConsent::Answer answer = consent_.answer();
    yes_->setChecked(answer == GdprConsent::Answer::yes);
    no_->setChecked(answer == GdprConsent::Answer::no);
}

}  // namespace trimora::app
