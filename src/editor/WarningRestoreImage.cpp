#include "editor/WarningRestoreImage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "controls/GradientButton.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "editor/EditorNotifications.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
namespace palette = controls::palette;
using controls::GradientButton;

WarningRestoreImage::WarningRestoreImage(const controls::ControlContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      infoLabel_(new QLabel(tr("Restore the whole picture?"))),
      noDeleteProgress_(new GradientButton(context)),
      yesDeleteProgress_(new GradientButton(context)) {
    setupNib();
}

void WarningRestoreImage::setupNib() {
    infoLabel_->setAlignment(Qt::AlignCenter);
    setAccessibleName(infoLabel_->text());
    noDeleteProgress_->setText(tr("No"));
    noDeleteProgress_->setToolTip(tr("Keep what is cut away (Esc)"));
    yesDeleteProgress_->setText(tr("Yes"));
    yesDeleteProgress_->setToolTip(tr("Bring the whole picture back"));
    yesDeleteProgress_->setActiveGradient({palette::kAccentStart, palette::kAccentEnd});
    yesDeleteProgress_->setBorderColor(palette::kAccent);
    connect(noDeleteProgress_, &QAbstractButton::clicked, this, &WarningRestoreImage::clickNo);
    connect(yesDeleteProgress_, &QAbstractButton::clicked, this, &WarningRestoreImage::clickYes);

    auto* const answers = new QHBoxLayout;
    answers->setSpacing(metrics::kGap);
    answers->addStretch();
    for (GradientButton* const button : {noDeleteProgress_, yesDeleteProgress_}) {
        button->setFixedSize(metrics::kAnswerWidth, metrics::kBarButton);
        answers->addWidget(button);
    }
    answers->addStretch();
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(metrics::kPanelMargin, metrics::kPanelMargin, metrics::kPanelMargin,
                             metrics::kPanelMargin + metrics::kGap);
    rows->addWidget(infoLabel_, 1);
    rows->addLayout(answers);
}

void WarningRestoreImage::setCorners(controls::SheetCorners corners) {
    corners_ = corners;
    update();
}

void WarningRestoreImage::clickNo() {
    if (cancelActionHandler_)
        cancelActionHandler_();
}

void WarningRestoreImage::clickYes() {
    if (!cancelActionHandler_)
        return;
    cancelActionHandler_();
    context_.notifications.post(notifications::kResetImage);
}

void WarningRestoreImage::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    controls::paintSheet(painter, rect(), corners_);
}

}  // namespace trimora::editor
