#pragma once

#include <QWidget>

#include "controls/ControlContext.h"

class QScrollBar;

namespace trimora::controls {

class LayerButton;

/// What the gallery shows some things in that are no controls, or do nothing by themselves. Main thread
/// only; whoever takes a specimen in owns it.

/// Shows a line of text in the middle of a box.
class TextCellSpecimen final : public QWidget {
 public:
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A small raised panel with a button in it, to be blocked.
class PanelSpecimen final : public QWidget {
 public:
    explicit PanelSpecimen(const ControlContext& context);
    [[nodiscard]] LayerButton& button() const { return button_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    LayerButton& button_;
};

/// A scroll bar that lies at the beginning of twice what it shows.
[[nodiscard]] QScrollBar* makeScrollBarSpecimen();

/// Blocks with two keys, the first of them twice, and takes a key back.
enum class BlockKey : bool { first, second };
void blockView(QWidget& view);
void blockButton(LayerButton& button);
void unblockBoth(QWidget& view, LayerButton& button, BlockKey key);

}  // namespace trimora::controls
