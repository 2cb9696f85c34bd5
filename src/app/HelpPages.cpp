#include "app/HelpPages.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QStringList>

#include "app/MenuTable.h"
#include "controls/Metrics.h"

namespace trimora::app {
namespace {

QString words(const char* text) {
    return QCoreApplication::translate("HelpPages", text);
}

QString line(const QString& keys, const QString& what) {
    return QStringLiteral(
               "<tr><td align=\"right\" style=\"white-space: nowrap\"><b>%1</b>&nbsp;&nbsp;</td>"
               "<td style=\"white-space: nowrap\">%2</td></tr>")
        .arg(keys.toHtmlEscaped(), what.toHtmlEscaped());
}

QString heading(const QString& menu) {
    return QStringLiteral("<tr><td></td><td><br>%1</td></tr>").arg(QString(menu).remove(u'&'));
}

/// The keys of the table in two columns, and below them what the mouse does.
QString shortcutTable() {
    QString columns[2];
    const char* menu = nullptr;
    for (const MenuRow& row : menuRows()) {
        QStringList keys;
        for (const QKeySequence& sequence : keysOf(row))
            keys += sequence.toString(QKeySequence::NativeText);
        if (keys.isEmpty())
            continue;
        const bool right = QByteArrayView(row.menu) == "&Tools" ||
                           QByteArrayView(row.menu) == "&Background" || QByteArrayView(row.menu) == "&Help";
        if (menu != row.menu)
            columns[right] += heading(menuTitle(row));
        menu = row.menu;
        columns[right] += line(keys.join(QStringLiteral(", ")), plainTextOf(row));
    }
    columns[1] += line(QStringLiteral("F10"), words("Open the menus"));
    columns[1] += heading(words("Mouse"));
    columns[1] += line(words("Space held"), words("Move the picture"));
    columns[1] += line(words("Wheel"), words("Zoom at the pointer"));
    columns[1] += line(words("Alt+Wheel"), words("Brush size"));
    return QStringLiteral(
               "<table><tr><td><table>%1</table></td><td width=\"24\"></td>"
               "<td><table>%2</table></td></tr></table>")
        .arg(columns[0], columns[1]);
}

void openPage(QWidget& window, const QString& title, const QString& text, const QPixmap& picture = {}) {
    auto* const page = new QMessageBox(QMessageBox::NoIcon, title, text, QMessageBox::Close, &window);
    page->setAttribute(Qt::WA_DeleteOnClose);
    page->setWindowFlag(Qt::FramelessWindowHint);
    page->setAttribute(Qt::WA_TranslucentBackground);
    page->setTextFormat(Qt::RichText);
    page->setIconPixmap(picture);
    page->open();
}

}  // namespace

void showShortcutPage(QWidget& window) {
    const QString title = words("Keyboard shortcuts");
    openPage(window, title, QStringLiteral("<b>%1</b>%2").arg(title.toHtmlEscaped(), shortcutTable()));
}

void showAboutPage(QWidget& window) {
    const QString what =
        words("Cuts a subject out of a picture, and puts nothing, a colour or a blur behind it.");
    openPage(window, words("About Trimora"),
             QStringLiteral("<b>Trimora %1</b><br>%2").arg(QCoreApplication::applicationVersion(), what),
             window.windowIcon().pixmap(controls::metrics::kDropImage));
}

}  // namespace trimora::app
