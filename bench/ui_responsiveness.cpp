// Measures how responsive the window stays, and how much memory it takes,
// during a run over a large tree (a benchmark, not a test: it prints its
// figures). A timer probes the event loop every 5 ms during the run and
// records the longest gap between two of its ticks. Build and run:
//   cmake --build build --target ui_responsiveness
//   QT_QPA_PLATFORM=offscreen VANTOREL_CONFIG_HOME=$(mktemp -d) VANTOREL_UI_FILES=100000 build/bench/ui_responsiveness The tree's size comes from
// VANTOREL_UI_FILES (default 2000 files; 100000 for the full measurement),
// each file holding 10 matches; VANTOREL_UI_PREVIEW_ALL=0 measures the run
// without the combined preview.

#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "UiTestSupport.h"
#include "support/TempTree.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

long statusKilobytes(const char* field) {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(field)) return line.mid(static_cast<int>(qstrlen(field))).trimmed().split(' ').first().toLong();
    return -1;
}

// Longest gap between two ticks of a 5 ms timer, while it runs.
class StallProbe : public QObject {
public:
    StallProbe() {
        timer_.setInterval(5);
        connect(&timer_, &QTimer::timeout, this, [this] {
            const qint64 now = clock_.nsecsElapsed();
            if (last_ >= 0) {
                const qint64 gap = now - last_;
                longest_ = std::max(longest_, gap);
                if (gap > 100'000'000) ++over100ms_;
            }
            last_ = now;
        });
    }
    void start() {
        clock_.start();
        last_ = -1;
        timer_.start();
    }
    void stop() { timer_.stop(); }
    double longestMs() const { return static_cast<double>(longest_) / 1e6; }
    int over100ms() const { return over100ms_; }

private:
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 last_ = -1;
    qint64 longest_ = 0;
    int over100ms_ = 0;
};

}  // namespace

class UiResponsiveness : public QObject {
    Q_OBJECT

private slots:
    void aLargeRunKeepsTheWindowResponsiveAndItsMemoryBounded() {
        const int files = qEnvironmentVariableIsSet("VANTOREL_UI_FILES") ? qEnvironmentVariableIntValue("VANTOREL_UI_FILES")
                                                                         : 2000;
        TempTree tree;
        std::string text;
        for (int line = 0; line < 10; ++line) text += "a line with one colour in it, number " + std::to_string(line) + "\n";
        for (int i = 0; i < files; ++i) {
            const std::string folder = tree.root() + "/d" + std::to_string(i / 1000);
            if (i % 1000 == 0) std::filesystem::create_directories(folder);
            std::ofstream(folder + "/f" + std::to_string(i) + ".txt", std::ios::binary) << text;
        }

        FormFixture f;
        f.form->resize(1000, 760);
        f.form->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.form.get()));
        f.child<QTimer>("SplashTimer")->stop();
        f.setInputs(QString::fromStdString(tree.root()), "*.txt", "colour");
        if (qEnvironmentVariableIsSet("VANTOREL_UI_PREVIEW_ALL"))
            f.form->settings().PreviewAll = qEnvironmentVariableIntValue("VANTOREL_UI_PREVIEW_ALL") != 0;
        const long rssBefore = statusKilobytes("VmRSS:");

        StallProbe probe;
        QElapsedTimer clock;
        qint64 firstRow = -1;  // from pressing Find to the first row in the list
        QObject::connect(&f.rows(), &QAbstractItemModel::rowsInserted, f.form.get(),
                         [&] { firstRow = clock.elapsed(); }, Qt::SingleShotConnection);
        clock.start();
        probe.start();
        QVERIFY(f.runBy("FindBtn"));
        probe.stop();
        const qint64 elapsed = clock.elapsed();

        QCOMPARE(f.status(), QString("%1 files processed, %2 occurences found in %1 file(s)").arg(files).arg(files * 10));
        QCOMPARE(f.rows().rowCount(), files);
        std::printf("files %d, matches %d: %lld ms, first row after %lld ms; longest event-loop stall %.1f ms, "
                    "stalls over 100 ms: %d; RSS %ld kB before, %ld kB after, peak %ld kB; preview %lld characters\n",
                    files, files * 10, static_cast<long long>(elapsed), static_cast<long long>(firstRow),
                    probe.longestMs(), probe.over100ms(),
                    rssBefore, statusKilobytes("VmRSS:"), statusKilobytes("VmHWM:"),
                    static_cast<long long>(f.pane()->characterCount()));

        // Stop ends the next run at once.
        QSignalSpy ended(f.form.get(), &ui::RepForm::runEnded);
        qint64 stoppedAt = -1;
        QObject::connect(&f.rows(), &QAbstractItemModel::rowsInserted, f.form.get(), [&] {
            if (!f.button("StopBtn")->isEnabled()) return;
            stoppedAt = clock.elapsed();
            QTest::mouseClick(f.button("StopBtn"), Qt::LeftButton);
        }, Qt::SingleShotConnection);
        StallProbe stopProbe;
        stopProbe.start();
        clock.restart();
        QTest::mouseClick(f.button("FindBtn"), Qt::LeftButton);
        QVERIFY(ended.wait(60000));
        stopProbe.stop();
        std::printf("second run: Stop pressed at %lld ms, run ended %lld ms later with %d rows; longest stall %.1f ms\n",
                    static_cast<long long>(stoppedAt), static_cast<long long>(clock.elapsed() - stoppedAt),
                    f.rows().rowCount(), stopProbe.longestMs());
        if (files >= 20000) {
            QCOMPARE(f.messages.texts().back(), std::string("Search operation stopped."));
            QVERIFY(f.rows().rowCount() < files);
        }
    }
};

QTEST_MAIN(UiResponsiveness)
#include "ui_responsiveness.moc"
