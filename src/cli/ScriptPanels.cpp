#include "cli/ScriptPanels.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "editor/WarningRestoreImageController.h"

namespace trimora {

using std::filesystem::path;

namespace {

/// The next answer of a kind, or what stands for none.
template <typename Answer>
Answer next(std::deque<Answer>& queue, Answer none) {
    if (!queue.empty()) {
        std::swap(none, queue.front());
        queue.pop_front();
    }
    return none;
}

std::optional<path> chosen(const std::string& file) {
    return file.empty() ? std::nullopt : std::optional(std::filesystem::absolute(file));
}

}  // namespace

std::vector<path> absolutePaths(const std::vector<std::string>& files) {
    std::vector<path> paths(files.size());
    std::transform(files.begin(), files.end(), paths.begin(),
                   [](const std::string& file) { return std::filesystem::absolute(file); });
    return paths;
}

ScriptPanels::ScriptPanels(foundation::SerialQueue& mainQueue, std::function<void(const std::string&)> said)
    : mainQueue_(mainQueue), said_(std::move(said)) {
    qApp->installEventFilter(this);
}

ScriptPanels::~ScriptPanels() {
    qApp->removeEventFilter(this);
}

void ScriptPanels::queue(const script::AnswerStep& answer) {
    if (const auto* const open = std::get_if<Kinds::OpenPanel>(&answer.with))
        open_.push_back(absolutePaths(open->files.value_or(std::vector<std::string>())));
    else if (const auto* const save = std::get_if<Kinds::SavePanel>(&answer.with))
        save_.push_back(save->file.value_or(""));
    else if (const auto* const alert = std::get_if<Kinds::Alert>(&answer.with))
        alert_.push_back(alert->button);
    else if (const auto* const warning = std::get_if<Kinds::Warning>(&answer.with))
        warning_.push_back(warning->yes);
}

void ScriptPanels::chooseFileToOpen(const path& /*folder*/, FilesAnswer answer) {
    mainQueue_.async([this, answer = std::move(answer)] { answer(next(open_, {})); });
}

void ScriptPanels::chooseFileToSave(const path& /*folder*/, const std::string& /*name*/, Answer answer) {
    mainQueue_.async([this, answer = std::move(answer)] { answer(chosen(next(save_, {}))); });
}

void ScriptPanels::runAlert(const ports::Alert& alert, AlertAnswer answer) {
    said_(alert.message);
    mainQueue_.async(
        [this, cancel = alert.cancelAnswer, answer = std::move(answer)] { answer(next(alert_, cancel)); });
}

bool ScriptPanels::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Show)
        return false;
    auto* const sheet = dynamic_cast<editor::WarningRestoreImageController*>(watched);
    if (sheet == nullptr)
        return false;
    said_(sheet->warningView().infoLabel().text().toStdString());
    mainQueue_.async([this, sheet = QPointer(sheet)] {
        if (sheet == nullptr)
            return;
        if (next(warning_, false))
            sheet->warningView().clickYes();
        else
            sheet->warningView().clickNo();
    });
    return false;
}

}  // namespace trimora
