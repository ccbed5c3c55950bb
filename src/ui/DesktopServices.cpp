#include "ui/DesktopServices.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QProcess>

namespace vantorel::ui {

bool SystemDesktop::openUrl(const QUrl& url) { return QDesktopServices::openUrl(url); }

QString SystemDesktop::chooseFolder(QWidget* owner, const QString& title, const QString& start) {
    // A start folder that does not exist opens the dialog without a preselection.
    const QString folder = QDir(start).exists() ? start : QString();
    return QFileDialog::getExistingDirectory(owner, title, folder, QFileDialog::ShowDirsOnly);
}

QString SystemDesktop::chooseFileToSave(QWidget* owner, const QString& filter, const QString& defaultSuffix,
                                        const QString& folder) {
    QFileDialog dialog(owner, QString(), folder, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(defaultSuffix);
    return dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty() ? dialog.selectedFiles().first()
                                                                                    : QString();
}

QString SystemDesktop::chooseFileToOpen(QWidget* owner, const QString& filter, const QString& folder) {
    return QFileDialog::getOpenFileName(owner, QString(), folder, filter);
}

bool SystemDesktop::startProgram(const QString& program, const QStringList& arguments) {
    return QProcess::startDetached(program, arguments);
}

}  // namespace vantorel::ui
