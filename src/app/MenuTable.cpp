#include "app/MenuTable.h"

#include <QCoreApplication>
#include <algorithm>
#include <cassert>
#include <iterator>

namespace trimora::app {
namespace {

constexpr const char* kContext = "MenuTable";
constexpr const char* kFile = QT_TRANSLATE_NOOP("MenuTable", "&File");
constexpr const char* kEdit = QT_TRANSLATE_NOOP("MenuTable", "&Edit");
constexpr const char* kView = QT_TRANSLATE_NOOP("MenuTable", "&View");
constexpr const char* kTools = QT_TRANSLATE_NOOP("MenuTable", "&Tools");
constexpr const char* kBackground = QT_TRANSLATE_NOOP("MenuTable", "&Background");
constexpr const char* kHelp = QT_TRANSLATE_NOOP("MenuTable", "&Help");

constexpr MenuRow kRows[] = {
    {.menu = kFile,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&New"),
     .keys = "Ctrl+N",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Put the picture away and begin afresh"),
     .receiver = Receiver::application,
     .selector = "new_pressed:"},
    {.menu = kFile,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Open…"),
     .keys = "Ctrl+O",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Open a picture"),
     .receiver = Receiver::application,
     .selector = "openPicture:"},
    {.menu = kFile,
     .text = QT_TRANSLATE_NOOP("MenuTable", "Open &recent"),
     .keys = "",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Open a picture of before"),
     .receiver = Receiver::recentFiles,
     .selector = ""},
    {.menu = kFile,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Save…"),
     .keys = "Ctrl+S",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Save the cut-out as a PNG"),
     .receiver = Receiver::application,
     .selector = "save_pressed:",
     .opensSection = true},
    {.menu = kFile,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Close window"),
     .keys = "Ctrl+W",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Hide the window; the picture stays"),
     .receiver = Receiver::window,
     .selector = "performClose:",
     .opensSection = true},
    {.menu = kFile,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Quit"),
     .keys = "Ctrl+Q",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Leave Trimora"),
     .receiver = Receiver::application,
     .selector = "terminate:"},

    {.menu = kEdit,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Undo"),
     .keys = "Ctrl+Z",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Take back the last stroke"),
     .receiver = Receiver::application,
     .selector = "undo_pressed:"},
    {.menu = kEdit,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Redo"),
     .keys = "Ctrl+Shift+Z; Ctrl+Y",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Do the stroke again"),
     .receiver = Receiver::application,
     .selector = "redo_pressed:"},
    {.menu = kEdit,
     .text = QT_TRANSLATE_NOOP("MenuTable", "Restore &image"),
     .keys = "Ctrl+Shift+R",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Bring the whole picture back"),
     .receiver = Receiver::editor,
     .selector = "reset_pressed:"},
    {.menu = kEdit,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Copy"),
     .keys = "Ctrl+C",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Copy the cut-out"),
     .receiver = Receiver::editor,
     .selector = "copy:",
     .opensSection = true,
     .needsPicture = true},
    {.menu = kEdit,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Paste"),
     .keys = "Ctrl+V",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Open the copied picture"),
     .receiver = Receiver::editor,
     .selector = "paste:"},

    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "Zoom &in"),
     .keys = "Ctrl++; Ctrl+=",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Show the picture larger"),
     .receiver = Receiver::editor,
     .selector = "zoomIn:",
     .needsPicture = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "Zoom &out"),
     .keys = "Ctrl+-",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Show the picture smaller"),
     .receiver = Receiver::editor,
     .selector = "zoomOut:",
     .needsPicture = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Fit"),
     .keys = "0; Ctrl+0",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Show the whole picture"),
     .receiver = Receiver::editor,
     .selector = "zoomToFit:",
     .needsPicture = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Actual size"),
     .keys = "Ctrl+1",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Show the picture point for point"),
     .receiver = Receiver::editor,
     .selector = "actualSize:",
     .needsPicture = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Quick panels"),
     .keys = "Q",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Bring the quick panels in; painting sends them away"),
     .receiver = Receiver::editor,
     .selector = "showInterface",
     .opensSection = true,
     .needsPicture = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Hide quick panels"),
     .keys = "Shift+Q",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Send the quick panels away"),
     .receiver = Receiver::editor,
     .selector = "hideInterface",
     .needsPicture = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "Full &screen"),
     .keys = "F11",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Give the window the whole screen"),
     .receiver = Receiver::window,
     .selector = "toggleFullScreen:",
     .check = CheckSource::fullScreen,
     .opensSection = true},
    {.menu = kView,
     .text = QT_TRANSLATE_NOOP("MenuTable", "Show &window"),
     .keys = "",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Bring the window to the front"),
     .receiver = Receiver::application,
     .selector = "showWindowAction:",
     .check = CheckSource::windowShown},

    {.menu = kTools,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Hand"),
     .keys = "H",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Move the picture (also: hold Space)"),
     .receiver = Receiver::editor,
     .selector = "hand_pressed_new:",
     .check = CheckSource::handTool,
     .needsPicture = true},
    {.menu = kTools,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Brush"),
     .keys = "B",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Cut away what you paint over"),
     .receiver = Receiver::editor,
     .selector = "brush_pressed_new:",
     .check = CheckSource::brushTool,
     .needsPicture = true},
    {.menu = kTools,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Restore brush"),
     .keys = "R",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Bring back what you paint over"),
     .receiver = Receiver::editor,
     .selector = "invertBrush_pressed_new:",
     .check = CheckSource::restoreBrush,
     .needsPicture = true},
    {.menu = kTools,
     .text = QT_TRANSLATE_NOOP("MenuTable", "S&wap cut and restore"),
     .keys = "X",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Change between the two brushes"),
     .receiver = Receiver::editor,
     .selector = "swapBrushes:",
     .opensSection = true,
     .needsPicture = true},
    {.menu = kTools,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Smaller brush"),
     .keys = "[",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Make the brush smaller"),
     .receiver = Receiver::editor,
     .selector = "smallerBrush:",
     .opensSection = true,
     .needsPicture = true},
    {.menu = kTools,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Larger brush"),
     .keys = "]",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Make the brush larger (also: Alt and the wheel)"),
     .receiver = Receiver::editor,
     .selector = "largerBrush:",
     .needsPicture = true},

    {.menu = kBackground,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Transparent"),
     .keys = "1",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Nothing behind the cut-out"),
     .receiver = Receiver::editor,
     .selector = "chooseEraserMode:",
     .check = CheckSource::transparentBackground,
     .needsPicture = true},
    {.menu = kBackground,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Colour"),
     .keys = "2",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "One colour behind the cut-out"),
     .receiver = Receiver::editor,
     .selector = "chooseColorMode:",
     .check = CheckSource::colourBackground,
     .needsPicture = true},
    {.menu = kBackground,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Blur"),
     .keys = "3",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "The picture itself, blurred, behind the cut-out"),
     .receiver = Receiver::editor,
     .selector = "chooseBlurMode:",
     .check = CheckSource::blurredBackground,
     .needsPicture = true},

    {.menu = kHelp,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Keyboard shortcuts"),
     .keys = "F1",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Every key and what it does"),
     .receiver = Receiver::application,
     .selector = "keyboardShortcutsAction:"},
    {.menu = kHelp,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Privacy policy"),
     .keys = "",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "Read what becomes of usage data"),
     .receiver = Receiver::application,
     .selector = "privacyPolicyAction:",
     .opensSection = true},
    {.menu = kHelp,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&Usage data…"),
     .keys = "",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "See, allow, stop or delete what is recorded"),
     .receiver = Receiver::application,
     .selector = "usageDataAction:"},
    {.menu = kHelp,
     .text = QT_TRANSLATE_NOOP("MenuTable", "&About Trimora"),
     .keys = "",
     .tip = QT_TRANSLATE_NOOP("MenuTable", "What this program is"),
     .receiver = Receiver::application,
     .selector = "aboutAction:",
     .opensSection = true},
};

QString translated(const char* words) {
    return QCoreApplication::translate(kContext, words);
}

}  // namespace

std::span<const MenuRow> menuRows() {
    return kRows;
}

const MenuRow& rowFor(std::string_view selector) {
    const auto* const found = std::find_if(std::begin(kRows), std::end(kRows),
                                           [&](const MenuRow& row) { return row.selector == selector; });
    assert(found != std::end(kRows));
    return *found;
}

QString menuTitle(const MenuRow& row) {
    return translated(row.menu);
}

QString textOf(const MenuRow& row) {
    return translated(row.text);
}

QString plainTextOf(const MenuRow& row) {
    return textOf(row).remove(u'&').remove(u'…');
}

QList<QKeySequence> keysOf(const MenuRow& row) {
    const QString keys = QString::fromUtf8(row.keys);
    return keys.isEmpty() ? QList<QKeySequence>() : QKeySequence::listFromString(keys);
}

QString tipOf(const MenuRow& row) {
    QString tip = translated(row.tip);
    const auto keys = keysOf(row);
    if (keys.isEmpty())
        return tip;
    return QStringLiteral("%1 (%2)").arg(tip, keys.front().toString(QKeySequence::NativeText));
}

}  // namespace trimora::app
