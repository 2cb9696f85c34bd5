#include "app/ToolbarItem.h"

#include <QAbstractButton>
#include <algorithm>
#include <utility>

#include "controls/Metrics.h"

namespace trimora::app {

ToolbarItem::ToolbarItem(QWidget& view, Place place, std::function<void()> changed)
    : view_(view), place_(place), changed_(std::move(changed)) {}

bool ToolbarItem::isShown() const {
    return !view_.isHidden();
}

void ToolbarItem::setRoom(QSize minSize, QSize maxSize) {
    minSize_ = minSize;
    setMaxSize(maxSize);
}

void ToolbarItem::setMaxSize(QSize size) {
    maxSize_ = size;
    changed_();
}

QList<QAbstractButton*> ToolbarItem::buttons() const {
    return view_.findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly);
}

int ToolbarItem::widthFor(qsizetype count) const {
    const auto all = buttons();
    if (count >= all.size())
        return minSize_.width();
    int width = 0;
    for (const QAbstractButton* button : all.first(count))
        width += button->sizeHint().width() + (width > 0 ? controls::metrics::kBarGap : 0);
    return width;
}

}  // namespace trimora::app
