#include "util/TextField.h"

#include <QKeyEvent>
#include <algorithm>

#include "util/NumberDisplay.h"
#include "util/ValueControl.h"

namespace trimora::util {
namespace {

constexpr QLatin1Char kPercent('%');
constexpr int kFractionDigits = 2;

/// Where the number in a text ends: before the sign behind it.
qsizetype numberEnd(const QString& text) {
    return text.endsWith(kPercent) ? text.size() - 1 : text.size();
}

}  // namespace

QString trimmedOfPercent(const QString& text) {
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == kPercent)
        ++first;
    while (end > first && text[end - 1] == kPercent)
        --end;
    return text.mid(first, end - first);
}

TextField::TextField(QWidget* parent) : QLineEdit(parent) {
    connect(this, &QLineEdit::textEdited, this, [this] {
        edited_ = true;
        textDidChange();
    });
}

TextField::~TextField() = default;

void TextField::setControl(ValueControl* control) {
    control_ = control;
    if (control != nullptr)
        control->setBoundedField(this);
}

ValueControl* TextField::control() const {
    return control_;
}

bool TextField::showsPercent() const {
    return showMode_ == QLatin1String("decimal");
}

float TextField::floatValue() const {
    return leadingNumber(text().toStdString());
}

QString TextField::formatted(float value) const {
    QString shown = QString::fromStdString(displayedNumber(value, showsPercent() ? 0 : kFractionDigits));
    return showsPercent() ? shown + kPercent : shown;
}

void TextField::setFloatValue(float value) {
    rewrite(formatted(value));
    edited_ = false;
}

void TextField::setFloat(float value, const char* format) {
    setText(QString::asprintf(format, static_cast<double>(value)));
}

QString TextField::textWithPoints() const {
    return text().replace(QLatin1Char(','), QLatin1Char('.'));
}

void TextField::rewrite(const QString& text) {
    if (text == this->text())
        return;
    const qsizetype behindCaret = std::max<qsizetype>(0, numberEnd(this->text()) - cursorPosition());
    setText(text);
    setCursorPosition(static_cast<int>(std::max<qsizetype>(0, numberEnd(text) - behindCaret)));
}

void TextField::textDidChange() {
    if (!control_ || showsPercent())
        return;
    const QString typed = trimmedOfPercent(textWithPoints());
    if (!typed.isEmpty() && !typed.endsWith(QLatin1Char('.')))
        rewrite(formatted(leadingNumber(typed.toStdString())));
}

void TextField::textDidEndEditing() {
    const QString typed = textWithPoints();
    if (!control_ || typed.endsWith(QLatin1Char('.')))
        return;
    if (!typed.isEmpty()) {
        control_->setFloatValue(leadingNumber(typed.toStdString()));
        control_->sendAction();
    }
    if (control_)
        setFloatValue(control_->floatValue());
}

void TextField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        textDidEndEditing();
        if (!edited_)  // showing what the text came to ended the edit
            didCommit();
    } else if (event->key() == Qt::Key_Escape && edited_ && control_) {
        setFloatValue(control_->floatValue());
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void TextField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const bool keyboardComesBack =
        event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (edited_ && !keyboardComesBack)
        textDidEndEditing();
}

}  // namespace trimora::util
