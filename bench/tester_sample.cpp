// What the tester's marking of matches and its group table cost on a large
// sample (a benchmark, not a test: it prints its figures). For each
// expression: the time from the edit to the results on show, the matching
// time the window reports, the longest stall of the event loop meanwhile,
// choosing another match (the marks made again and the group table filled),
// and painting the sample with its marks. Build and run (a real display
// paints as a user sees it; offscreen works too):
//   cmake --build build --target tester_sample
//   VANTOREL_CONFIG_HOME=$(mktemp -d) build/bench/tester_sample [MEGABYTES]

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "ui/platform/DesktopServices.h"
#include "ui/windows/RegExTestFrm.h"

using namespace vantorel;

namespace {

QString makeSample(int megabytes) {
    const char* words[] = {"order", "engine", "analytical", "difference", "compiler", "please", "confirm", "address"};
    QString text;
    text.reserve(megabytes << 20);
    for (int line = 0; text.size() < (megabytes << 20); ++line) {
        text += QStringLiteral("%1 user%2@example%3.org %4 x %5 %6.%7 EUR on 2024-03-%8\n")
                    .arg(words[line % 8])
                    .arg(line)
                    .arg(line % 97)
                    .arg(line % 13)
                    .arg(words[(line * 7) % 8])
                    .arg(line % 5000)
                    .arg(line % 100, 2, 10, QLatin1Char('0'))
                    .arg(line % 28 + 1, 2, 10, QLatin1Char('0'));
    }
    return text;
}

// Longest gap between two ticks of a 5 ms timer, while it runs.
struct StallProbe {
    QTimer timer;
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 longest = 0;
    StallProbe() {
        timer.setInterval(5);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            const qint64 now = clock.nsecsElapsed();
            longest = std::max(longest, now - last);
            last = now;
        });
    }
    void start() {
        clock.start();
        last = 0;
        longest = 0;
        timer.start();
    }
    double stop() {
        timer.stop();
        return std::max(longest, clock.nsecsElapsed() - last) / 1e6;
    }
};

double ms(const QElapsedTimer& timer) { return timer.nsecsElapsed() / 1e6; }

// Answers the open-file dialog with one file.
struct OneFile : ui::DesktopServices {
    QString file;
    void openUrl(const QUrl&, QObject*, std::function<void(bool)> done) override { if (done) done(false); }
    QString chooseFolder(QWidget*, const QString&, const QString&) override { return {}; }
    QString chooseFileToSave(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString chooseFileToOpen(QWidget*, const QString&, const QString&) override { return file; }
    bool startProgram(const QString&, const QStringList&) override { return false; }
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const int megabytes = argc > 1 ? std::atoi(argv[1]) : 10;
    QTemporaryDir folder;
    LibraryState state;
    OneFile desktop;
    ui::RegExTestFrm window(state, folder.path().toStdString(), nullptr, &desktop);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return 1;
    auto* sample = window.findChild<QPlainTextEdit*>("InText");
    auto* pattern = window.findChild<QLineEdit*>("FText");
    QSignalSpy updated(&window, &ui::RegExTestFrm::updated);

    const QString text = makeSample(megabytes);
    desktop.file = folder.filePath("sample.txt");
    {
        QFile file(desktop.file);
        if (!file.open(QIODevice::WriteOnly)) return 1;
        file.write(text.toUtf8());
    }
    QElapsedTimer timer;
    StallProbe probe;
    probe.start();
    timer.start();
    QMetaObject::invokeMethod(&window, "loadSample");
    if (!updated.wait(60000)) return 1;
    std::printf("sample: %.1f MB, %lld lines; loaded from its file and shown in %.0f ms, the longest stall %.0f ms\n",
                text.toUtf8().size() / 1048576.0, static_cast<long long>(sample->document()->blockCount()), ms(timer),
                probe.stop());
    std::printf("%-34s %10s %10s %8s %9s %10s %9s\n", "expression", "matches", "to show", "matching", "stall",
                "choose", "paint");

    for (const char* expression : {"zzz", "EUR on", "\\d+", "(?<user>\\w+)@(?<host>[\\w.]+)", "(\\w+) x (\\d+)"}) {
        probe.start();
        timer.restart();
        pattern->setText(QString::fromLatin1(expression));
        if (!updated.wait(120000)) {
            std::printf("%s: no result\n", expression);
            continue;
        }
        const double shown = ms(timer);
        const double stall = probe.stop();
        const QString count = window.findChild<QLabel*>("foundlbl")->text();
        const QString matching = window.findChild<QLabel*>("MatchTime")->text().section(',', 0, 0);
        // Choosing another match: the marks are made again and the groups shown.
        double choose = 0;
        if (window.selectedMatch() >= 0) {
            constexpr int kRounds = 20;
            timer.restart();
            for (int i = 1; i <= kRounds; ++i) window.selectMatch(i % 2 ? 500 : 499);
            choose = ms(timer) / kRounds;
        }
        timer.restart();
        sample->viewport()->repaint();
        const double paint = ms(timer);
        std::printf("%-34s %10s %8.0f ms %8s %6.0f ms %7.1f ms %6.1f ms\n", expression, qPrintable(count), shown,
                    qPrintable(matching), stall, choose, paint);
    }
    return 0;
}
