#include "controls/SizeControl.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include "controls/Metrics.h"

namespace trimora::controls {

SizeControl::SizeControl(const QString& name, int smallest, int largest, QWidget* parent)
    : QWidget(parent), slider_(new QSlider(Qt::Vertical)), number_(new QSpinBox) {
    slider_->setRange(smallest, largest);
    slider_->setPageStep(10);
    slider_->setFixedHeight(metrics::kSliderLength);
    slider_->setFocusPolicy(Qt::TabFocus);
    slider_->setAccessibleName(name);
    slider_->setToolTip(name);

    number_->setRange(smallest, largest);
    number_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    number_->setAlignment(Qt::AlignCenter);
    number_->setKeyboardTracking(false);
    number_->setAccessibleName(QStringLiteral("%1 in points").arg(name));
    number_->setToolTip(QStringLiteral("%1, %2 to %3 points").arg(name).arg(smallest).arg(largest));

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(metrics::kGap);
    column->addWidget(slider_, 0, Qt::AlignHCenter);
    column->addWidget(number_);

    connect(slider_, &QSlider::valueChanged, this, &SizeControl::take);
    connect(number_, &QSpinBox::valueChanged, this, &SizeControl::take);
    connect(number_->findChild<QLineEdit*>(), &QLineEdit::returnPressed, number_, &QWidget::clearFocus);
}

int SizeControl::value() const {
    return slider_->value();
}

void SizeControl::showValue(int value) {
    const QSignalBlocker quietSlider(slider_);
    const QSignalBlocker quietNumber(number_);
    slider_->setValue(value);
    number_->setValue(value);
}

void SizeControl::take(int value) {
    showValue(value);
    if (changed_)
        changed_(value);
}

}  // namespace trimora::controls
