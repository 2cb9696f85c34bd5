#pragma once

#include <QScrollBar>

namespace trimora::util {

/// A scroll bar that shows its knob alone, over whatever lies behind: no track and no arrows.
class KnobScrollBar final : public QScrollBar {
 public:
    using QScrollBar::QScrollBar;

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace trimora::util
