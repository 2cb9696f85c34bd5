#include "platform/SheetKeyboard.h"

#include <QWindow>

namespace trimora::platform {
namespace {

bool waitsFor(const QWindow& window, const QWindow& sheet) {
    return window.isAncestorOf(&sheet, QWindow::IncludeTransients);
}

}  // namespace

void keepKeyboardWithSheets(QGuiApplication& application) {
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    QObject::connect(&application, &QGuiApplication::focusWindowChanged, &application, [](QWindow* window) {
        QWindow* const sheet = QGuiApplication::modalWindow();
        if (window != nullptr && sheet != nullptr && waitsFor(*window, *sheet))
            sheet->requestActivate();
    });
}

}  // namespace trimora::platform
