#include "app/Toolbar.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/TopBarButton.h"

namespace trimora::app {

namespace metrics = controls::metrics;

namespace {

using Place = ToolbarItem::Place;

constexpr int kGapBetweenItems = metrics::kGap;

}  // namespace

Toolbar::Toolbar(const controls::ControlContext& context, QWidget* parent)
    : QWidget(parent), more_(new controls::TopBarButton(context, this)) {
    setObjectName(QStringLiteral("toolbar"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedHeight(metrics::kToolbarHeight);
    more_->setImage(QStringLiteral("more"));
    more_->setAccessibleName(QCoreApplication::translate("Toolbar", "More"));
    more_->setToolTip(QCoreApplication::translate("Toolbar", "What has no room in the toolbar"));
    more_->hide();
    connect(more_, &QAbstractButton::clicked, this,
            [this] { moreMenu_.popup(more_->mapToGlobal(more_->rect().bottomLeft())); });
    connect(&moreMenu_, &QMenu::aboutToShow, this, [this] { fillMoreMenu(); });
}

ToolbarItem& Toolbar::addItem(QWidget* view, Place place) {
    view->setParent(this);
    view->installEventFilter(this);
    items_.push_back(std::make_unique<ToolbarItem>(*view, place, [this] { layOut(); }));
    more_->raise();
    return *items_.back();
}

QAbstractButton& Toolbar::moreButton() const {
    return *more_;
}

bool Toolbar::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange)
        layOut();
    return QWidget::event(event);
}

bool Toolbar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        layOut();
    return QWidget::eventFilter(watched, event);
}

void Toolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void Toolbar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), controls::palette::kPanel);
    painter.setRenderHint(QPainter::Antialiasing);  // the line is a point wide at every scale
    painter.setPen(Qt::NoPen);
    painter.setBrush(controls::palette::kLine);
    painter.drawRect(QRectF(0, height() - 1, width(), 1));
}

void Toolbar::layOut() {
    const Span room{metrics::kPanelMargin, width() - metrics::kPanelMargin};
    chooseButtons(room.to - room.from);
    placeMiddle(placeSides(room));
}

// ── Which buttons fit ──────────────────────────────────────────────────────────────────────────

QList<QAbstractButton*> Toolbar::sideButtons() const {
    QList<QAbstractButton*> found;
    for (const auto& item : items_) {
        if (item->isShown() && item->place() != Place::middle)
            found += item->buttons();
    }
    return found;
}

int Toolbar::neededFor(qsizetype buttons) const {
    const bool all = buttons == sideButtons().size();
    int needed = all ? 0 : more_->sizeHint().width() + kGapBetweenItems;
    for (const auto& item : items_) {
        if (!item->isShown() || item->place() == Place::middle)
            continue;
        const auto own = std::min(buttons, item->buttons().size());
        const int width = item->widthFor(own);
        needed += width > 0 ? width + kGapBetweenItems : 0;
        buttons -= own;
    }
    return std::max(needed - kGapBetweenItems, 0);
}

void Toolbar::chooseButtons(int room) {
    const auto all = sideButtons();
    qsizetype fitting = all.size();
    while (fitting > 0 && neededFor(fitting) > room)
        --fitting;
    overflowed_ = all.sliced(fitting);
    for (QAbstractButton* button : all)
        button->setHidden(overflowed_.contains(button));
    more_->setHidden(overflowed_.isEmpty());
}

int Toolbar::leastWidth(const ToolbarItem& item) const {
    const auto own = item.buttons();
    return item.widthFor(std::count_if(own.begin(), own.end(),
                                       [this](auto* button) { return !overflowed_.contains(button); }));
}

// ── Where they go ──────────────────────────────────────────────────────────────────────────────

Toolbar::Span Toolbar::placeSides(Span room) {
    int middle = 0;
    for (const auto& item : items_)
        middle += item->place() == Place::middle && item->isShown() ? item->minSize().width() : 0;
    int spare = std::max(room.to - room.from - neededFor(sideButtons().size() - overflowed_.size()) - middle -
                             2 * kGapBetweenItems,
                         0);
    if (!overflowed_.isEmpty()) {
        spare = 0;
        room.to -= more_->sizeHint().width();
        put(*more_, room.to, more_->sizeHint().width());
        room.to -= kGapBetweenItems;
    }
    for (const auto& item : items_) {
        if (!item->isShown() || item->place() == Place::middle)
            continue;
        const int least = leastWidth(*item);
        const int more = std::clamp(item->maxSize().width() - least, 0, spare);
        spare -= more;
        const int width = least + more;
        const int step = width > 0 ? width + kGapBetweenItems : 0;
        if (item->place() == Place::leading) {
            put(item->view(), room.from, width);
            room.from += step;
        } else {
            put(item->view(), room.to - width, width);
            room.to -= step;
        }
    }
    return room;
}

void Toolbar::placeMiddle(Span room) {
    for (const auto& item : items_) {
        if (item->place() != Place::middle)
            continue;
        const int width = std::clamp(room.to - room.from, 0, item->maxSize().width());
        const int centred = (this->width() - width) / 2;
        put(item->view(), std::clamp(centred, room.from, std::max(room.to - width, room.from)), width);
    }
}

void Toolbar::put(QWidget& view, int left, int width) const {
    const int height = metrics::kBarButton;
    const QRect place(left, (this->height() - height) / 2, width, height);
    view.setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
}

// ── What does not fit ──────────────────────────────────────────────────────────────────────────

void Toolbar::fillMoreMenu() {
    moreMenu_.clear();
    for (QAbstractButton* button : overflowed_) {
        QAction* const item = moreMenu_.addAction(button->icon(), button->accessibleName());
        item->setToolTip(button->toolTip());
        item->setEnabled(button->isEnabled());
        connect(item, &QAction::triggered, button, &QAbstractButton::click);
    }
}

}  // namespace trimora::app
