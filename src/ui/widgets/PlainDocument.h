#pragma once
// Large plain texts are made into documents off the window's thread: making
// the blocks of ten megabytes of text takes a third of a second, handing the
// finished document to a box a few milliseconds.

#include <QString>
#include <memory>

class QPlainTextEdit;
class QTextDocument;

namespace vantorel::ui {

// A document that is deleted on the window's thread, wherever it is let go.
struct LaterDeleter {
    void operator()(QTextDocument* document) const;
};
using PlainDocument = std::unique_ptr<QTextDocument, LaterDeleter>;

// Makes a document of plain text ("\r\n" and "\r" as line breaks) on any
// thread, for the window's thread; an editable one keeps an undo history of
// what is done to it afterwards.
PlainDocument makePlainDocument(const QString& text, bool editable = false);

// Shows the document in the box, which takes it; the box's previous
// document goes when it was one of these. With `keepScrolled` the box stays
// scrolled to where it was (a new version of the same text).
void showPlainDocument(QPlainTextEdit* box, PlainDocument document, bool keepScrolled = false);

}  // namespace vantorel::ui
