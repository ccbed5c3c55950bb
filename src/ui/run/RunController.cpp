#include "ui/run/RunController.h"

#include <QElapsedTimer>
#include <QThread>

#include "search/SearchRun.h"
#include "ui/run/RunDisplay.h"
#include "search/RunEventQueue.h"
#include "search/WorkerRunHost.h"

namespace vantorel::ui {
namespace {

constexpr int kDrainIntervalMs = 40;  // how often the window looks for news
constexpr int kSliceMs = 25;          // the longest the window spends on news at once

}  // namespace

RunController::RunController(RunDisplay& display, MessageHost& messages, SearchState& state, QObject* parent)
    : QObject(parent), display_(display), messages_(messages), state_(state) {
    timer_.setInterval(kDrainIntervalMs);
    connect(&timer_, &QTimer::timeout, this, &RunController::drain);
}

RunController::~RunController() {
    abandon();
    waitForEnd();
}

bool RunController::start(RunRequest request) {
    if (thread_) return false;
    state_.stopRequested = false;  // here, not on the worker: a Stop right after the start counts
    queue_ = std::make_unique<RunEventQueue>();
    host_ = std::make_unique<WorkerRunHost>(*queue_);
    queue_->setWakeUp([this] { QMetaObject::invokeMethod(this, &RunController::drain, Qt::QueuedConnection); });
    WorkerRunHost* host = host_.get();
    SearchState* state = &state_;
    thread_ = QThread::create([request = std::move(request), host, state] { RunSearch(request, *state, *host); });
    thread_->setObjectName(QStringLiteral("vantorel-run"));
    // An abandoned run is cleared away once its worker has ended.
    connect(thread_, &QThread::finished, this, [this] {
        if (abandoned_) cleanUp();
    });
    thread_->start();
    timer_.start();
    return true;
}

void RunController::stop() { state_.stopRequested = true; }

void RunController::abandon() {
    if (!thread_ || abandoned_) return;
    abandoned_ = true;
    state_.stopRequested = true;
    queue_->abandon();
    timer_.stop();
}

bool RunController::waitForEnd(QDeadlineTimer deadline) {
    if (!thread_) return true;
    if (!thread_->wait(deadline)) return false;
    cleanUp();
    return true;
}

void RunController::cleanUp() {
    timer_.stop();
    if (thread_) {
        thread_->wait();
        delete thread_;
        thread_ = nullptr;
    }
    host_.reset();
    queue_.reset();
    abandoned_ = false;
}

void RunController::drain() {
    if (draining_ || !queue_ || abandoned_) return;
    draining_ = true;
    QElapsedTimer slice;
    slice.start();
    RunEvent event;
    while (slice.elapsed() < kSliceMs && queue_ && queue_->take(event)) {
        if (auto* trip = std::get_if<RoundTrip>(&event)) {
            display_.flush();  // the question comes after what led to it
            bool answer = true;
            if (trip->question) answer = messages_.askYesNo(trip->message);
            else messages_.showMessage(trip->message);
            if (!queue_ || abandoned_) break;  // the window closed meanwhile
            queue_->answer(answer);
            slice.restart();
            continue;
        }
        RunReport& report = std::get<RunReport>(event);
        if (std::holds_alternative<reports::Finished>(report)) {
            cleanUp();  // the worker has ended: what it left in the run state can be read
            draining_ = false;
            display_.show(std::move(report));
            return;
        }
        display_.show(std::move(report));
    }
    draining_ = false;
    if (!queue_ || abandoned_) return;
    display_.flush();
    // A backlog is taken up again as soon as the window has seen to its other
    // events and timers; otherwise the window looks again after a while.
    timer_.setInterval(queue_->empty() ? kDrainIntervalMs : 0);
}

}  // namespace vantorel::ui
