#pragma once
// What the window asks of the desktop: open a page, a document or a folder
// with its default handler, and let the user pick a folder or a file. The
// window gets one; tests give it one that records instead.

#include <QString>
#include <QStringList>
#include <QUrl>

class QWidget;

namespace vantorel::ui {

class DesktopServices {
public:
    virtual ~DesktopServices() = default;
    // True when the desktop took the address.
    virtual bool openUrl(const QUrl& url) = 0;
    // The chosen folder, or "" when cancelled.
    virtual QString chooseFolder(QWidget* owner, const QString& title, const QString& start) = 0;
    // The chosen file, or "" when cancelled. `filter` is in the desktop's
    // form ("CSV files (*.csv);;All files (*)").
    virtual QString chooseFileToSave(QWidget* owner, const QString& filter, const QString& defaultSuffix,
                                     const QString& folder) = 0;
    virtual QString chooseFileToOpen(QWidget* owner, const QString& filter, const QString& folder) = 0;
    // Starts a program with arguments, detached; true when it started.
    virtual bool startProgram(const QString& program, const QStringList& arguments) = 0;
};

// The desktop's own handlers and dialogs.
class SystemDesktop : public DesktopServices {
public:
    bool openUrl(const QUrl& url) override;
    QString chooseFolder(QWidget* owner, const QString& title, const QString& start) override;
    QString chooseFileToSave(QWidget* owner, const QString& filter, const QString& defaultSuffix,
                             const QString& folder) override;
    QString chooseFileToOpen(QWidget* owner, const QString& filter, const QString& folder) override;
    bool startProgram(const QString& program, const QStringList& arguments) override;
};

}  // namespace vantorel::ui
