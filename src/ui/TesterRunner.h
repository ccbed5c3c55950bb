#pragma once
// Runs the tester's work off the window's thread. A newer request supersedes
// every older one: older work is told to stop, and only the newest result is
// handed back. Work that cannot stop at once (an expression that is slow at
// every position of a large sample) finishes on its own, its result unused,
// while newer requests run beside it.

#include <QObject>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "library/RegexTester.h"

namespace vantorel::ui {

class TesterRunner : public QObject {
    Q_OBJECT
public:
    struct Request {
        std::shared_ptr<const std::string> sample;  // UTF-8
        TesterExpression expression;
        TesterSteps steps;
    };
    struct Result {
        TesterUpdate update;
        std::shared_ptr<const std::string> sample;
    };

    explicit TesterRunner(QObject* parent = nullptr);
    ~TesterRunner() override;

    void submit(Request request);
    // True while the newest request has no result yet.
    bool busy() const noexcept { return latest_ != delivered_; }

    // Work that runs at once, beside work that has been superseded.
    static constexpr int kMaxRunning = 4;

signals:
    void finished(std::shared_ptr<const vantorel::ui::TesterRunner::Result> result);

private:
    void start(Request request, quint64 generation);
    void done(quint64 generation, std::shared_ptr<const Result> result);

    quint64 latest_ = 0;
    quint64 delivered_ = 0;
    int running_ = 0;
    std::optional<std::pair<Request, quint64>> waiting_;
    std::vector<std::shared_ptr<std::atomic<bool>>> cancels_;
};

}  // namespace vantorel::ui
