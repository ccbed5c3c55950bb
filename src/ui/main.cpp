// vantorel: the desktop window. `vantorel [FOLDER]` starts on FOLDER.

#include <QApplication>
#include <QMessageBox>
#include <QStringList>

#include "search/EngineSelfTest.h"
#include "ui/RepForm.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);  // takes out the arguments meant for Qt
    QApplication::setApplicationName(QStringLiteral("Vantorel"));
    QApplication::setApplicationVersion(QStringLiteral(VANTOREL_VERSION));
    // The desktop matches the window to its menu entry and icon by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral(VANTOREL_APP_ID));

    if (const auto failure = vantorel::EngineSelfTest()) {
        QString text = QString::fromStdString(failure->text);
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        QMessageBox::critical(nullptr, QString::fromStdString(failure->title), text, QMessageBox::Ok);
        return 1;  // no window, no settings saved
    }

    // The command line is taken whole, every double quote removed.
    QStringList words;
    for (int i = 1; i < argc; ++i) words << QString::fromLocal8Bit(argv[i]);
    vantorel::ui::RepForm window;
    window.setStartFolder(words.join(QLatin1Char(' ')));
    window.show();
    return app.exec();
}
