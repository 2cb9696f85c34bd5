#include "WindowOrder.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "editor/DragView.h"

namespace trimora::reliability {

namespace fs = std::filesystem;
using cutengine::RKImageCutView;

namespace {

constexpr int kMostStates = 30;
constexpr double kPlaneSide = 2000;  // pixels
constexpr float kLeastBrush = 10;
constexpr float kMostBrush = 200;

class Findings {
 public:
    void expect(bool holds, const char* what) {
        if (!holds)
            wrong_.emplace_back(what);
    }
    [[nodiscard]] std::vector<std::string> take() { return std::move(wrong_); }

 private:
    std::vector<std::string> wrong_;
};

int historyFiles(const RKImageCutView& view) {
    const fs::directory_iterator entries(view.historyDirectory());
    return static_cast<int>(std::count_if(begin(entries), end(entries), [](const fs::directory_entry& entry) {
        return entry.path().extension() == ".his";
    }));
}

void lookAtHistory(Findings& findings, const RKImageCutView& view) {
    const std::int64_t length = view.historyLength();
    const std::int64_t current = view.historyCurrentState();
    const std::int64_t index = view.historyFileIndex();
    const int files = historyFiles(view);
    findings.expect(0 <= current && current < length && length <= kMostStates, "the counters of the history");
    findings.expect(0 <= index && index <= kMostStates, "the number of the history's file");
    findings.expect(fs::exists(view.historyDirectory() / (std::to_string(index) + ".his")),
                    "the file of what is shown");
    findings.expect(length <= files && files <= kMostStates + 1, "how many files the history has");
}

void lookAtMask(Findings& findings, const RKImageCutView& view) {
    const auto picture = view.image()->size();
    const double fitted = std::min(kPlaneSide / picture.width, kPlaneSide / picture.height);
    const double scale = std::min(fitted, 1.0);
    const auto mask = view.mask();
    findings.expect(mask != nullptr, "the mask");
    if (mask == nullptr)
        return;
    constexpr double kRounding = 1;
    findings.expect(std::abs(mask->width() - picture.width * scale) <= kRounding &&
                        std::abs(mask->height() - picture.height * scale) <= kRounding,
                    "the mask's size");
}

void lookAtPlacement(Findings& findings, const RKImageCutView& view) {
    const auto t = view.transform();
    findings.expect(std::isfinite(t.tx) && std::isfinite(t.ty), "the picture's place");
    findings.expect(view.image() == nullptr || (t.a == t.d && t.a > 0 && std::isfinite(t.a)), "the zoom");
    findings.expect(kLeastBrush <= view.brushDiameter() && view.brushDiameter() <= kMostBrush, "the brush");
}

void lookAtControls(Findings& findings, WindowProgram& program) {
    const RKImageCutView& view = program.cutView();
    app::MainInterface& shell = program.wiring().shell();
    const auto& bar = shell.windowController().outlets();
    const bool hasPicture = view.image() != nullptr;
    findings.expect(bar.btnOpen->isEnabled(), "Open");
    findings.expect(hasPicture || !bar.btnSave->isEnabled(), "Save without a picture");
    if (hasPicture) {
        findings.expect(bar.btnBack->isEnabled() == (view.historyCurrentState() != 0), "Back");
        findings.expect(
            bar.btnForward->isEnabled() == (view.historyCurrentState() < view.historyLength() - 1),
            "Forward");
        findings.expect(bar.btnRestoreImage->isEnabled() == (view.historyLength() >= 2), "Restore image");
    }
    findings.expect(program.editor().outlets().viDrug->isHidden() == hasPicture, "the empty screen");
    const std::pair<const char*, const QAbstractButton*> mirrored[] = {
        {"save_pressed:", bar.btnSave},
        {"undo_pressed:", bar.btnBack},
        {"redo_pressed:", bar.btnForward},
        {"reset_pressed:", bar.btnRestoreImage}};
    for (const auto& [selector, button] : mirrored)
        findings.expect(shell.menu().item(selector).isEnabled() == button->isEnabled(), selector);
}

}  // namespace

std::vector<std::string> sheetsShown() {
    std::vector<std::string> titles;
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || !window->isModal() || qobject_cast<const QDialog*>(window) == nullptr)
            continue;
        const QString title = window->windowTitle();
        titles.push_back(title.isEmpty() ? window->metaObject()->className() : title.toStdString());
    }
    return titles;
}

std::vector<std::string> disorderIn(WindowProgram& program) {
    Findings findings;
    const RKImageCutView& view = program.cutView();
    if (view.image() != nullptr) {
        lookAtHistory(findings, view);
        lookAtMask(findings, view);
    } else {
        findings.expect(view.mask() == nullptr, "a mask without a picture");
    }
    lookAtPlacement(findings, view);
    lookAtControls(findings, program);
    findings.expect(program.window().windowTitle() == QLatin1String("Trimora"), "the title");
    findings.expect(program.window().isShown(), "the window");
    findings.expect(sheetsShown().empty(), "a sheet that stays");
    return findings.take();
}

}  // namespace trimora::reliability
