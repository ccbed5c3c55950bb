#include "ui/windows/TesterRunner.h"

#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

namespace vantorel::ui {
namespace {

// Threads of their own, so that runaway work never holds up the program's
// other work; never waited for at exit.
QThreadPool* testerPool() {
    static QThreadPool* pool = [] {
        auto* p = new QThreadPool;
        p->setMaxThreadCount(TesterRunner::kMaxRunning);
        return p;
    }();
    return pool;
}

}  // namespace

TesterSample::TesterSample(std::string utf8) : utf8_(std::move(utf8)) {
    std::call_once(made_, [] {});
}

const std::string& TesterSample::utf8() const {
    std::call_once(made_, [this] {
        QString text = std::move(boxText_);
        boxText_ = QString();
        text.replace(QChar::ParagraphSeparator, crlf_ ? QStringLiteral("\r\n") : QStringLiteral("\n"));
        utf8_ = text.toStdString();
    });
    return utf8_;
}

TesterRunner::TesterRunner(QObject* parent) : QObject(parent) {}

TesterRunner::~TesterRunner() {
    for (const auto& cancel : cancels_) cancel->store(true);
}

void TesterRunner::submit(Request request) {
    const quint64 generation = ++latest_;
    for (const auto& cancel : cancels_) cancel->store(true);
    if (running_ < kMaxRunning) start(std::move(request), generation);
    else waiting_.emplace(std::move(request), generation);
}

void TesterRunner::start(Request request, quint64 generation) {
    auto cancel = std::make_shared<std::atomic<bool>>(false);
    cancels_.push_back(cancel);
    ++running_;
    using Shared = std::shared_ptr<Result>;
    auto* watcher = new QFutureWatcher<Shared>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation, cancel] {
        std::erase(cancels_, cancel);
        done(generation, watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run(testerPool(), [request = std::move(request), cancel]() -> Shared {
        auto result = std::make_shared<Result>();
        result->sample = request.sample;
        result->update = runTester(request.sample->utf8(), request.expression, request.steps, cancel.get());
        if (result->update.replaced && !cancel->load())
            result->replaced = makePlainDocument(QString::fromStdString(*result->update.replaced));
        return result;
    }));
}

void TesterRunner::done(quint64 generation, std::shared_ptr<Result> result) {
    --running_;
    if (generation == latest_ && !result->update.cancelled) {
        delivered_ = generation;
        emit finished(std::move(result));
    }
    if (waiting_ && running_ < kMaxRunning) {
        auto [request, waitingGeneration] = std::move(*waiting_);
        waiting_.reset();
        start(std::move(request), waitingGeneration);
    }
}

}  // namespace vantorel::ui
