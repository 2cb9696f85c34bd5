#pragma once

#include "util/ButtonBlocker.h"

namespace trimora::controls {

/// The colour that a button's title is drawn in; that of all buttons where none was set.
[[nodiscard]] inline QColor textColor(const QAbstractButton& button) {
    return util::titleColor(button);
}

/// Sets it for the whole title, whatever state the button is in.
inline void setTextColor(QAbstractButton& button, const QColor& color) {
    util::setTitleColor(button, color);
}

}  // namespace trimora::controls
