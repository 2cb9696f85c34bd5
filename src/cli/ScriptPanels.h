#pragma once

#include <QObject>
#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "foundation/Queues.h"
#include "ports/Panels.h"
#include "script/Steps.h"

namespace trimora {

/// The files that a script names, seen from the folder that the program was started in.
[[nodiscard]] std::vector<std::filesystem::path> absolutePaths(const std::vector<std::string>& files);

/// The panels of a scripted run: answered from what the script has queued, each kind for itself, in order.
///
/// A panel is answered by a task of the main queue, so an answer that is queued right after the panel came
/// up is in time. One without an answer is cancelled; the restore warning is told No. Main thread only.
class ScriptPanels final : public QObject, public ports::Panels {
 public:
    /// `said` hears the question of every alert and warning.
    ScriptPanels(foundation::SerialQueue& mainQueue, std::function<void(const std::string&)> said);
    ~ScriptPanels() override;

    void queue(const script::AnswerStep& answer);

    // ports::Panels
    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override;
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override;
    void runAlert(const ports::Alert& alert, AlertAnswer answer) override;

    /// Sees the restore warning come up, which is no panel of the port's.
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    using Kinds = script::AnswerStep;

    foundation::SerialQueue& mainQueue_;
    const std::function<void(const std::string&)> said_;
    std::deque<std::vector<std::filesystem::path>> open_;  // empty: cancelled
    std::deque<std::string> save_;                         // empty: cancelled
    std::deque<int> alert_;
    std::deque<bool> warning_;
};

}  // namespace trimora
