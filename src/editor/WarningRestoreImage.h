#pragma once

#include <QWidget>
#include <functional>
#include <utility>

#include "controls/ControlContext.h"
#include "controls/Sheet.h"

class QLabel;

namespace trimora::controls {
class GradientButton;
}

namespace trimora::editor {

/// The question before all cutting is thrown away, with No and Yes.
///
/// Either answer runs cancelActionHandler; Yes then posts "resetImageNotif". Where no handler is set
/// neither answer does anything, the post included. Main thread only; what the context refers to outlives
/// the view.
class WarningRestoreImage final : public QWidget {
 public:
    explicit WarningRestoreImage(const controls::ControlContext& context, QWidget* parent = nullptr);

    /// Run on either answer; empty to begin with.
    void setCancelActionHandler(std::function<void()> handler) { cancelActionHandler_ = std::move(handler); }

    void clickNo();
    void clickYes();

    void setCorners(controls::SheetCorners corners);
    [[nodiscard]] controls::SheetCorners corners() const { return corners_; }

    [[nodiscard]] controls::GradientButton& noDeleteProgress() { return *noDeleteProgress_; }
    [[nodiscard]] controls::GradientButton& yesDeleteProgress() { return *yesDeleteProgress_; }
    [[nodiscard]] const QLabel& infoLabel() const { return *infoLabel_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void setupNib();

    controls::ControlContext context_;
    controls::SheetCorners corners_ = controls::SheetCorners::lower;
    QLabel* infoLabel_;
    controls::GradientButton* noDeleteProgress_;
    controls::GradientButton* yesDeleteProgress_;
    std::function<void()> cancelActionHandler_;
};

}  // namespace trimora::editor
