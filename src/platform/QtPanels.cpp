#include "platform/QtPanels.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <algorithm>
#include <utility>
#include <vector>

namespace trimora::platform {

QWidget* QtPanels::windowToAskIn() {
    if (QWidget* const active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr;
    });
    return found != windows.end() ? *found : nullptr;
}

void QtPanels::chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) {
    QFileDialog* const dialog = makeDialog(QStringLiteral("Open picture"), folder);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({QStringLiteral("Pictures (*.png *.tiff *.tif *.jpg *.gif *.jpeg)"),
                            QStringLiteral("All files (*)")});
    run(dialog, [answer = std::move(answer)](std::optional<std::filesystem::path> chosen) {
        answer(chosen ? std::vector{std::move(*chosen)} : std::vector<std::filesystem::path>());
    });
}

void QtPanels::chooseFileToSave(const std::filesystem::path& folder, const std::string& name, Answer answer) {
    QFileDialog* const dialog = makeDialog(QStringLiteral("Save picture"), folder);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters({QStringLiteral("PNG picture (*.png)"), QStringLiteral("All files (*)")});
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->selectFile(QString::fromStdString(name));
    run(dialog, std::move(answer));
}

void QtPanels::runAlert(const ports::Alert& alert, AlertAnswer answer) {
    const QString message = QString::fromStdString(alert.message);
    if (alert_ != nullptr && alert_->isVisible() && alert_->text() == message) {
        alert_->activateWindow();
        QMetaObject::invokeMethod(
            qApp, [cancel = alert.cancelAnswer, answer = std::move(answer)] { answer(cancel); },
            Qt::QueuedConnection);
        return;
    }
    auto* const box = new QMessageBox(windowToAskIn());
    alert_ = box;
    box->setAttribute(Qt::WA_DeleteOnClose);
    // A sheet, with no bar of the window manager's over the toolbar it hangs from; the style paints it.
    box->setWindowFlag(Qt::FramelessWindowHint);
    box->setAttribute(Qt::WA_TranslucentBackground);
    box->setText(message);
    std::vector<QAbstractButton*> buttons;
    // One role for all of them: the box would sort different ones into the desktop's own order.
    for (const std::string& title : alert.buttons)
        buttons.push_back(box->addButton(QString::fromStdString(title), QMessageBox::ActionRole));
    box->setDefaultButton(static_cast<QPushButton*>(buttons.front()));
    box->setEscapeButton(
        buttons.at(static_cast<std::size_t>(alert.cancelAnswer - ports::Alert::kFirstButton)));
    QObject::connect(box, &QDialog::finished, box, [box, buttons, answer = std::move(answer)] {
        const auto pressed = std::find(buttons.begin(), buttons.end(), box->clickedButton());
        answer(ports::Alert::kFirstButton + static_cast<int>(pressed - buttons.begin()));
    });
    box->open();
}

QFileDialog* QtPanels::makeDialog(const QString& title, const std::filesystem::path& folder) {
    const QString start = folder.empty() ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                                         : QFile::decodeName(folder.c_str());
    auto* const dialog = new QFileDialog(windowToAskIn(), title, start);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
}

void QtPanels::run(QFileDialog* dialog, Answer answer) {
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, answer = std::move(answer)](int button) {
        const QStringList chosen = dialog->selectedFiles();
        if (button == QDialog::Accepted && !chosen.isEmpty())
            answer(QFile::encodeName(chosen.front()).toStdString());
        else
            answer(std::nullopt);
    });
    dialog->open();
}

}  // namespace trimora::platform
