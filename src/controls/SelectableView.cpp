#include "controls/SelectableView.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "controls/AccessFactory.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {
namespace {

/// To a screen reader the tile is a box to tick.
class SelectableViewInterface final : public QAccessibleWidget {
 public:
    explicit SelectableViewInterface(SelectableView& view)
        : QAccessibleWidget(&view, QAccessible::CheckBox), view_(view) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = view_.isSelected();
        return state;
    }

 private:
    SelectableView& view_;
};

}  // namespace

SelectableView::SelectableView(const ControlContext& context, QWidget* parent)
    : QWidget(parent),
      layers_(*this, context),
      layer_(layers_.root().make<ControlLayer>()),
      selection_(layers_.root().make<ControlLayer>()),
      focus_(layers_.root().make<ControlLayer>()) {
    setFocusPolicy(Qt::TabFocus);
    installAccess<SelectableView, SelectableViewInterface>();
    selection_.borderColor = palette::kAccent;
    focus_.borderColor = palette::kFocus;
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
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
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
    // White under an opaque colour would show through at its smooth edges.
    layers_.root().backgroundColor = layer_.backgroundColor.alpha() < 255 ? Qt::white : Qt::transparent;
    layer_.setFrame(layers_.root().bounds());
    selection_.setFrame(layers_.root().bounds());
    selection_.borderWidth = isSelected_ ? metrics::kSelectionLine : 0;
    // Inside the line of a selected tile, so that both are seen.
    constexpr double kIn = metrics::kSelectionLine;
    focus_.setFrame({kIn, kIn, width() - 2 * kIn, height() - 2 * kIn});
    focus_.borderWidth = hasFocus() ? metrics::kFocusLine : 0;
    layers_.root().opacity = isEnabled() ? 1 : palette::kDisabledOpacity;
    QPainter painter(this);
    layers_.paint(painter);
}

}  // namespace trimora::controls
