#pragma once

#include <QString>

#include "ports/Panels.h"

class QFileDialog;

namespace trimora::platform {

/// Panels as dialogs of the desktop, in front of the window that is active when they are asked for. The
/// program goes on behind them.
class QtPanels final : public ports::Panels {
 public:
    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override;
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override;
    void runAlert(const ports::Alert& alert, AlertAnswer answer) override;

 private:
    static QFileDialog* makeDialog(const QString& title, const std::filesystem::path& folder);
    static void run(QFileDialog* dialog, Answer answer);
};

}  // namespace trimora::platform
