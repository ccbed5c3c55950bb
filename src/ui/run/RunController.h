#pragma once
// Runs a Find, Replace or Extract on a worker thread and shows what it
// reports on the window's thread: events are taken from a bounded queue in
// short time slices, so the window stays responsive whatever the run finds.
// Messages and questions are shown on the window's thread while the worker
// waits for the answer.

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>
#include <memory>

#include "core/MessageHost.h"
#include "core/SearchState.h"
#include "core/RunTypes.h"

class QThread;

namespace vantorel {
class RunEventQueue;
class WorkerRunHost;
}  // namespace vantorel

namespace vantorel::ui {

class RunDisplay;

class RunController : public QObject {
    Q_OBJECT
public:
    RunController(RunDisplay& display, MessageHost& messages, SearchState& state, QObject* parent = nullptr);
    ~RunController() override;

    // True from the start until the worker has ended (also while an
    // abandoned run is still stopping).
    bool isRunning() const noexcept { return thread_ != nullptr; }
    // Starts a run; false when one is already going on.
    bool start(RunRequest request);
    // The Stop button: the run notices at its next check.
    void stop();
    // The window is closing: stop, answer any question with No and drop what
    // is still to be shown. Returns at once; the worker ends by itself.
    void abandon();
    // Waits until the worker has ended; false when it has not by the deadline.
    bool waitForEnd(QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever));

private slots:
    void drain();

private:
    void cleanUp();

    RunDisplay& display_;
    MessageHost& messages_;
    SearchState& state_;
    std::unique_ptr<RunEventQueue> queue_;
    std::unique_ptr<WorkerRunHost> host_;
    QThread* thread_ = nullptr;
    QTimer timer_;
    bool draining_ = false;
    bool abandoned_ = false;
};

}  // namespace vantorel::ui
