#include "platform/QtPanels.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QStandardPaths>
#include <utility>

namespace trimora::platform {

void QtPanels::chooseFileToOpen(const std::filesystem::path& folder, Answer answer) {
    QFileDialog* const dialog = makeDialog(QStringLiteral("Open picture"), folder);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({QStringLiteral("Pictures (*.png *.tiff *.tif *.jpg *.gif *.jpeg)"),
                            QStringLiteral("All files (*)")});
    run(dialog, std::move(answer));
}

void QtPanels::chooseFileToSave(const std::filesystem::path& folder, const std::string& name, Answer answer) {
    QFileDialog* const dialog = makeDialog(QStringLiteral("Save picture"), folder);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters({QStringLiteral("PNG picture (*.png)"), QStringLiteral("All files (*)")});
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->selectFile(QString::fromStdString(name));
    run(dialog, std::move(answer));
}

QFileDialog* QtPanels::makeDialog(const QString& title, const std::filesystem::path& folder) {
    const QString start = folder.empty() ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                                         : QFile::decodeName(folder.c_str());
    auto* const dialog = new QFileDialog(QApplication::activeWindow(), title, start);
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
