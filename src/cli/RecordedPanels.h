#pragma once

#include "cli/Recording.h"
#include "ports/Panels.h"

namespace trimora {

/// Panels that ask the person by others, and write down what was answered. Main thread only; both outlive
/// it and its last answer.
class RecordedPanels final : public ports::Panels {
 public:
    RecordedPanels(ports::Panels& panels, Recording& recording) : panels_(panels), recording_(recording) {}

    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override;
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override;
    void runAlert(const ports::Alert& alert, AlertAnswer answer) override;

 private:
    void answered(const script::AnswerStep& step);

    ports::Panels& panels_;
    Recording& recording_;
};

}  // namespace trimora
