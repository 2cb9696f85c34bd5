#pragma once

#include <QScrollBar>

namespace trimora::util {

/// A scroll bar that shows its knob alone, over whatever lies behind: no track and no arrows. The knob is
/// a pill in the palette's text colour, stronger under the pointer and while it is held. Main thread only.
class KnobScrollBar final : public QScrollBar {
 public:
    using QScrollBar::QScrollBar;

 protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    [[nodiscard]] double strength() const;
};

}  // namespace trimora::util
