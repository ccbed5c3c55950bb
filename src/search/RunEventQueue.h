#pragma once
// What a run on the worker thread has to show, in the order it is to be
// shown, waiting for the window's thread to take it. The queue is bounded:
// a run that finds faster than the window can show waits (back-pressure).
// Messages and questions are round trips: the worker waits for the answer.

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <variant>

#include "core/MessageHost.h"
#include "search/RunReport.h"

namespace vantorel {

// A message or a question the worker waits on.
struct RoundTrip {
    Message message;
    bool question = false;
};

using RunEvent = std::variant<RunReport, RoundTrip>;

// Bytes, roughly, for the queue's bound.
std::size_t weightOf(const RunEvent& event);

class RunEventQueue {
public:
    RunEventQueue(std::size_t maxEvents = 4000, std::size_t maxBytes = std::size_t{4} << 20);

    // Called on the worker whenever an event arrives that the window should
    // see at once (a message, a question, the first row of a list, the end
    // of the run).
    void setWakeUp(std::function<void()> wakeUp);

    // Worker: adds a report, first waiting while the queue is full.
    void post(RunReport report);
    // Worker: adds a message or question and waits for its answer. False when
    // the queue was abandoned (the window is closing).
    bool roundTrip(RoundTrip trip);

    // Window: takes the next event.
    bool take(RunEvent& event);
    bool empty() const;
    // Window: answers the round trip the worker waits on.
    void answer(bool value);
    // Window: wakes the worker for good; later posts are dropped and round
    // trips answer No at once.
    void abandon();

private:
    bool fullLocked() const { return events_.size() >= maxEvents_ || bytes_ >= maxBytes_; }
    void push(std::unique_lock<std::mutex>& lock, RunEvent event, bool wake);

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<RunEvent> events_;
    std::size_t bytes_ = 0;
    const std::size_t maxEvents_;
    const std::size_t maxBytes_;
    std::optional<bool> answer_;
    bool abandoned_ = false;
    bool rowShown_ = false;  // since the list was last cleared
    std::function<void()> wakeUp_;
};

}  // namespace vantorel
