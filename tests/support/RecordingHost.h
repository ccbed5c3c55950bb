#pragma once
// A run host that records everything a run shows, in order, and answers
// questions from a script.

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "search/RunHost.h"

namespace vantorel::test {

class RecordingHost : public RunHost {
public:
    // One line per event, e.g. "message:Search Complete:No matches found in files."
    std::vector<std::string> events;
    std::vector<Message> messages;
    std::vector<Message> questions;
    std::vector<FileReport> rows;  // the list as it stands
    std::string extracted;
    std::vector<std::string> statuses;
    std::deque<bool> answers;  // answers to questions, in order; No when empty
    // Called on every row added (for example to press Stop).
    std::function<void(const FileReport&)> onRow;

    void showMessage(const Message& m) override {
        messages.push_back(m);
        events.push_back("message:" + m.title + ":" + m.text);
    }
    bool askYesNo(const Message& q) override {
        questions.push_back(q);
        const bool yes = !answers.empty() && answers.front();
        if (!answers.empty()) answers.pop_front();
        events.push_back(std::string("ask:") + q.text + (yes ? ":yes" : ":no"));
        return yes;
    }
    void setStatus(const std::string& text) override { statuses.push_back(text); }
    void runStarted(const RunRequest&) override { events.push_back("started"); }
    void passStarted(PassKind pass) override {
        events.push_back(pass == PassKind::Writing ? "pass:writing"
                         : pass == PassKind::Counting ? "pass:counting" : "pass:searching");
    }
    void clearRows() override {
        rows.clear();
        events.push_back("clear");
    }
    void appendPreview(const StyledText& section) override {
        std::string text;
        for (const StyledRun& run : section) text += run.text;
        events.push_back("preview:" + text);
    }
    void addRow(const FileReport& row) override {
        rows.push_back(row);
        events.push_back("row:" + row.path + ":" + std::to_string(row.matches));
        if (onRow) onRow(row);
    }
    void appendExtracted(std::string_view text) override {
        extracted += text;
        events.push_back("extract:" + std::string(text));
    }
    void runFinished(const RunOutcome&) override { events.push_back("finished"); }

    std::vector<std::string> messageTexts() const {
        std::vector<std::string> texts;
        for (const Message& m : messages) texts.push_back(m.text);
        return texts;
    }
};

}  // namespace vantorel::test
