#include <QApplication>
#include <cstdio>

#include "controls/AppStyle.h"
#include "main/CommandLine.h"
#include "main/Demo.h"
#include "main/Gallery.h"
#include "main/Wiring.h"
#include "platform/QtPanels.h"

namespace {

using trimora::CommandLine;

// Every sample of a stroke counts, and scale factors are taken as the screen has them.
void setUpToolkit(CommandLine::Mode mode) {
    if (mode == CommandLine::Mode::demo)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setApplicationName(QStringLiteral("Trimora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TRIMORA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("trimora"));
}

int edit(const CommandLine& line) {
    trimora::platform::QtPanels panels;
    trimora::Wiring program(panels);
    trimora::app::AppDelegate& delegate = program.shell().appDelegate();
    QGuiApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
    program.shell().window().show();
    program.editor().openFiles(line.files);
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}

int demonstrate(const CommandLine& line) {
    trimora::DemoPanels panels(line.demoFolder / "cut.png");
    trimora::Wiring program(panels);
    program.shell().window().show();
    return trimora::runDemo(program, panels, line.files.front(), line.demoFolder);
}

int runProgram(int& argc, char** argv, const CommandLine& line) {
    setUpToolkit(line.mode);
    QApplication application(argc, argv);
    trimora::controls::applyAppStyle(application);
    if (line.mode == CommandLine::Mode::gallery)
        return trimora::runGallery();
    return line.mode == CommandLine::Mode::demo ? demonstrate(line) : edit(line);
}

}  // namespace

int main(int argc, char** argv) {
    const auto line = CommandLine::parse({argv + 1, argv + argc});
    if (!line) {
        std::fprintf(stderr, "trimora: %s; --help tells more\n", line.error().message.c_str());
        return 2;
    }
    switch (line->mode) {
        case CommandLine::Mode::help:
            std::fputs(CommandLine::help(), stdout);
            return 0;
        case CommandLine::Mode::version:
            std::puts("Trimora " TRIMORA_VERSION);
            return 0;
        case CommandLine::Mode::edit:
        case CommandLine::Mode::demo:
        case CommandLine::Mode::gallery:
            break;
    }
    return runProgram(argc, argv, *line);
}
