#pragma once

#include <QColor>

class QAbstractButton;

namespace trimora::controls {

/// The colour that a button's title is drawn in; that of all buttons where none was set.
[[nodiscard]] QColor textColor(const QAbstractButton& button);

/// Sets it for the whole title, in every state but the disabled one.
void setTextColor(QAbstractButton& button, const QColor& color);

}  // namespace trimora::controls
