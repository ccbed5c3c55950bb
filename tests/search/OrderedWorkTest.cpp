// The pool that works ahead on several threads and hands results back in
// position order: order whatever the timing, stops, back-pressure, errors
// and work that waits for its turn.

#include "search/OrderedWork.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

namespace vantorel {
namespace {

using Work = OrderedWork<std::uint64_t>;

// What the work has done so far, for the driver to wait on.
struct Progress {
    std::mutex mutex;
    std::condition_variable changed;
    std::set<std::size_t> started, finished;

    void start(std::size_t position) {
        std::lock_guard lock(mutex);
        started.insert(position);
        changed.notify_all();
    }
    void finish(std::size_t position) {
        std::lock_guard lock(mutex);
        finished.insert(position);
        changed.notify_all();
    }
    template <class Condition>
    void waitUntil(Condition condition) {
        std::unique_lock lock(mutex);
        changed.wait(lock, condition);
    }
};

// Every position the walk hands back, in order: "position=result",
// "position=" for no work, "error:what" for a throw.
std::vector<std::string> walk(Work& work) {
    std::vector<std::string> out;
    while (true) {
        std::size_t position = 0;
        std::optional<std::uint64_t> result;
        try {
            if (!work.next(position, result)) return out;
            out.push_back(std::to_string(position) + "=" + (result ? std::to_string(*result) : ""));
        } catch (const std::exception& error) {
            out.push_back(std::string("error:") + error.what());
        }
    }
}

TEST(OrderedWorkTest, HandsResultsBackInPositionOrderThoughLaterPositionsFinishFirst) {
    // With four threads and a window of four, each group of four is worked
    // on at once, its last position finishing first.
    constexpr std::size_t kCount = 12, kWindow = 4;
    std::atomic<bool> stop{false};
    Progress progress;
    std::vector<std::size_t> finishOrder;
    const auto needsWork = [](std::size_t position) { return position != 5; };
    progress.finished.insert(5);
    Work work(kCount, 4, kWindow, needsWork,
              [&](std::size_t position, Work::Turn&) {
                  const std::size_t groupEnd = (position / kWindow + 1) * kWindow;
                  progress.waitUntil([&] {
                      for (std::size_t later = position + 1; later < groupEnd; ++later)
                          if (!progress.finished.count(later)) return false;
                      return true;
                  });
                  {
                      std::lock_guard lock(progress.mutex);
                      finishOrder.push_back(position);
                  }
                  progress.finish(position);
                  return std::uint64_t{position * 10};
              },
              stop);
    EXPECT_EQ(walk(work), std::vector<std::string>({"0=0", "1=10", "2=20", "3=30", "4=40", "5=", "6=60", "7=70",
                                                    "8=80", "9=90", "10=100", "11=110"}));
    EXPECT_EQ(finishOrder, std::vector<std::size_t>({3, 2, 1, 0, 7, 6, 4, 11, 10, 9, 8}));
}

TEST(OrderedWorkTest, RethrowsWhatTheWorkThrewAtItsPositionAndGoesOn) {
    for (const unsigned threads : {1u, 3u}) {
        SCOPED_TRACE(threads);
        std::atomic<bool> stop{false};
        Work work(6, threads, 2, [](std::size_t) { return true; },
                  [](std::size_t position, Work::Turn&) -> std::uint64_t {
                      if (position == 3) throw std::runtime_error("unreadable");
                      return position;
                  },
                  stop);
        EXPECT_EQ(walk(work), std::vector<std::string>({"0=0", "1=1", "2=2", "error:unreadable", "4=4", "5=5"}));
    }
}

TEST(OrderedWorkTest, AStopEndsTheWalkAndNextFinishedHandsOverOnlyWorkAlreadyDone) {
    // Two threads, a window of two: once 0 and 1 are taken, 2 is done and 3
    // under way when the stop comes; nothing beyond has room to start.
    std::atomic<bool> stop{false};
    Progress progress;
    Work work(10, 2, 2, [](std::size_t) { return true; },
              [&](std::size_t position, Work::Turn&) {
                  progress.start(position);
                  if (position == 3) progress.waitUntil([&] { return stop.load(); });
                  progress.finish(position);
                  return std::uint64_t{position};
              },
              stop);
    std::size_t position = 0;
    std::optional<std::uint64_t> result;
    for (std::size_t expected : {0u, 1u}) {
        ASSERT_TRUE(work.next(position, result));
        EXPECT_EQ(position, expected);
    }
    progress.waitUntil([&] { return progress.finished.count(2) && progress.started.count(3); });
    {
        std::lock_guard lock(progress.mutex);
        stop = true;
        progress.changed.notify_all();
    }
    EXPECT_FALSE(work.next(position, result));  // 2 is ready, but the walk has ended
    std::vector<std::size_t> finished;
    while (work.nextFinished(position, result)) {
        EXPECT_EQ(result, std::optional<std::uint64_t>(position));
        finished.push_back(position);
    }
    EXPECT_EQ(finished, std::vector<std::size_t>({2, 3}));
    std::lock_guard lock(progress.mutex);
    EXPECT_EQ(progress.started, std::set<std::size_t>({0, 1, 2, 3}));
}

TEST(OrderedWorkTest, WorkRunsAheadOfTheDriverByNoMoreThanTheWindow) {
    constexpr std::size_t kCount = 40, kWindow = 4;
    std::atomic<bool> stop{false};
    Progress progress;
    std::atomic<std::size_t> asked{0};  // positions the driver has asked for, counting the one it waits on
    std::atomic<std::size_t> beyond{0};
    Work work(kCount, 3, kWindow, [](std::size_t) { return true; },
              [&](std::size_t position, Work::Turn&) {
                  if (position >= asked.load() + kWindow) ++beyond;
                  progress.finish(position);
                  return std::uint64_t{position};
              },
              stop);
    std::size_t position = 0;
    std::optional<std::uint64_t> result;
    for (std::size_t k = 0; k < kCount; ++k) {
        // The driver is slow: the whole window is worked on before it asks.
        const std::size_t last = std::min(k + kWindow, kCount) - 1;
        progress.waitUntil([&] { return progress.finished.count(last) > 0; });
        asked = k + 1;
        ASSERT_TRUE(work.next(position, result));
        EXPECT_EQ(position, k);
    }
    EXPECT_EQ(beyond.load(), 0u);
}

TEST(OrderedWorkTest, WorkWaitingForItsTurnSeesWhatTheDriverDidWithEarlierResults) {
    for (const unsigned threads : {1u, 3u}) {
        SCOPED_TRACE(threads);
        std::atomic<bool> stop{false};
        std::uint64_t total = 0;  // the driver's, read by work whose turn has come
        Work work(10, threads, 4, [](std::size_t) { return true; },
                  [&](std::size_t position, Work::Turn& turn) {
                      EXPECT_TRUE(turn.waitUntil([&](std::size_t handled) { return handled >= position; }));
                      return total + 1;
                  },
                  stop);
        std::size_t position = 0;
        std::optional<std::uint64_t> result;
        while (work.next(position, result)) {
            EXPECT_EQ(*result, std::uint64_t{1} << position);
            total += *result;
        }
        EXPECT_EQ(total, 1023u);
    }
}

}  // namespace
}  // namespace vantorel
