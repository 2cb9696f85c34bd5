#include "cli/ScriptedProgram.h"

#include <chrono>
#include <thread>
#include <tuple>
#include <utility>

#include "app/MessageLine.h"
#include "controls/Metrics.h"
#include "editor/CutViewWidget.h"

namespace trimora {
namespace {

namespace metrics = controls::metrics;

constexpr double kFrame = 1.0 / 60;  // seconds
constexpr std::chrono::milliseconds kNetworkPause{2};

}  // namespace

ScriptedProgram::ScriptedProgram(const Options& options, Homes homes, Trouble trouble)
    : options_(options),
      desktop_(options.pace),
      panels_(time().queues().mainQueue(), [this](const std::string& text) { messages_.push_back(text); }),
      wiring_(std::make_unique<Wiring>(desktop_.host(std::move(homes), panels_))) {
    // What the store holds of earlier runs is no news; of this one nothing is stored yet.
    std::ignore = events_.news();
    shell().messages().onLine(
        [this, trouble = std::move(trouble)](app::MessageLine::Kind kind, const std::string& line) {
            messages_.push_back(line);
            if (kind == app::MessageLine::Kind::trouble)
                trouble(line);
        });
    showWindow();
}

ScriptedProgram::~ScriptedProgram() {
    settle();
}

void ScriptedProgram::showWindow() {
    app::MainWindow& window = shell().window();
    // The size of the view is the script's, whatever the screen would have room for.
    window.setMinimumSize(1, 1);
    editor().view().letShrink();
    window.resize(metrics::kWindowWidth, metrics::kWindowHeight);
    // Nobody sees it: painting every step would only take time.
    window.setUpdatesEnabled(options_.isShown);
    wiring_->show();
    shell().appDelegate().applicationDidFinishLaunching();
    time().turn();
}

bool ScriptedProgram::isMoving() {
    const editor::EditorConstraints& all = editor().constraints();
    for (const editor::PanelConstraint* const each :
         {&all.constrLeftPanelLeading, &all.constrLeftPanelLeading2, &all.constrRightPanelTrailing2,
          &all.constrRightPanelWithMode, &all.constrBtnSaveBottom, &all.widthMainViewConstraint,
          &all.heightMainViewConstraint}) {
        if (each->constant() != each->target())
            return true;
    }
    return cutView().isAnimating();
}

void ScriptedProgram::settle() {
    time().turn();
    while (wiring_->telemetrix().isPosting()) {
        std::this_thread::sleep_for(kNetworkPause);
        time().turn();
    }
    while (isMoving())
        time().advance(kFrame);
}

bool ScriptedProgram::resizeView(int width, int height) {
    const QWidget& view = *editor().outlets().viCut;
    app::MainWindow& window = shell().window();
    window.resize(window.size() + QSize(width, height) - view.size());
    time().turn();
    return view.size() == QSize(width, height);
}

}  // namespace trimora
