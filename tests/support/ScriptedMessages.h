#pragma once
// A message host for engine tests: records messages and questions, and
// answers questions from a script (No when it runs out).

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "core/MessageHost.h"

namespace vantorel::test {

struct ScriptedMessages : MessageHost {
    std::vector<Message> shown;
    std::vector<std::string> asked;
    std::deque<bool> answers;

    void showMessage(const Message& message) override { shown.push_back(message); }
    bool askYesNo(const Message& question) override {
        asked.push_back(question.text);
        EXPECT_EQ(question.icon, MessageIcon::Question);
        const bool yes = !answers.empty() && answers.front();
        if (!answers.empty()) answers.pop_front();
        return yes;
    }
    std::vector<std::string> texts() const {
        std::vector<std::string> out;
        for (const Message& m : shown) out.push_back(m.text);
        return out;
    }
};

}  // namespace vantorel::test
