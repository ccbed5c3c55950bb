// The queue between a run's worker and the window: order, back-pressure,
// round trips, and letting go of a worker when the window closes.

#include "search/RunEventQueue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

namespace vantorel {
namespace {

RunReport status(const std::string& text) { return reports::Status{text}; }

std::string statusText(const RunEvent& event) { return std::get<reports::Status>(std::get<RunReport>(event)).text; }

// Counts the window's wake-ups and lets a test wait for them.
struct WakeUps {
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;

    void attach(RunEventQueue& queue) {
        queue.setWakeUp([this] {
            std::lock_guard lock(mutex);
            ++count;
            changed.notify_all();
        });
    }
    void waitFor(int n) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return count >= n; });
    }
};

TEST(RunEventQueueTest, AFullQueueHoldsTheWorkerUntilTheWindowTakesAnEvent) {
    // Full at three events, counted or weighed.
    const std::size_t weight = weightOf(status("0"));
    for (const auto& [maxEvents, maxBytes] : {std::pair<std::size_t, std::size_t>{3, std::size_t{1} << 20},
                                              std::pair<std::size_t, std::size_t>{100, 3 * weight}}) {
        SCOPED_TRACE(maxEvents);
        RunEventQueue queue(maxEvents, maxBytes);
        std::mutex mutex;
        std::condition_variable changed;
        int posting = -1, posted = 0, taken = 0;
        std::vector<int> takenWhenPosted;
        std::thread worker([&] {
            for (int i = 0; i < 5; ++i) {
                {
                    std::lock_guard lock(mutex);
                    posting = i;
                    changed.notify_all();
                }
                queue.post(status(std::to_string(i)));
                // The window takes under the same lock: what it has taken
                // when a post returns is known exactly.
                std::lock_guard lock(mutex);
                takenWhenPosted.push_back(taken);
                ++posted;
                changed.notify_all();
            }
        });
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return posted >= 3 && posting >= 3; });
        // The fourth post is under way and does not come back by itself.
        EXPECT_FALSE(changed.wait_for(lock, std::chrono::milliseconds(50), [&] { return posted > 3; }));
        std::vector<std::string> texts;
        for (int n = 0; n < 5; ++n) {
            changed.wait(lock, [&] { return posted > n; });
            RunEvent event;
            ASSERT_TRUE(queue.take(event));
            texts.push_back(statusText(event));
            ++taken;
        }
        lock.unlock();
        worker.join();
        EXPECT_EQ(texts, std::vector<std::string>({"0", "1", "2", "3", "4"}));
        // Each post beyond the third came back only once an event was taken.
        ASSERT_EQ(takenWhenPosted.size(), 5u);
        for (int i = 3; i < 5; ++i) EXPECT_GE(takenWhenPosted[i], i - 2) << i;
        EXPECT_TRUE(queue.empty());
    }
}

TEST(RunEventQueueTest, ARoundTripComesAfterWhatWasPostedAndWaitsForTheWindowsAnswer) {
    for (const bool given : {true, false}) {
        RunEventQueue queue;
        WakeUps wakeUps;
        wakeUps.attach(queue);
        std::atomic<int> answer{-1};
        std::thread worker([&] {
            queue.post(status("before"));
            answer = queue.roundTrip(RoundTrip{Message{"Replace?"}, true}) ? 1 : 0;
        });
        wakeUps.waitFor(1);
        RunEvent event;
        ASSERT_TRUE(queue.take(event));
        EXPECT_EQ(statusText(event), "before");
        ASSERT_TRUE(queue.take(event));
        EXPECT_EQ(std::get<RoundTrip>(event).message.text, "Replace?");
        EXPECT_EQ(answer.load(), -1);
        queue.answer(given);
        worker.join();
        EXPECT_EQ(answer.load(), given ? 1 : 0);
    }
}

TEST(RunEventQueueTest, AbandoningReleasesAWaitingWorkerDropsWhatComesAndAnswersNo) {
    {
        // Waiting for room.
        RunEventQueue queue(1, std::size_t{1} << 20);
        queue.post(status("fills the queue"));
        std::promise<void> posting;
        bool answered = true;
        std::thread worker([&] {
            posting.set_value();
            queue.post(status("waits for room"));
            answered = queue.roundTrip(RoundTrip{Message{}, true});
            queue.post(status("after"));
        });
        posting.get_future().wait();
        queue.abandon();
        worker.join();
        EXPECT_FALSE(answered);
        EXPECT_TRUE(queue.empty());
    }
    {
        // Waiting for an answer.
        RunEventQueue queue;
        WakeUps wakeUps;
        wakeUps.attach(queue);
        bool answered = true;
        std::thread worker([&] { answered = queue.roundTrip(RoundTrip{Message{}, true}); });
        wakeUps.waitFor(1);
        queue.abandon();
        worker.join();
        EXPECT_FALSE(answered);
        EXPECT_TRUE(queue.empty());
    }
}

}  // namespace
}  // namespace vantorel
