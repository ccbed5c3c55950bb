// vantorel: the desktop window. `vantorel [FOLDER]` starts on FOLDER.

#include <QApplication>
#include <QStringList>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "regex/EngineSelfTest.h"
#include "ui/platform/GuiMessageHost.h"
#include "ui/widgets/ReadableIndicatorStyle.h"
#include "ui/windows/RepForm.h"
#include "ui/platform/TerminationSignals.h"

namespace {

const char* const kUsage = R"(Usage: vantorel [FOLDER]
Opens the Vantorel window, which finds, replaces and extracts text in every
file under a folder whose name matches a filter.

FOLDER is the start folder: the whole command line, spaces and all, with
every double quote removed, so that a name with spaces needs no quotes.
Without it the window starts on the folder it used last.

  -h, --help      this text (alone on the command line)
      --version   the version (alone on the command line)

Qt's own options, such as -platform NAME, -style NAME and -display DISPLAY,
are taken out before the rest is read as FOLDER.

Exit status:
  0 when the window was closed (also by SIGTERM, SIGHUP or Ctrl+C in the
  terminal), 1 when the program's self-test failed (a message says why).
)";

}  // namespace

int main(int argc, char** argv) {
    // Answered before Qt starts, so that they need no display.
    if (argc == 2 && std::string_view(argv[1]) == "--version") {
        std::puts("vantorel (Vantorel) " VANTOREL_VERSION);
        return 0;
    }
    if (argc == 2 && (std::string_view(argv[1]) == "--help" || std::string_view(argv[1]) == "-h")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    QApplication app(argc, argv);  // takes out the arguments meant for Qt
    QApplication::setStyle(new vantorel::ui::ReadableIndicatorStyle);  // the desktop's, marks readable
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
    // A request to end from outside closes the window as the user would.
    vantorel::ui::TerminationSignals endRequests;
    QObject::connect(&endRequests, &vantorel::ui::TerminationSignals::received, &window,
                     &vantorel::ui::RepForm::endProgram);
    window.show();
    const int code = app.exec();
    // The window is gone and its run was told to stop. A run that has not
    // ended soon after is stuck in the system (a network folder that does not
    // answer): the program ends without it. Files are never half-written, and
    // a later run clears away a temporary file left behind.
    if (!window.waitForRunToEnd(QDeadlineTimer(5000))) std::_Exit(code);
    return code;
}
