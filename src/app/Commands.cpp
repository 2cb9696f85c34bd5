#include "app/Commands.h"

#include <QActionGroup>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <iterator>
#include <utility>

#include "controls/Icons.h"

namespace trimora::app {
namespace {

enum class Group { none, alone, tool, background };  // alone: checkable by itself

struct Row {
    Command command;
    const char* menu;
    const char* text;
    const char* keys;  // separated by "; "
    const char* tip;
    const char* icon = "";        // where checkable: while not checked
    const char* activeIcon = "";  // while checked
    Group group = Group::none;
    bool opensSection = false;  // a line above it in its menu
};

// In the order of the menus, and within each from top to bottom.
constexpr Row kRows[] = {
    {Command::openPicture, "&File", "&Open…", "Ctrl+O", "Open a picture", "open"},
    {Command::savePicture, "&File", "&Save…", "Ctrl+S", "Save the cut-out as a PNG", "save"},
    {Command::quit, "&File", "&Quit", "Ctrl+Q", "Leave Trimora", "", "", Group::none, true},
    {Command::undo, "&Edit", "&Undo", "Ctrl+Z", "Take back the last stroke", "back"},
    {Command::redo, "&Edit", "&Redo", "Ctrl+Shift+Z; Ctrl+Y", "Do the stroke again", "forward"},
    {Command::restoreImage, "&Edit", "Restore &image", "Ctrl+Shift+R", "Bring the whole picture back",
     "restoreImage", "", Group::none, true},
    {Command::zoomIn, "&View", "Zoom &in", "Ctrl++; Ctrl+=", "Show the picture larger", "zoom_in"},
    {Command::zoomOut, "&View", "Zoom &out", "Ctrl+-", "Show the picture smaller", "zoom_out"},
    {Command::zoomToFit, "&View", "&Fit", "0", "Show the whole picture", "zoom_fit"},
    {Command::fullScreen, "&View", "Full &screen", "F11", "Give the window the whole screen", "", "",
     Group::alone, true},
    {Command::handTool, "&Tools", "&Hand", "H", "Move the picture (also: hold Space)", "hand_noActive_new",
     "hand_active_new", Group::tool},
    {Command::brushTool, "&Tools", "&Brush", "B", "Cut away what you paint over", "eraser_noActive",
     "eraser_active", Group::tool},
    {Command::restoreTool, "&Tools", "&Restore brush", "R", "Bring back what you paint over",
     "history_brush_noActive_new", "history_brush_active_new2", Group::tool},
    {Command::swapBrushes, "&Tools", "S&wap cut and restore", "X", "Change between the two brushes", "", "",
     Group::none, true},
    {Command::smallerBrush, "&Tools", "&Smaller brush", "[", "Make the brush smaller", "", "", Group::none,
     true},
    {Command::largerBrush, "&Tools", "&Larger brush", "]", "Make the brush larger (also: Alt and the wheel)"},
    {Command::transparentBackground, "&Background", "&Transparent", "1", "Nothing behind the cut-out",
     "btnAlphaBack_unselect", "btnAlphaBack_select", Group::background},
    {Command::colourBackground, "&Background", "&Colour", "2", "One colour behind the cut-out",
     "btnColorBack_unselect", "btnColorBack_select", Group::background},
    {Command::blurBackground, "&Background", "&Blur", "3", "The picture itself, blurred, behind the cut-out",
     "btnBlur_unselect", "btnBlur_select", Group::background},
    {Command::chooseColour, "&Background", "Choose c&olour…", "", "Choose the background's colour", "", "",
     Group::none, true},
    {Command::keyboardShortcuts, "&Help", "&Keyboard shortcuts", "F1", "Every key and what it does"},
    {Command::about, "&Help", "&About Trimora", "", "What this program is", "", "", Group::none, true},
};

QString plain(QString text) {
    return text.remove(u'&').remove(u'…');
}

QString tipWithKeys(const Row& row) {
    const auto keys = QKeySequence::listFromString(QString::fromUtf8(row.keys));
    const QString tip = QString::fromUtf8(row.tip);
    if (keys.isEmpty())
        return tip;
    return QStringLiteral("%1 (%2)").arg(tip, keys.front().toString(QKeySequence::NativeText));
}

void dress(QAction& action, const Row& row) {
    const QString text = QString::fromUtf8(row.text);
    action.setText(text);
    action.setIconText(plain(text));
    action.setShortcuts(QKeySequence::listFromString(QString::fromUtf8(row.keys)));
    action.setToolTip(tipWithKeys(row));
    const QString icon = QString::fromUtf8(row.icon);
    const QString active = QString::fromUtf8(row.activeIcon);
    if (!active.isEmpty())
        action.setIcon(controls::icon(active, icon));
    else if (!icon.isEmpty())
        action.setIcon(controls::icon(icon));
    action.setIconVisibleInMenu(false);
    action.setCheckable(row.group != Group::none);
}

}  // namespace

Commands::Commands(QWidget& window, std::function<void(Command)> run) {
    auto* const tools = new QActionGroup(&window);
    auto* const backgrounds = new QActionGroup(&window);
    for (const Row& row : kRows) {
        auto* const action = new QAction(&window);
        dress(*action, row);
        if (row.group == Group::tool)
            tools->addAction(action);
        if (row.group == Group::background)
            backgrounds->addAction(action);
        QObject::connect(action, &QAction::triggered, action, [run, command = row.command] { run(command); });
        window.addAction(action);
        actions_.emplace(row.command, action);
    }
}

void Commands::fillMenus(QMenuBar& bar) const {
    QMenu* menu = nullptr;
    const char* title = nullptr;
    for (const Row& row : kRows) {
        if (title == nullptr || QByteArrayView(title) != QByteArrayView(row.menu)) {
            title = row.menu;
            menu = bar.addMenu(QString::fromUtf8(title));
        } else if (row.opensSection) {
            menu->addSeparator();
        }
        menu->addAction(&action(row.command));
    }
}

QString Commands::shortcutTable() {
    QString lines;
    const auto add = [&lines](const QString& keys, const QString& what) {
        lines += QStringLiteral("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>").arg(keys, what);
    };
    for (const Row& row : kRows) {
        QStringList keys;
        for (const QKeySequence& sequence : QKeySequence::listFromString(QString::fromUtf8(row.keys)))
            keys += sequence.toString(QKeySequence::NativeText).toHtmlEscaped();
        if (!keys.isEmpty())
            add(keys.join(QStringLiteral(", ")), plain(QString::fromUtf8(row.text)));
    }
    add(QStringLiteral("Space held"), QStringLiteral("Move the picture"));
    add(QStringLiteral("Wheel"), QStringLiteral("Zoom at the pointer"));
    add(QStringLiteral("Alt+Wheel"), QStringLiteral("Brush size"));
    return QStringLiteral("<table>%1</table>").arg(lines);
}

}  // namespace trimora::app
