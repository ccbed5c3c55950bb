#pragma once
// The run host on the worker thread: every report goes into the queue as it
// is; messages and questions wait for the window's answer.

#include "search/RunHost.h"
#include "search/RunEventQueue.h"

namespace vantorel {

class WorkerRunHost : public RunHost {
public:
    explicit WorkerRunHost(RunEventQueue& queue) : queue_(queue) {}

    void report(RunReport report) override { queue_.post(std::move(report)); }
    void showMessage(const Message& message) override { queue_.roundTrip(RoundTrip{message, false}); }
    bool askYesNo(const Message& question) override { return queue_.roundTrip(RoundTrip{question, true}); }

private:
    RunEventQueue& queue_;
};

}  // namespace vantorel
