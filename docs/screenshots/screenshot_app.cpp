// The main window as the screenshots show it, in a light or a dark palette
// (as a light or dark desktop would give it), started on a folder.
// Usage: screenshot_app [--dark] [FOLDER]
// Build: cmake --build build --target screenshot_app

#include <QApplication>
#include <QStyleFactory>

#include "ui/widgets/ReadableIndicatorStyle.h"
#include "ui/windows/RepForm.h"
#include "ui/platform/TerminationSignals.h"

namespace {

QPalette darkPalette() {
    QPalette p;
    const QColor window(0x2b, 0x2b, 0x2b), base(0x1e, 0x1e, 0x1e), text(0xe6, 0xe6, 0xe6);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3a));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Highlight, QColor(0x3d, 0x7a, 0xd6));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Light, QColor(0x55, 0x55, 0x55));
    p.setColor(QPalette::Midlight, QColor(0x48, 0x48, 0x48));
    p.setColor(QPalette::Mid, QColor(0x30, 0x30, 0x30));
    p.setColor(QPalette::Dark, QColor(0x20, 0x20, 0x20));
    p.setColor(QPalette::Shadow, Qt::black);
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x80, 0x80));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x80, 0x80));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x80, 0x80));
    return p;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setStyle(new vantorel::ui::ReadableIndicatorStyle(QStyleFactory::create(QStringLiteral("Fusion"))));
    QStringList arguments = app.arguments().mid(1);
    if (arguments.removeAll(QStringLiteral("--dark")) > 0) QApplication::setPalette(darkPalette());
    vantorel::ui::RepForm window;
    window.setStartFolder(arguments.join(QLatin1Char(' ')));
    // Ended by the scripts with SIGTERM: the window closes and saves its settings.
    vantorel::ui::TerminationSignals endRequests;
    QObject::connect(&endRequests, &vantorel::ui::TerminationSignals::received, &window,
                     &vantorel::ui::RepForm::endProgram);
    window.show();
    return app.exec();
}
