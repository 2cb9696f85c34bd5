#pragma once

#include <QDialog>
#include <QObject>
#include <functional>
#include <string>

#include "app/GdprConsent.h"

class QCheckBox;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;

namespace trimora::app {

/// Help > Usage data…: the present answer, which can be changed here, and everything that is stored, as text,
/// with a button that deletes it. Does not keep the person from the window behind it. Main thread only.
class UsageDataDialog final : public QDialog {
 public:
    /// `answered` is called after an answer was given here. The consent outlives the dialog.
    UsageDataDialog(GdprConsent& consent, std::function<void()> answered, QWidget* parent);

    [[nodiscard]] QRadioButton& yes() { return *yes_; }
    [[nodiscard]] QRadioButton& no() { return *no_; }
    [[nodiscard]] QCheckBox& asStored() { return *asStored_; }
    [[nodiscard]] QPushButton& deleteButton() { return *delete_; }
    /// What is shown of the store; empty until it has been read.
    [[nodiscard]] QString shownText() const;

    /// Reads the store anew.
    void refresh();

 private:
    QRadioButton* makeChoice(const QString& text, GdprConsent::Answer answer);
    void showAnswer();

    GdprConsent& consent_;
    std::function<void()> answered_;
    QRadioButton* yes_;
    QRadioButton* no_;
    QCheckBox* asStored_;
    QPlainTextEdit* stored_;
    QPushButton* delete_;
};

}  // namespace trimora::app
