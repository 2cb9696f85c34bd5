#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace trimora::controls {

/// The drawn image of this name (a file in assets/images without its ending), sharp at every size and
/// scale. An unknown name logs an error and gives an empty icon.
[[nodiscard]] QIcon icon(const QString& name);

/// An icon of two states: `active` where the button or action is checked, `inactive` elsewhere.
[[nodiscard]] QIcon icon(const QString& active, const QString& inactive);

/// A small square of one colour.
[[nodiscard]] QIcon swatchIcon(const QColor& colour);

}  // namespace trimora::controls
