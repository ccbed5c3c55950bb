#include "ui/platform/DesktopServices.h"

#include <QDir>
#include <QFileDialog>
#include <QProcess>

namespace vantorel::ui {

void SystemDesktop::openUrl(const QUrl& url, QObject* receiver, std::function<void(bool opened)> done) {
    // Without a parent: a program still open when the window closes stays open.
    auto* process = new QProcess;
    process->setProgram(opener_);
    process->setArguments({url.isLocalFile() ? url.toLocalFile() : url.toString()});
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process, [process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) process->deleteLater();
    });
    if (done) {
        QObject::connect(process, &QProcess::finished, receiver, [done](int code, QProcess::ExitStatus status) {
            done(status == QProcess::NormalExit && code == 0);
        });
        QObject::connect(process, &QProcess::errorOccurred, receiver, [done](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) done(false);
        });
    }
    process->start();
}

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
