#pragma once
// A message host for the tests: it records the messages shown and the
// questions asked, and answers the questions from a script (No when it runs out).

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "core/MessageHost.h"

namespace vantorel::test {

template <class Host = MessageHost>
class Answering : public Host {
public:
    std::vector<Message> messages;
    std::vector<Message> questions;
    std::deque<bool> answers;
    // Called while a question waits for its answer (to look at the program meanwhile).
    std::function<void(const Message&)> onQuestion;

    void showMessage(const Message& message) override { messages.push_back(message); }
    bool askYesNo(const Message& question) override {
        questions.push_back(question);
        if (onQuestion) onQuestion(question);
        const bool yes = !answers.empty() && answers.front();
        if (!answers.empty()) answers.pop_front();
        return yes;
    }
    std::vector<std::string> texts() const { return textsOf(messages); }
    std::vector<std::string> asked() const { return textsOf(questions); }

private:
    static std::vector<std::string> textsOf(const std::vector<Message>& all) {
        std::vector<std::string> out;
        for (const Message& m : all) out.push_back(m.text);
        return out;
    }
};

}  // namespace vantorel::test
