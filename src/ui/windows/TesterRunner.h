#pragma once
// Runs the tester's work off the window's thread. A newer request supersedes
// every older one: older work is told to stop, and only the newest result is
// handed back. Work that cannot stop at once (an expression that is slow at
// every position of a large sample) finishes on its own, its result unused,
// while newer requests run beside it.

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "library/RegexTester.h"
#include "ui/widgets/PlainDocument.h"

namespace vantorel::ui {

// The sample as the work sees it (UTF-8), made from the box's text once,
// off the window's thread, by the first work that needs it.
class TesterSample {
public:
    // The box's text, paragraphs joined by LF, or by CR LF for a sample whose lines end so.
    TesterSample(QString boxText, bool crlf) : boxText_(std::move(boxText)), crlf_(crlf) {}
    explicit TesterSample(std::string utf8);
    const std::string& utf8() const;

private:
    mutable QString boxText_;  // let go once made into utf8_
    bool crlf_ = false;
    mutable std::once_flag made_;
    mutable std::string utf8_;
};

class TesterRunner : public QObject {
    Q_OBJECT
public:
    struct Request {
        std::shared_ptr<const TesterSample> sample;
        TesterExpression expression;
        TesterSteps steps;
    };
    struct Result {
        TesterUpdate update;
        std::shared_ptr<const TesterSample> sample;
        // The replaced text as a document, made off the window's thread.
        PlainDocument replaced;
    };

    explicit TesterRunner(QObject* parent = nullptr);
    ~TesterRunner() override;

    void submit(Request request);
    // True while the newest request has no result yet.
    bool busy() const noexcept { return latest_ != delivered_; }

    // Work that runs at once, beside work that has been superseded.
    static constexpr int kMaxRunning = 4;

signals:
    void finished(std::shared_ptr<vantorel::ui::TesterRunner::Result> result);

private:
    void start(Request request, quint64 generation);
    void done(quint64 generation, std::shared_ptr<Result> result);

    quint64 latest_ = 0;
    quint64 delivered_ = 0;
    int running_ = 0;
    std::optional<std::pair<Request, quint64>> waiting_;
    std::vector<std::shared_ptr<std::atomic<bool>>> cancels_;
};

}  // namespace vantorel::ui
