// The queue between a run's worker and the window: order, back-pressure,
// round trips, and letting go of a worker when the window closes.

#include <QTest>
#include <atomic>
#include <thread>

#include "ui/RunEventQueue.h"

using namespace vantorel;
using namespace vantorel::ui;

namespace {

RunReport status(const std::string& text) { return reports::Status{text}; }

std::string statusText(const RunEvent& event) { return std::get<reports::Status>(std::get<RunReport>(event)).text; }

}  // namespace

class RunEventQueueTest : public QObject {
    Q_OBJECT

private slots:
    void aFullQueueHoldsTheWorkerUntilTheWindowTakesEvents() {
        RunEventQueue queue(3, std::size_t{1} << 20);
        std::atomic<int> posted{0};
        std::thread worker([&] {
            for (int i = 0; i < 5; ++i) {
                queue.post(status(std::to_string(i)));
                ++posted;
            }
        });
        QTRY_COMPARE(posted.load(), 3);
        QTest::qWait(0);
        QCOMPARE(posted.load(), 3);  // the fourth waits for room
        RunEvent event;
        std::vector<std::string> taken;
        while (taken.size() < 5)
            if (queue.take(event)) taken.push_back(statusText(event));
        worker.join();
        QCOMPARE(taken, std::vector<std::string>({"0", "1", "2", "3", "4"}));
        QVERIFY(queue.empty());
    }

    void aRoundTripWaitsForTheAnswerAndWakesTheWindow() {
        RunEventQueue queue;
        std::atomic<int> wakeUps{0};
        queue.setWakeUp([&] { ++wakeUps; });
        std::atomic<int> answer{-1};
        std::thread worker([&] {
            answer = queue.roundTrip(RoundTrip{Message{}, true}) ? 1 : 0;
        });
        RunEvent event;
        bool taken = false;
        QTRY_VERIFY((taken = taken || queue.take(event)));  // taken once, however often asked
        QVERIFY(std::get<RoundTrip>(event).question);
        QCOMPARE(wakeUps.load(), 1);
        QCOMPARE(answer.load(), -1);  // still waiting
        queue.answer(true);
        worker.join();
        QCOMPARE(answer.load(), 1);
    }

    void abandoningReleasesAWaitingWorkerAndAnswersNo() {
        RunEventQueue queue(1, std::size_t{1} << 20);
        queue.post(status("fills the queue"));
        std::atomic<bool> done{false};
        bool answered = true;
        std::thread worker([&] {
            queue.post(status("waits for room"));
            answered = queue.roundTrip(RoundTrip{Message{}, true});
            done = true;
        });
        queue.abandon();
        worker.join();
        QVERIFY(done);
        QVERIFY(!answered);
        QVERIFY(queue.empty());
    }
};

QTEST_MAIN(RunEventQueueTest)
#include "RunEventQueueTest.moc"
