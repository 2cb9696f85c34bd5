#pragma once

#include <QPointer>
#include <QString>

#include "ports/Panels.h"

class QFileDialog;
class QMessageBox;
class QWidget;

namespace trimora::platform {

/// Panels as dialogs of the desktop, in front of the window that is active when they are asked for. The
/// program goes on behind them.
///
/// Nobody is asked the same twice at a time: an alert whose words are on the screen already comes to the
/// front there, and the second one who asked hears what Escape would have answered.
class QtPanels final : public ports::Panels {
 public:
    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override;
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override;
    void runAlert(const ports::Alert& alert, AlertAnswer answer) override;

    /// The window that the person is in, or, while they are in another program and drag something over from
    /// there, the program's own: a question that belongs to no window would not keep anybody from going on.
    [[nodiscard]] static QWidget* windowToAskIn();

 private:
    static QFileDialog* makeDialog(const QString& title, const std::filesystem::path& folder);
    static void run(QFileDialog* dialog, Answer answer);

    QPointer<QMessageBox> alert_;  // the one that came last
};

}  // namespace trimora::platform
