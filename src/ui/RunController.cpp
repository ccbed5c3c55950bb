#include "ui/RunController.h"

#include <QElapsedTimer>
#include <QThread>
#include <exception>

#include "search/SearchRun.h"
#include "ui/RunEventQueue.h"
#include "ui/WorkerRunHost.h"

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

RunController::~RunController() { abandon(); }

bool RunController::start(RunRequest request) {
    if (thread_) return false;
    queue_ = std::make_unique<RunEventQueue>();
    host_ = std::make_unique<WorkerRunHost>(*queue_, state_);
    queue_->setWakeUp([this] { QMetaObject::invokeMethod(this, &RunController::drain, Qt::QueuedConnection); });
    pendingAnchor_ = -1;
    WorkerRunHost* host = host_.get();
    SearchState* state = &state_;
    thread_ = QThread::create([request = std::move(request), host, state] {
        try {
            RunSearch(request, *state, *host);
        } catch (const std::exception& error) {
            // Whatever escapes the driver still ends the run visibly.
            host->showMessage(Message{std::string("Error in Find/Replace process!\r\n") + error.what(),
                                      kProgramTitle, MessageIcon::Warning, MessageKind::Failure});
            RunOutcome outcome;
            outcome.result = RunResult::Failed;
            host->runFinished(outcome);
        }
    });
    thread_->setObjectName(QStringLiteral("vantorel-run"));
    thread_->start();
    timer_.start();
    return true;
}

void RunController::stop() { state_.stopRequested = true; }

void RunController::abandon() {
    if (!thread_) return;
    state_.stopRequested = true;
    queue_->abandon();
    thread_->wait();
    cleanUp();
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
}

void RunController::drain() {
    if (draining_ || !queue_) return;
    draining_ = true;
    QElapsedTimer slice;
    slice.start();
    std::optional<std::string> status;
    std::optional<std::pair<int, PassKind>> progress;
    // Status and progress change with every file: only the latest is shown.
    auto showGathered = [&] {
        if (status) display_.setStatus(*status);
        if (progress) display_.setProgress(progress->first, progress->second);
        status.reset();
        progress.reset();
        display_.flush();
    };

    RunEvent event;
    while (slice.elapsed() < kSliceMs && queue_ && queue_->take(event)) {
        switch (event.kind) {
            case RunEvent::Kind::Status: status = std::move(event.text); break;
            case RunEvent::Kind::Progress: progress = std::make_pair(event.percent, event.pass); break;
            case RunEvent::Kind::Started: display_.runStarted(); break;
            case RunEvent::Kind::PassStarted: display_.passStarted(event.pass); break;
            case RunEvent::Kind::ClearRows:
                display_.clearRows();
                pendingAnchor_ = -1;
                break;
            case RunEvent::Kind::Preview: {
                const int anchor = display_.appendPreview(event.section);
                if (pendingAnchor_ < 0) pendingAnchor_ = anchor;
                break;
            }
            case RunEvent::Kind::Row:
                display_.addRow(event.row, pendingAnchor_);
                pendingAnchor_ = -1;
                break;
            case RunEvent::Kind::Extracted: display_.appendExtracted(event.text); break;
            case RunEvent::Kind::Message:
                showGathered();
                messages_.showMessage(event.message);
                if (queue_) queue_->answer(true);
                slice.restart();
                break;
            case RunEvent::Kind::Question: {
                showGathered();
                const bool yes = messages_.askYesNo(event.message);
                if (queue_) queue_->answer(yes);
                slice.restart();
                break;
            }
            case RunEvent::Kind::Finished:
                showGathered();
                cleanUp();
                draining_ = false;
                display_.runFinished(event.outcome, event.previewPattern);
                emit finished();
                return;
        }
    }
    showGathered();
    draining_ = false;
    // A backlog is taken up again as soon as the window has seen to its other
    // events and timers; otherwise the window looks again after a while.
    if (queue_) timer_.setInterval(queue_->empty() ? kDrainIntervalMs : 0);
}

}  // namespace vantorel::ui
