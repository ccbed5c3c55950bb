#pragma once
// Runs one piece of work per position on several threads and hands the
// results back on the calling thread in position order, so that whatever the
// user sees comes in the same order as with one thread. At most `window`
// results wait to be taken, which bounds the memory they hold.
//
// A stop request ends the walk before the next position is handed back, as
// it would with one thread; results computed ahead are dropped (work must
// therefore leave no visible trace until its result is taken), unless the
// driver asks for them with nextFinished().
//
// Work that must not run ahead of the driver (it needs an earlier result to
// have been dealt with, or a resource the driver frees) waits through its
// Turn.

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
    struct Slot {
        bool ready = false;
        bool skipped = false;  // its work was never done: a stop came first
        std::optional<Result> result;
        std::exception_ptr error;
    };
    // The run of neighbouring positions a worker has taken.
    struct Run {
        std::size_t first = 0;
        std::size_t current = 0;    // the position being worked on
        std::size_t published = 0;  // handed over up to here
        std::vector<Slot> done;
    };

public:
    class Turn {
    public:
        // Blocks until `ready(handled)` holds, `handled` being the number of
        // positions the driver is done with (it has asked for the next one);
        // the condition is looked at again each time the driver asks. What
        // this worker computed before is handed over first, so that the
        // driver can go on meanwhile. False when a stop came or the walk is
        // being given up. Work that runs on the driver's own thread never
        // waits: every earlier position is done with.
        bool waitUntil(const std::function<bool(std::size_t handled)>& ready) {
            if (run_) return owner_.waitFor(*run_, ready);
            ready(owner_.delivered_ - 1);
            return !owner_.stop_.load();
        }

    private:
        friend class OrderedWork;
        Turn(OrderedWork& owner, Run* run) : owner_(owner), run_(run) {}
        OrderedWork& owner_;
        Run* run_;
    };

    using Work = std::function<Result(std::size_t position, Turn& turn)>;

    OrderedWork(std::size_t count, unsigned threads, std::size_t window,
                std::function<bool(std::size_t)> needsWork, Work work,
                const std::atomic<bool>& stop)
        : count_(count), window_(std::max<std::size_t>(window, 1)), needsWork_(std::move(needsWork)),
          work_(std::move(work)), stop_(stop), slots_(window_) {
        threadCount_ = std::min<unsigned>(threads, static_cast<unsigned>(std::max<std::size_t>(count, 1)));
        if (threadCount_ <= 1) return;  // one thread: the work runs inside next()
        for (unsigned t = 0; t < threadCount_; ++t) workers_.emplace_back([this] { workerLoop(); });
    }

    ~OrderedWork() {
        {
            std::lock_guard lock(mutex_);
            cancelled_ = true;
        }
        roomFree_.notify_all();
        turnChanged_.notify_all();
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
        handled_ = delivered_;
        if (turnWaiters_ > 0) turnChanged_.notify_all();
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

    // After next() returned false for a stop: the next position's result
    // when its work was done all the same (it was under way or finished
    // when the stop came), waiting for it to be handed over. False at the
    // end, or at the first position whose work the stop prevented.
    bool nextFinished(std::size_t& position, std::optional<Result>& result) {
        if (workers_.empty()) return false;  // one thread: nothing runs ahead
        std::unique_lock lock(mutex_);
        handled_ = delivered_;
        if (turnWaiters_ > 0) turnChanged_.notify_all();
        if (delivered_ >= count_ || delivered_ >= claimed_) return false;  // never taken up
        Slot& slot = slots_[delivered_ % window_];
        while (!slot.ready) {
            if (cancelled_) return false;
            consumerWaiting_ = true;
            resultReady_.wait_for(lock, std::chrono::milliseconds(20));
            consumerWaiting_ = false;
        }
        if (slot.skipped) return false;
        position = delivered_++;
        slot.ready = false;
        std::exception_ptr error = std::move(slot.error);
        result = std::move(slot.result);
        slot.result.reset();
        lock.unlock();
        if (error) std::rethrow_exception(error);
        return true;
    }

private:
    bool nextInline(std::size_t& position, std::optional<Result>& result) {
        if (delivered_ >= count_ || stop_.load()) return false;
        position = delivered_++;
        result.reset();
        Turn turn(*this, nullptr);
        if (needsWork_(position)) result.emplace(work_(position, turn));
        return true;
    }

    // Hands the run's finished results over, up to `end`. Called locked.
    void publish(Run& run, std::size_t end) {
        const std::size_t from = run.published;
        for (std::size_t position = from; position < end; ++position)
            slots_[position % window_] = std::move(run.done[position - run.first]);
        run.published = end;
        // Only the result the driver waits for is worth waking it for.
        if (consumerWaiting_ && from <= delivered_ && delivered_ < end) resultReady_.notify_one();
    }

    bool waitFor(Run& run, const std::function<bool(std::size_t)>& ready) {
        std::unique_lock lock(mutex_);
        while (true) {
            if (cancelled_ || stop_.load()) return false;
            if (ready(handled_)) return true;
            publish(run, run.current);  // only when it has to wait
            ++turnWaiters_;
            turnChanged_.wait(lock);
            --turnWaiters_;
        }
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
            Run run;
            run.first = run.published = claimed_;
            const std::size_t share = (count_ - run.first) / (std::size_t{threadCount_} * 4);
            const std::size_t last = std::min({count_, run.first + std::clamp<std::size_t>(share, 1, kLargestRun),
                                               delivered_ + window_});
            claimed_ = last;
            lock.unlock();
            run.done.resize(last - run.first);
            Turn turn(*this, &run);
            for (std::size_t position = run.first; position < last; ++position) {
                run.current = position;
                Slot& slot = run.done[position - run.first];
                slot.ready = true;
                if (stop_.load()) {
                    slot.skipped = true;  // the driver stops here
                    continue;
                }
                try {
                    if (needsWork_(position)) slot.result.emplace(work_(position, turn));
                } catch (...) {
                    slot.error = std::current_exception();
                }
            }
            lock.lock();
            publish(run, last);
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
    std::condition_variable turnChanged_;  // work waits here for its turn
    bool consumerWaiting_ = false;
    unsigned workersWaiting_ = 0;
    unsigned turnWaiters_ = 0;
    std::size_t claimed_ = 0;
    std::size_t delivered_ = 0;
    std::size_t handled_ = 0;
    bool cancelled_ = false;
    std::vector<std::thread> workers_;
};

}  // namespace vantorel
