#include "controls/GallerySpecimens.h"

#include <QHBoxLayout>
#include <QPainter>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/TopBarButton.h"
#include "controls/VerticallyCenteredTextFieldCell.h"
#include "util/ActionBlock.h"
#include "util/ButtonBlocker.h"
#include "util/KnobScrollBar.h"

namespace trimora::controls {
namespace {

constexpr int kMost = 100;

QString nameOf(BlockKey key) {
    return key == BlockKey::first ? QStringLiteral("first") : QStringLiteral("second");
}

}  // namespace

QSize TextCellSpecimen::sizeHint() const {
    return {metrics::kCallWidth, metrics::kToolButton};
}

void TextCellSpecimen::paintEvent(QPaintEvent* /*event*/) {
    VerticallyCenteredTextFieldCell cell;
    cell.title = QStringLiteral("One line");
    QPainter painter(this);
    painter.fillRect(rect(), palette::kRaised);
    cell.drawInteriorWithFrame_inView(QRectF(rect()).adjusted(metrics::kGap, 0, -metrics::kGap, 0), painter);
}

PanelSpecimen::PanelSpecimen(const ControlContext& context) : button_(*new TopBarButton(context)) {
    button_.setText(QStringLiteral("Work"));
    auto* const frame = new QHBoxLayout(this);
    frame->setContentsMargins(metrics::kGap, metrics::kGap, metrics::kGap, metrics::kGap);
    frame->addWidget(&button_);
}

void PanelSpecimen::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), palette::kRaised);
}

QScrollBar* makeScrollBarSpecimen() {
    auto* const bar = new util::KnobScrollBar(Qt::Horizontal);
    bar->setRange(0, kMost);
    bar->setPageStep(kMost);
    bar->setFixedWidth(metrics::kCallWidth);
    return bar;
}

void blockView(QWidget& view) {
    for (const BlockKey key : {BlockKey::first, BlockKey::second, BlockKey::first})
        util::blockWithoutProgress(view, nameOf(key));
}

void blockButton(LayerButton& button) {
    for (const BlockKey key : {BlockKey::first, BlockKey::second, BlockKey::first})
        util::blockWith(button, nameOf(key));
}

void unblockBoth(QWidget& view, LayerButton& button, BlockKey key) {
    util::unblock(view, nameOf(key));
    util::unblockWith(button, nameOf(key));
}

}  // namespace trimora::controls
