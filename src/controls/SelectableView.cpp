#include "controls/SelectableView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

SelectableView::SelectableView(const ControlContext& context, QWidget* parent)
    : QWidget(parent),
      layers_(*this, context),
      layer_(layers_.root().make<ControlLayer>()),
      selection_(layers_.root().make<ControlLayer>()) {
    layers_.root().backgroundColor = Qt::white;
    setFocusPolicy(Qt::TabFocus);
}

void SelectableView::setColor(const QColor& color) {
    layer_.backgroundColor = color;
    update();
}

void SelectableView::setCornerRadius(double radius) {
    layers_.root().cornerRadius = radius;
    layer_.cornerRadius = radius;
    selection_.cornerRadius = radius;
    update();
}

void SelectableView::setBorderWidth(double width) {
    layer_.borderWidth = width;
    update();
}

void SelectableView::setBorderColor(const QColor& color) {
    layer_.borderColor = color;
    update();
}

void SelectableView::setSelected(bool selected) {
    isSelected_ = selected;
    update();
}

void SelectableView::toggle() {
    setSelected(!isSelected_);
    if (onSelect)
        onSelect(isSelected_);
}

void SelectableView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        toggle();
}

void SelectableView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        toggle();
    else
        QWidget::keyPressEvent(event);
}

void SelectableView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void SelectableView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void SelectableView::paintEvent(QPaintEvent* /*event*/) {
    layers_.fitToWidget();
    layer_.setFrame(layers_.root().bounds());
    selection_.setFrame(layers_.root().bounds());
    selection_.borderWidth = isSelected_ || hasFocus() ? metrics::kSelectionLine : 0;
    selection_.borderColor = isSelected_ ? palette::kAccent : palette::kButtonEdge;
    layers_.root().opacity = isEnabled() ? 1 : palette::kDisabledOpacity;
    QPainter painter(this);
    layers_.paint(painter);
}

}  // namespace trimora::controls
