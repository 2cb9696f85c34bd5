#include "main/Demo.h"

#include <QCoreApplication>
#include <QFile>
#include <QMouseEvent>
#include <QPixmap>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <string>

#include "app/MessageLine.h"
#include "controls/Metrics.h"
#include "editor/CutViewWidget.h"
#include "main/DemoStrokes.h"
#include "main/Wiring.h"

namespace trimora {

using foundation::Point;
using foundation::Size;
using std::filesystem::path;

namespace {

// What slides on the screen has come to rest after it.
constexpr std::chrono::milliseconds kRest{600};

void waitForFiles(Wiring& program) {
    while (program.isBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void letRest() {
    QEventLoop loop;
    QTimer::singleShot(kRest, &loop, &QEventLoop::quit);
    loop.exec();
}

int failed(Wiring& program) {
    std::fprintf(stderr, "trimora: %s\n", program.shell().messages().text().toUtf8().constData());
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

void DemoPanels::chooseFileToOpen(const path& /*folder*/, FilesAnswer answer) {
    answer({});
}

void DemoPanels::chooseFileToSave(const path& /*folder*/, const std::string& /*name*/, Answer answer) {
    answer(saveTo_);
}

void DemoPanels::runAlert(const ports::Alert& /*alert*/, AlertAnswer answer) {
    answer(ports::Alert::kFirstButton);
}

int runDemo(Wiring& program, const DemoPanels& panels, const path& picture, const path& folder) {
    std::error_code refused;
    std::filesystem::create_directories(folder, refused);
    const path screenshot = folder / "screenshot.png";
    std::filesystem::remove(panels.saveTo(), refused);

    program.shell().window().resize(controls::metrics::kWindowWidth, controls::metrics::kWindowHeight);
    program.editor().draggingFilesComplete_needsWait({picture}, false);
    waitForFiles(program);
    if (program.editor().cutView().image() == nullptr)
        return failed(program);
    letRest();
    cutOut(*program.editor().outlets().viCut);
    program.editor().performSelector("save_pressed:");
    waitForFiles(program);
    if (!std::filesystem::exists(panels.saveTo(), refused))
        return failed(program);
    letRest();
    if (!program.shell().window().grab().save(QFile::decodeName(screenshot.c_str()))) {
        std::fprintf(stderr, "trimora: %s cannot be written\n", screenshot.c_str());
        return 1;
    }
    std::printf("%s\n%s\n", panels.saveTo().c_str(), screenshot.c_str());
    return 0;
}

}  // namespace trimora
