#pragma once
// Runs one piece of work per position on several threads and hands the
// results back on the calling thread in position order, so that whatever the
// user sees comes in the same order as with one thread. At most `window`
// results wait to be taken, which bounds the memory they hold.
//
// A stop request ends the walk before the next position is handed back, as
// it would with one thread; results computed ahead are dropped (work must
// therefore leave no visible trace until its result is taken).

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace vantorel {

template <class Result>
class OrderedWork {
public:
    using Work = std::function<Result(std::size_t position)>;

    OrderedWork(std::size_t count, unsigned threads, std::size_t window,
                std::function<bool(std::size_t)> needsWork, Work work,
                const std::atomic<bool>& stop)
        : count_(count), window_(std::max<std::size_t>(window, 1)), needsWork_(std::move(needsWork)),
          work_(std::move(work)), stop_(stop), slots_(window_) {
        threads = std::min<unsigned>(threads, static_cast<unsigned>(std::max<std::size_t>(count, 1)));
        if (threads <= 1) return;  // one thread: the work runs inside next()
        threadCount_ = threads;  // before any worker reads it
        for (unsigned t = 0; t < threads; ++t) workers_.emplace_back([this] { workerLoop(); });
    }

    ~OrderedWork() {
        {
            std::lock_guard lock(mutex_);
            cancelled_ = true;
        }
        roomFree_.notify_all();
        for (std::thread& worker : workers_) worker.join();
    }

    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;

    // The next position's result (nothing for a position that needed no
    // work). Returns false at the end, or when a stop came before that
    // position's work began. Rethrows what the work threw.
    bool next(std::size_t& position, std::optional<Result>& result) {
        if (workers_.empty()) return nextInline(position, result);
        std::unique_lock lock(mutex_);
        if (delivered_ >= count_) return false;
        Slot& slot = slots_[delivered_ % window_];
        while (!slot.ready) {
            if (stop_.load()) return false;
            consumerWaiting_ = true;
            resultReady_.wait_for(lock, std::chrono::milliseconds(20));  // also to see a stop
            consumerWaiting_ = false;
        }
        if (stop_.load()) return false;
        position = delivered_++;
        slot.ready = false;
        std::exception_ptr error = std::move(slot.error);
        result = std::move(slot.result);
        slot.result.reset();
        const bool wakeWorker = workersWaiting_ > 0;  // a slot is free again
        lock.unlock();
        if (wakeWorker) roomFree_.notify_one();
        if (error) std::rethrow_exception(error);
        return true;
    }

private:
    struct Slot {
        bool ready = false;
        std::optional<Result> result;
        std::exception_ptr error;
    };

    bool nextInline(std::size_t& position, std::optional<Result>& result) {
        if (delivered_ >= count_ || stop_.load()) return false;
        position = delivered_++;
        result.reset();
        if (needsWork_(position)) result.emplace(work_(position));
        return true;
    }

    void workerLoop() {
        std::unique_lock lock(mutex_);
        while (true) {
            while (!cancelled_ && claimed_ < count_ && claimed_ >= delivered_ + window_) {
                ++workersWaiting_;
                roomFree_.wait(lock);
                --workersWaiting_;
            }
            if (cancelled_ || claimed_ >= count_ || stop_.load()) break;
            // A run of neighbouring positions at a time: fewer hand-overs
            // between threads, while every worker still gets its share.
            const std::size_t first = claimed_;
            const std::size_t share = (count_ - first) / (std::size_t{threadCount_} * 4);
            const std::size_t last = std::min({count_, first + std::clamp<std::size_t>(share, 1, kLargestRun),
                                               delivered_ + window_});
            claimed_ = last;
            lock.unlock();
            std::vector<Slot> done(last - first);
            for (std::size_t position = first; position < last; ++position) {
                Slot& slot = done[position - first];
                slot.ready = true;
                if (stop_.load()) continue;  // never handed back: the driver stops first
                try {
                    if (needsWork_(position)) slot.result.emplace(work_(position));
                } catch (...) {
                    slot.error = std::current_exception();
                }
            }
            lock.lock();
            for (std::size_t position = first; position < last; ++position)
                slots_[position % window_] = std::move(done[position - first]);
            // Only the result the driver waits for is worth waking it for.
            if (consumerWaiting_ && first <= delivered_ && delivered_ < last) resultReady_.notify_one();
        }
    }

    static constexpr std::size_t kLargestRun = 32;
    unsigned threadCount_ = 1;

    const std::size_t count_;
    const std::size_t window_;
    std::function<bool(std::size_t)> needsWork_;
    Work work_;
    const std::atomic<bool>& stop_;
    std::vector<Slot> slots_;
    std::mutex mutex_;
    std::condition_variable resultReady_;  // the driver waits here
    std::condition_variable roomFree_;     // workers wait here while the window is full
    bool consumerWaiting_ = false;
    unsigned workersWaiting_ = 0;
    std::size_t claimed_ = 0;
    std::size_t delivered_ = 0;
    bool cancelled_ = false;
    std::vector<std::thread> workers_;
};

}  // namespace vantorel
