#pragma once

#include <QDialog>

#include "controls/ControlContext.h"
#include "editor/WarningRestoreImage.h"

namespace trimora::editor {

/// Presents the restore question as a sheet over a window.
///
/// Life cycle: made over a screen, presented by presentAsSheet(), and gone by itself once it is answered
/// (or with the screen). While it is there the window below takes no input. Escape and closing it are a No;
/// the keyboard begins on No. Yes posts "resetImageNotif" after the sheet was dismissed.
///
/// Main thread only; what the context refers to outlives it.
class WarningRestoreImageController final : public QDialog {
 public:
    /// The sheet will hang from the upper edge of `screen`, in the middle. Where the desktop does not let a
    /// window choose its place it floats, with all four corners round.
    WarningRestoreImageController(const controls::ControlContext& context, QWidget& screen);

    void presentAsSheet();

    /// The question, for whoever answers it in the person's stead.
    [[nodiscard]] WarningRestoreImage& warningView() { return *warningView_; }

    void reject() override;

 protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    void loadView(const controls::ControlContext& context);
    void viewDidLoad();
    void makeWarningHandler();

    WarningRestoreImage* warningView_ = nullptr;
};

}  // namespace trimora::editor
