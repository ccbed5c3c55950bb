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
    std::vector<reports::Changes> changes;
    std::string extracted;
    std::vector<std::string> statuses;
    std::deque<bool> answers;  // answers to questions, in order; No when empty
    // Called on every row added (for example to press Stop).
    std::function<void(const FileReport&)> onRow;
    // Called when a question is asked, before it is answered (while it waits).
    std::function<void(const Message&)> onQuestion;

    void showMessage(const Message& m) override {
        messages.push_back(m);
        events.push_back("message:" + m.title + ":" + m.text);
    }
    bool askYesNo(const Message& q) override {
        questions.push_back(q);
        if (onQuestion) onQuestion(q);
        const bool yes = !answers.empty() && answers.front();
        if (!answers.empty()) answers.pop_front();
        events.push_back(std::string("ask:") + q.text + (yes ? ":yes" : ":no"));
        return yes;
    }
    void report(RunReport report) override {
        std::visit(Overloaded{
                       [this](const reports::Status& status) { statuses.push_back(status.text); },
                       [this](const reports::Started&) { events.push_back("started"); },
                       [this](const reports::PassStarted& started) {
                           events.push_back(started.pass == PassKind::Writing    ? "pass:writing"
                                            : started.pass == PassKind::Counting ? "pass:counting"
                                                                                 : "pass:searching");
                       },
                       [this](const reports::RowsCleared&) {
                           rows.clear();
                           events.push_back("clear");
                       },
                       [this](const reports::PreviewSection& preview) {
                           std::string text;
                           for (const StyledRun& run : preview.section) text += run.text;
                           events.push_back("preview:" + text);
                       },
                       [this](const reports::Row& added) {
                           rows.push_back(added.row);
                           events.push_back("row:" + added.row.path + ":" + std::to_string(added.row.matches));
                           if (onRow) onRow(added.row);
                       },
                       [this](const reports::Changes& changed) {
                           changes.push_back(changed);
                           events.push_back("changes:" + changed.path);
                       },
                       [this](const reports::Extracted& text) {
                           extracted += text.text;
                           events.push_back("extract:" + text.text);
                       },
                       [this](const reports::Finished&) { events.push_back("finished"); },
                       [](const reports::Progress&) {},
                   },
                   report);
    }

    std::vector<std::string> messageTexts() const {
        std::vector<std::string> texts;
        for (const Message& m : messages) texts.push_back(m.text);
        return texts;
    }
};

}  // namespace vantorel::test
