#pragma once

#include <functional>
#include <memory>

#include "controls/ButtonAppearance.h"

namespace trimora::controls {

/// The round tool button: a ButtonAppearance with a menu of options.
///
/// The menu opens when the pointer rests inside the shape for 1.5 seconds (every move begins the wait
/// anew, held or not), at a press of the right button inside the shape, and by the keyboard's menu key.
/// A button that is held down when its menu opens is let go without a click.
class KrugButton final : public ButtonAppearance {
 public:
    using ButtonAppearance::ButtonAppearance;

    /// Who shows the menu: the content controller of the window, which is handed this button.
    std::function<void(KrugButton&)> onShowMenu;

    void showMenu();

 protected:
    void mouseMoved(const QPointF& position) override;
    void mouseExited() override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

 private:
    std::unique_ptr<foundation::Timer> timerHold_;
};

}  // namespace trimora::controls
