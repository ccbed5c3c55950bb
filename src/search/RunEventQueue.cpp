#include "search/RunEventQueue.h"

#include <utility>

namespace vantorel {

std::size_t weightOf(const RunEvent& event) {
    const auto extra = Overloaded{
        [](const reports::Status& status) { return status.text.size(); },
        [](const reports::PreviewSection& preview) {
            std::size_t bytes = 0;
            for (const StyledRun& run : preview.section) bytes += sizeof(StyledRun) + run.text.size();
            return bytes;
        },
        [](const reports::Row& row) { return row.row.path.size(); },
        [](const reports::Extracted& extracted) { return extracted.text.size(); },
        [](const auto&) { return std::size_t{0}; },
    };
    return sizeof(RunEvent) +
           std::visit(Overloaded{[&](const RunReport& report) { return std::visit(extra, report); },
                                 [](const RoundTrip& trip) { return trip.message.text.size(); }},
                      event);
}

RunEventQueue::RunEventQueue(std::size_t maxEvents, std::size_t maxBytes)
    : maxEvents_(maxEvents), maxBytes_(maxBytes) {}

void RunEventQueue::setWakeUp(std::function<void()> wakeUp) {
    std::lock_guard lock(mutex_);
    wakeUp_ = std::move(wakeUp);
}

void RunEventQueue::push(std::unique_lock<std::mutex>& lock, RunEvent event, bool wake) {
    bytes_ += weightOf(event);
    events_.push_back(std::move(event));
    std::function<void()> wakeUp = wake ? wakeUp_ : nullptr;
    lock.unlock();
    if (wakeUp) wakeUp();
    lock.lock();
}

void RunEventQueue::post(RunReport report) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return abandoned_ || !fullLocked(); });
    if (abandoned_) return;
    // The first row of a list is shown as soon as it is found, without
    // waiting for the window's next look.
    if (std::holds_alternative<reports::RowsCleared>(report)) rowShown_ = false;
    const bool firstRow = std::holds_alternative<reports::Row>(report) && !std::exchange(rowShown_, true);
    const bool wake = firstRow || std::holds_alternative<reports::Finished>(report);
    push(lock, std::move(report), wake);
}

bool RunEventQueue::roundTrip(RoundTrip trip) {
    std::unique_lock lock(mutex_);
    if (abandoned_) return false;
    answer_.reset();
    push(lock, std::move(trip), true);
    changed_.wait(lock, [this] { return abandoned_ || answer_.has_value(); });
    if (abandoned_) return false;
    const bool value = *answer_;
    answer_.reset();
    return value;
}

bool RunEventQueue::take(RunEvent& event) {
    std::lock_guard lock(mutex_);
    if (events_.empty()) return false;
    const std::size_t weight = weightOf(events_.front());
    event = std::move(events_.front());
    events_.pop_front();
    bytes_ = weight > bytes_ ? 0 : bytes_ - weight;
    changed_.notify_all();
    return true;
}

bool RunEventQueue::empty() const {
    std::lock_guard lock(mutex_);
    return events_.empty();
}

void RunEventQueue::answer(bool value) {
    std::lock_guard lock(mutex_);
    answer_ = value;
    changed_.notify_all();
}

void RunEventQueue::abandon() {
    std::lock_guard lock(mutex_);
    abandoned_ = true;
    events_.clear();
    bytes_ = 0;
    changed_.notify_all();
}

}  // namespace vantorel
