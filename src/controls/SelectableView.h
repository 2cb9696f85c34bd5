#pragma once

#include <QWidget>
#include <functional>

#include "controls/LayerHost.h"

namespace trimora::controls {

/// A tile that can be selected: a white rounded rectangle under a layer of the tile's own colour and
/// border. A press of the left button, Space or Return turns the selection over.
///
/// Selected, it wears the accent as its border; the four properties below are those of the layer.
class SelectableView final : public QWidget {
 public:
    explicit SelectableView(const ControlContext& context, QWidget* parent = nullptr);

    [[nodiscard]] const QColor& color() const { return layer_.backgroundColor; }
    void setColor(const QColor& color);
    [[nodiscard]] double cornerRadius() const { return layer_.cornerRadius; }
    void setCornerRadius(double radius);
    [[nodiscard]] double borderWidth() const { return layer_.borderWidth; }
    void setBorderWidth(double width);
    [[nodiscard]] const QColor& borderColor() const { return layer_.borderColor; }
    void setBorderColor(const QColor& color);

    [[nodiscard]] bool isSelected() const { return isSelected_; }
    void setSelected(bool selected);
    /// Called after the person has turned the selection over.
    std::function<void(bool selected)> onSelect;

 protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    void toggle();

    LayerHost layers_;
    ControlLayer& layer_;
    ControlLayer& selection_;
    ControlLayer& focus_;
    bool isSelected_ = false;
};

}  // namespace trimora::controls
