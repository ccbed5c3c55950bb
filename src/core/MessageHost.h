#pragma once
// Every message box and question of the program goes through a MessageHost:
// the window shows real boxes, the command line prints, tests record.

#include <string>

namespace vantorel {

// The program's default title for message boxes.
inline constexpr const char* kProgramTitle = "Vantorel";

enum class MessageIcon { None, Information, Warning, Critical, Question };

// What a message is about, so that a front end can route it (for example to
// standard output or standard error) without parsing its text.
enum class MessageKind {
    Summary,     // the outcome of a run ("Search Complete", "Replace Operation Complete", stops)
    Validation,  // input refused before anything ran
    FileError,   // a file could not be read, written, deleted or backed up
    Failure,     // the run or a start-up step failed
    Notice       // anything else
};

struct Message {
    std::string text;                       // lines joined by CR LF, as on Windows
    std::string title = kProgramTitle;
    MessageIcon icon = MessageIcon::None;
    MessageKind kind = MessageKind::Notice;
};

class MessageHost {
public:
    virtual ~MessageHost() = default;
    // Shows a message with an OK button and waits until it is dismissed.
    virtual void showMessage(const Message& message) = 0;
    // Asks a Yes/No question (question icon); true means Yes.
    virtual bool askYesNo(const Message& question) = 0;
};

}  // namespace vantorel
