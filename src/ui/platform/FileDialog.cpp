#include "ui/platform/FileDialog.h"

#include <QFileInfo>
#include <QStringList>
#include <QUrl>

#include "core/FrontEndMessages.h"

namespace vantorel::ui {

const char* const kMakerPage = "https://www.brimlark.example/";
const char* const kProductPage = "https://www.brimlark.example/vantorel/";

QString desktopFilter(const QString& pairs) {
    QString text = pairs;
    text.replace(QChar(u'\0'), QLatin1Char('|'));  // a list already split by NUL characters
    const QStringList parts = text.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        patterns.replace(QStringLiteral("*.*"), QStringLiteral("*"));
        const QString& description = parts[i];
        filters << (description.contains(QLatin1Char('('))
                        ? QString(description).replace(QStringLiteral("*.*"), QStringLiteral("*"))
                        : description + QStringLiteral(" (") + patterns + QLatin1Char(')'));
    }
    return filters.join(QStringLiteral(";;"));
}

QString SaveFileDialog(DesktopServices& desktop, QWidget* owner, const QString& filter,
                       const QString& defaultExtension, const QString& initialFolder) {
    return desktop.chooseFileToSave(owner, desktopFilter(filter), defaultExtension, initialFolder);
}

QString OpenFileDialog(DesktopServices& desktop, QWidget* owner, const QString& filter,
                       const QString& initialFolder) {
    return desktop.chooseFileToOpen(owner, desktopFilter(filter), initialFolder);
}

QString BrowseForFolder(DesktopServices& desktop, QWidget* owner, const QString& title, const QString& startFolder) {
    return desktop.chooseFolder(owner, title, startFolder);
}

void OpenPage(DesktopServices& desktop, MessageHost& messages, const QString& target, QObject* receiver) {
    QUrl url(target, QUrl::StrictMode);
    if (url.scheme().isEmpty() || url.isLocalFile()) {
        const QString file = url.isLocalFile() ? url.toLocalFile() : target;
        url = QFileInfo::exists(file) ? QUrl::fromLocalFile(file) : QUrl();
    }
    if (!url.isValid() || url.isEmpty()) {
        messages.showMessage(unableToViewPage());
        return;
    }
    desktop.openUrl(url, receiver, [&messages](bool opened) {
        if (!opened) messages.showMessage(unableToViewPage());
    });
}

}  // namespace vantorel::ui
