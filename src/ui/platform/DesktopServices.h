#pragma once
// What the window asks of the desktop: open a page, a document or a folder
// with its default handler, and let the user pick a folder or a file. The
// window gets one; tests give it one that records instead.

#include <QString>
#include <QStringList>
#include <QUrl>
#include <functional>

class QObject;
class QWidget;

namespace vantorel::ui {

class DesktopServices {
public:
    virtual ~DesktopServices() = default;
    // Opens a page, a document or a folder with the desktop's handler, without
    // waiting for it. `done` learns later, on the window's thread, whether it
    // worked; it is not called once `receiver` is gone, and may be empty.
    virtual void openUrl(const QUrl& url, QObject* receiver, std::function<void(bool opened)> done) = 0;
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

// The desktop's own handlers and dialogs. Pages, documents and folders go
// to `opener` (xdg-open), whose exit status tells whether they opened.
class SystemDesktop : public DesktopServices {
public:
    explicit SystemDesktop(QString opener = QStringLiteral("xdg-open")) : opener_(std::move(opener)) {}

    void openUrl(const QUrl& url, QObject* receiver, std::function<void(bool opened)> done) override;
    QString chooseFolder(QWidget* owner, const QString& title, const QString& start) override;
    QString chooseFileToSave(QWidget* owner, const QString& filter, const QString& defaultSuffix,
                             const QString& folder) override;
    QString chooseFileToOpen(QWidget* owner, const QString& filter, const QString& folder) override;
    bool startProgram(const QString& program, const QStringList& arguments) override;

private:
    QString opener_;
};

}  // namespace vantorel::ui
