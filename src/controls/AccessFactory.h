#pragma once

#include <QAccessible>
#include <QString>

namespace trimora::controls {

/// Tells the toolkit to show every Widget to screen readers as an Access, which is made with a reference
/// to it. Again costs nothing. Main thread, from the widget's constructor.
template <typename Widget, typename Access>
void installAccess() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(
            [](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
                auto* const widget = dynamic_cast<Widget*>(object);
                return widget != nullptr ? new Access(*widget) : nullptr;
            });
        return true;
    }();
}

}  // namespace trimora::controls
