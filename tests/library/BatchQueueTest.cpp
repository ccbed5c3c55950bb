#include "library/BatchQueue.h"

#include <gtest/gtest.h>

#include "support/ScriptedMessages.h"

namespace vantorel {
namespace {

TEST(BatchQueueTest, EachEntryIsLookedUpWithLetterCaseCountingOrNothingIsQueued) {
    const std::vector<LibraryEntry> library = {
        {"tags", "<[^>]+>", ""}, {"Tags", "other", "x"}, {"spaces", " {2,}", " "}, {"tags", "second", "y"}};
    const struct {
        std::string job;
        std::vector<std::string> entries;
        std::vector<std::pair<std::string, std::string>> steps;  // empty: nothing queued
        std::string label;
        std::string message;
    } cases[] = {
        {"Tidy", {"spaces", "tags", "Tags", "tags"},
         {{" {2,}", " "}, {"<[^>]+>", ""}, {"other", "x"}, {"<[^>]+>", ""}},
         "Batch Commands Queued (Tidy)", ""},
        {"", {"spaces"}, {{" {2,}", " "}}, "Batch Commands Queued", ""},
        // The first missing name is said, whatever follows it.
        {"Tidy", {"spaces", "TAGS", "gone"}, {}, "", "Saved expression 'TAGS' does not exist in library"},
        {"Tidy", {"tags "}, {}, "", "Saved expression 'tags ' does not exist in library"},
    };
    for (const auto& c : cases) {
        test::ScriptedMessages messages;
        const std::optional<BatchQueue> queue = queueJob(c.job, c.entries, library, messages);
        if (c.message.empty()) {
            ASSERT_TRUE(queue) << c.job;
            std::vector<std::pair<std::string, std::string>> steps;
            for (const FindReplaceJob& step : queue->steps) steps.emplace_back(step.findText, step.replaceText);
            EXPECT_EQ(steps, c.steps);
            EXPECT_EQ(queue->label, c.label);
            EXPECT_TRUE(messages.messages.empty());
        } else {
            EXPECT_FALSE(queue);
            ASSERT_EQ(messages.texts(), std::vector<std::string>{c.message});
            EXPECT_EQ(messages.messages[0].icon, MessageIcon::None);
        }
    }
}

}  // namespace
}  // namespace vantorel
