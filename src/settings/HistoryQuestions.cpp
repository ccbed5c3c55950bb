#include "settings/HistoryQuestions.h"

namespace vantorel {

Message clearHistoryQuestion(HistoryBox box) {
    const char* text = box == HistoryBox::Find      ? "Clear Find History - Sure?"
                       : box == HistoryBox::Replace ? "Clear Replace History - Sure?"
                                                    : "Clear Folder History - Sure?";
    return Message{text, kProgramTitle, MessageIcon::Question, MessageKind::Notice};
}

}  // namespace vantorel
