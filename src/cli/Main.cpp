#include <QApplication>
#include <QMenu>
#include <cstdio>
#include <optional>
#include <string>

#include "app/FirstPaint.h"
#include "cli/CommandLine.h"
#include "cli/RecordedPanels.h"
#include "cli/Recorder.h"
#include "cli/Recording.h"
#include "cli/Subcommands.h"
#include "cli/Toolkit.h"
#include "controls/Icons.h"
#include "foundation/Log.h"
#include "main/Demo.h"
#include "main/DesktopHost.h"
#include "main/Gallery.h"
#include "main/TerminalLog.h"
#include "main/Wiring.h"
#include "platform/ActivationToken.h"
#include "platform/QtPanels.h"
#include "platform/SessionEnd.h"
#include "platform/SingleInstance.h"
#include "platform/TrayItem.h"

namespace {

using trimora::CommandLine;

using trimora::platform::LaunchRequest;
using trimora::platform::SingleInstance;

constexpr const char* kNew = "new";  // the launcher's action

/// What a later start of the program wants of this one.
void serve(trimora::Wiring& program, const LaunchRequest& request) {
    trimora::app::AppDelegate& delegate = program.shell().appDelegate();
    trimora::platform::activation_token::keep(request.activationToken);
    if (request.action == kNew)
        delegate.new_pressed();
    delegate.applicationShouldHandleReopen_hasVisibleWindows(program.shell().window().isShown());
    program.editor().openFiles(request.files);
}

void fillTrayMenu(trimora::app::AppDelegate& delegate, QMenu& menu) {
    menu.addActions(delegate.applicationDockMenu()->actions());
}

int failed(const std::string& reason) {
    std::fprintf(stderr, "trimora: %s\n", reason.c_str());
    return 1;
}

int runEditor(const CommandLine& line, SingleInstance& instance, trimora::ports::Panels& panels,
              trimora::Recording* recording) {
    trimora::DesktopHost desktop(panels);
    trimora::Wiring program(desktop.host());
    desktop.fallBackTo(program.shell().messages());
    std::optional<trimora::Recorder> recorder;
    if (recording != nullptr)
        recorder.emplace(program, *recording);
    trimora::app::AppDelegate& delegate = program.shell().appDelegate();
    QGuiApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());
    // Looking through the desktop's icons takes as long as making the window.
    std::optional<trimora::platform::TrayItem> tray;
    const auto showTrayItem = [&] {
        tray.emplace(
            QIcon::fromTheme(QLatin1String(trimora::platform::kApplicationId),
                             trimora::controls::icon(QStringLiteral("trimora"))),
            [&](QMenu& menu) { fillTrayMenu(delegate, menu); }, [&] { delegate.showWindowAction(); });
    };
    QWidget& window = program.shell().window();
    trimora::app::afterFirstPaint(window, window, showTrayItem, trimora::app::kUntilShown);
    const auto sessionEnd = trimora::platform::SessionEnd::create([] { QCoreApplication::quit(); });
    if (!sessionEnd)
        trimora::foundation::log::warning("signals end the program at once: %s",
                                          sessionEnd.error().message.c_str());
    program.show();
    if (!line.files.empty())
        program.editor().openFiles(line.files);
    instance.onLaunch([&](const LaunchRequest& request) { serve(program, request); });
    delegate.applicationDidFinishLaunching();
    return trimora::Toolkit::exec();
}

int record(const CommandLine& line, SingleInstance& instance) {
    auto recording = trimora::Recording::create(line.record);
    if (!recording)
        return failed(recording.error().message);
    trimora::platform::QtPanels panels;
    trimora::RecordedPanels recorded(panels, *recording);
    return runEditor(line, instance, recorded, &*recording);
}

int edit(const CommandLine& line, const std::string& activationToken) {
    SingleInstance instance(SingleInstance::ofThisSession());
    if (instance.launch({line.files, line.isNew ? kNew : "", activationToken}) ==
        SingleInstance::Launch::handedOver)
        return line.record.empty() ? 0 : failed("an editor runs already, and nothing of it is recorded");
    if (!line.record.empty())
        return record(line, instance);
    trimora::platform::QtPanels panels;
    return runEditor(line, instance, panels, nullptr);
}

int demonstrate(const CommandLine& line) {
    trimora::DemoPanels panels(line.demoFolder / "cut.png");
    trimora::DesktopHost desktop(panels);
    trimora::Wiring program(desktop.host());
    desktop.fallBackTo(program.shell().messages());
    program.show();
    return trimora::runDemo(program, panels, line.files.front(), line.demoFolder);
}

int runProgram(const CommandLine& line) {
    using Screen = trimora::Toolkit::Screen;
    const std::string activationToken = trimora::platform::activation_token::ofThisStart();
    const trimora::Toolkit toolkit(line.mode == CommandLine::Mode::demo ? Screen::offscreen
                                                                        : Screen::desktop);
    if (line.mode == CommandLine::Mode::gallery)
        return trimora::runGallery();
    return line.mode == CommandLine::Mode::demo ? demonstrate(line) : edit(line, activationToken);
}

}  // namespace

// What is thrown and gets past everything ends the program here, where it is recorded as a crash.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
    trimora::logToTerminal();
    const trimora::Words words(argv + 1, argv + argc);
    if (const trimora::Subcommand* const subcommand = trimora::subcommandOf(words))
        return subcommand->run(words.subspan(1));
    const auto line = CommandLine::parse(words);
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
    return runProgram(*line);
}
