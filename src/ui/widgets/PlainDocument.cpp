#include "ui/widgets/PlainDocument.h"

#include <QCoreApplication>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextDocument>
#include <QThread>

namespace vantorel::ui {

namespace {
const char* const kOwned = "vantorelPlainDocument";
}

void LaterDeleter::operator()(QTextDocument* document) const {
    if (document) document->deleteLater();
}

PlainDocument makePlainDocument(const QString& text, bool editable) {
    PlainDocument document(new QTextDocument);
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    document->setUndoRedoEnabled(false);
    document->setPlainText(lines);
    document->setUndoRedoEnabled(editable);
    document->setProperty(kOwned, true);
    if (QCoreApplication* app = QCoreApplication::instance()) document->moveToThread(app->thread());
    return document;
}

void showPlainDocument(QPlainTextEdit* box, PlainDocument document, bool keepScrolled) {
    const int down = box->verticalScrollBar()->value();
    const int across = box->horizontalScrollBar()->value();
    // The box deletes its own first document itself.
    QTextDocument* previous = box->document();
    if (previous && !previous->property(kOwned).toBool()) previous = nullptr;
    document->setDefaultFont(box->font());
    document->setDocumentLayout(new QPlainTextDocumentLayout(document.get()));
    document->setParent(box);
    box->setDocument(document.release());
    if (previous) previous->deleteLater();
    if (keepScrolled) {
        box->verticalScrollBar()->setValue(down);
        box->horizontalScrollBar()->setValue(across);
    }
}

}  // namespace vantorel::ui
