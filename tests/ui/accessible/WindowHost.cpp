// Shows one of the program's windows, as the window tests open it, for the
// accessible-tree walk: `ui_window_host NAME` prints "ready" once the window
// is up and runs until it is ended. Names: see WindowCatalogue::names().

#include <QApplication>
#include <cstdio>

#include "UiTestSupport.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("vantorel-window-host"));
    if (argc != 2 || !vantorel::test::WindowCatalogue::names().contains(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "usage: %s %s\n", argv[0],
                     qPrintable(vantorel::test::WindowCatalogue::names().join(QLatin1Char('|'))));
        return 2;
    }
    vantorel::test::WindowCatalogue catalogue;
    if (!catalogue.open(QString::fromLocal8Bit(argv[1]))) return 1;
    std::printf("ready\n");
    std::fflush(stdout);
    return app.exec();
}
