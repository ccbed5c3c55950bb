// vantorel: the desktop window. `vantorel [FOLDER]` starts on FOLDER.

#include <QApplication>
#include <QStringList>

#include "search/EngineSelfTest.h"
#include "ui/GuiMessageHost.h"
#include "ui/RepForm.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);  // takes out the arguments meant for Qt
    QApplication::setApplicationName(QStringLiteral("Vantorel"));
    QApplication::setApplicationVersion(QStringLiteral(VANTOREL_VERSION));
    // The desktop matches the window to its menu entry and icon by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral(VANTOREL_APP_ID));

    if (const auto failure = vantorel::EngineSelfTest()) {
        vantorel::ui::GuiMessageHost().showMessage(*failure);
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
