#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QString>

/// What any button can do beside what the toolkit gives it. Main thread only.
namespace trimora::util {

/// Disables the button in the name of `key`. The first key remembers whether it was enabled.
void blockWith(QAbstractButton& button, const QString& key);

/// Takes the key back; after the last one the button is as enabled as it was before the first.
void unblockWith(QAbstractButton& button, const QString& key);

/// The colour of all of the button's title, whatever state it is in; that of all buttons until it is set.
[[nodiscard]] QColor titleColor(const QAbstractButton& button);
void setTitleColor(QAbstractButton& button, const QColor& color);

}  // namespace trimora::util
