#include "util/ButtonBlocker.h"

#include <QPalette>
#include <QStringList>
#include <QVariant>

namespace trimora::util {
namespace {

constexpr const char* kBlockKeys = "blockKeys";
constexpr const char* kEnabledBefore = "enabledBeforeBlock";

}  // namespace

void blockWith(QAbstractButton& button, const QString& key) {
    QStringList keys = button.property(kBlockKeys).toStringList();
    if (keys.isEmpty()) {
        // Its own switch: a button in a disabled panel must not stay disabled after that panel.
        button.setProperty(kEnabledBefore, !button.testAttribute(Qt::WA_ForceDisabled));
        button.setEnabled(false);
    }
    if (!keys.contains(key))
        keys.append(key);
    button.setProperty(kBlockKeys, keys);
}

void unblockWith(QAbstractButton& button, const QString& key) {
    QStringList keys = button.property(kBlockKeys).toStringList();
    if (keys.removeAll(key) == 0)
        return;
    button.setProperty(kBlockKeys, keys);
    if (keys.isEmpty())
        button.setEnabled(button.property(kEnabledBefore).toBool());
}

QColor titleColor(const QAbstractButton& button) {
    return button.palette().color(QPalette::Active, QPalette::ButtonText);
}

void setTitleColor(QAbstractButton& button, const QColor& color) {
    QPalette palette = button.palette();
    palette.setColor(QPalette::ButtonText, color);
    button.setPalette(palette);
}

}  // namespace trimora::util
