#include "main/Demo.h"

#include <QCoreApplication>
#include <QFile>
#include <QMouseEvent>
#include <QPixmap>
#include <cstdio>
#include <string>

#include "app/StatusLine.h"
#include "main/DemoStrokes.h"

namespace trimora {

using foundation::Point;
using foundation::Size;
using std::filesystem::path;

namespace {

void waitForFiles(const app::EditorWindow& window) {
    while (window.isBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

int failed(const app::EditorWindow& window) {
    std::fprintf(stderr, "trimora: %s\n", window.statusLine().text().toUtf8().constData());
    return 1;
}

void sendMouse(editor::CutViewWidget& widget, QEvent::Type type, QPointF place) {
    const bool pressed = type != QEvent::MouseButtonRelease;
    QMouseEvent event(type, place, widget.mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      pressed ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

void paint(editor::CutViewWidget& widget, const DemoStroke& stroke, QPointF corner) {
    widget.view().setBrushDiameter(static_cast<float>(stroke.diameter));
    const auto inWidget = [corner](Point place) { return corner + QPointF(place.x, place.y); };
    sendMouse(widget, QEvent::MouseButtonPress, inWidget(stroke.places.front()));
    for (const Point& place : stroke.places)
        sendMouse(widget, QEvent::MouseMove, inWidget(place));
    sendMouse(widget, QEvent::MouseButtonRelease, inWidget(stroke.places.back()));
}

void cutOut(editor::CutViewWidget& widget) {
    const Size picture = widget.view().image()->size();
    const auto placed = widget.view().transform();
    const Size shown{picture.width * placed.a, picture.height * placed.d};
    const QPointF corner(placed.tx - shown.width / 2, widget.height() - placed.ty - shown.height / 2);
    for (const DemoStroke& stroke : demoStrokes(shown))
        paint(widget, stroke, corner);
    (void)widget.view().copyMaskPlane();  // returns when all of it is painted
    QCoreApplication::processEvents();
}

}  // namespace

int runDemo(app::EditorWindow& window, const path& picture, const path& folder) {
    std::error_code refused;
    std::filesystem::create_directories(folder, refused);
    const path cut = folder / "cut.png";
    const path screenshot = folder / "screenshot.png";
    std::filesystem::remove(cut, refused);

    window.open({picture});
    waitForFiles(window);
    if (window.cutView().view().image() == nullptr)
        return failed(window);
    cutOut(window.cutView());
    window.saveTo(cut);
    waitForFiles(window);
    if (!std::filesystem::exists(cut, refused))
        return failed(window);
    if (!window.grab().save(QFile::decodeName(screenshot.c_str()))) {
        std::fprintf(stderr, "trimora: %s cannot be written\n", screenshot.c_str());
        return 1;
    }
    std::printf("%s\n%s\n", cut.c_str(), screenshot.c_str());
    return 0;
}

}  // namespace trimora
