#pragma once

#include <functional>

class QAbstractButton;
class QMenu;
class QPoint;
class QString;
class QWidgetAction;

namespace trimora::editor {

/// The menu of the quick brush button: Hand, and Brush below it.
///
/// Main thread only. What is called lives longer than a menu that is open.
class BrushMenu {
 public:
    struct Actions {
        std::function<void()> handSelected;
        std::function<void()> brushSelected;
    };

    /// Pops the menu up beside the button, so that the Brush item is level with its middle. The menu
    /// deletes itself when it closes.
    static QMenu* popUp(QAbstractButton& button, const Actions& actions);

    /// An item of 120 x 33 points that holds one borderless button: the image, and the title to its right.
    [[nodiscard]] static QWidgetAction* menuItemWithTitle_image_action(const QString& title,
                                                                       const QString& image,
                                                                       std::function<void()> action,
                                                                       QMenu* menu);
};

}  // namespace trimora::editor
