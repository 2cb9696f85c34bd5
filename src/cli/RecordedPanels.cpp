#include "cli/RecordedPanels.h"

#include <utility>

namespace trimora {

using script::AnswerStep;
using std::filesystem::path;

void RecordedPanels::answered(const AnswerStep& step) {
    recording_.add(step);
    recording_.releaseTime();
}

void RecordedPanels::chooseFileToOpen(const path& folder, FilesAnswer answer) {
    recording_.holdTime();
    panels_.chooseFileToOpen(folder, [this, answer = std::move(answer)](const std::vector<path>& files) {
        AnswerStep::OpenPanel panel;
        if (!files.empty())
            panel.files.emplace(files.begin(), files.end());
        answered({panel});
        answer(files);
    });
}

void RecordedPanels::chooseFileToSave(const path& folder, const std::string& name, Answer answer) {
    recording_.holdTime();
    panels_.chooseFileToSave(
        folder, name, [this, answer = std::move(answer)](const std::optional<path>& file) {
            answered({AnswerStep::SavePanel{file ? std::optional(file->string()) : std::nullopt}});
            answer(file);
        });
}

void RecordedPanels::runAlert(const ports::Alert& alert, AlertAnswer answer) {
    recording_.holdTime();
    panels_.runAlert(alert, [this, answer = std::move(answer)](int button) {
        answered({AnswerStep::Alert{button}});
        answer(button);
    });
}

}  // namespace trimora
