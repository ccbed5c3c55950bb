#include "ui/windows/ExtractForm.h"

#include <QCloseEvent>
#include <QDir>
#include <QPlainTextEdit>
#include <QAbstractButton>
#include <QResizeEvent>

#include "core/AtomicFileWriter.h"
#include "results/RtfWriter.h"
#include "ui/platform/AccessibleName.h"
#include "ui/widgets/CommandButton.h"
#include "ui/platform/FileDialog.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/platform/ReadableText.h"
#include "ui/platform/ScreenFit.h"
#include "ui/platform/Twips.h"

namespace vantorel::ui {

ExtractForm::ExtractForm(DesktopServices& desktop, MessageHost& messages, QWidget* parent)
    : QWidget(parent, Qt::Window), desktop_(desktop), messages_(messages) {
    setObjectName(QStringLiteral("ExtractForm"));
    setWindowTitle(QStringLiteral("Extracted Text"));
    text_ = new QPlainTextEdit(this);
    text_->setObjectName(QStringLiteral("ExtTxt"));
    text_->setLineWrapMode(QPlainTextEdit::NoWrap);
    setAccessibleNames(text_, QStringLiteral("Extracted text"));
    saveButton_ = makeCommandButton("SaveBtn", QStringLiteral("Save Text..."), this);
    clearButton_ = makeCommandButton("ClearButton", QStringLiteral("Clear Text"), this);
    hideButton_ = makeCommandButton("HideBtn", QStringLiteral("Hide"), this);
    connect(saveButton_, &QAbstractButton::clicked, this, &ExtractForm::save);
    connect(clearButton_, &QAbstractButton::clicked, this, &ExtractForm::clearText);
    connect(hideButton_, &QAbstractButton::clicked, this, &QWidget::hide);
    // The designed size: the text box 500 twips narrower and 1500 lower than
    // the window's inside, the buttons in the band below it.
    resize(twipsToPixelsX(9000, this), twipsToPixelsY(7000, this));
    text_->setGeometry(twipsToPixelsX(250, this), twipsToPixelsY(250, this), width() - twipsToPixelsX(500, this),
                       height() - twipsToPixelsY(1500, this));
    placeButtons();
    keepOnScreen(this);
    keepPaletteReadable();
}

void ExtractForm::appendText(const std::string& text) {
    // The caret goes to the end and the text is inserted there.
    QTextCursor cursor(text_->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(paneText(text));
}

void ExtractForm::clearText() { text_->clear(); }

std::string ExtractForm::text() const {
    return text_->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n")).toStdString();
}

void ExtractForm::save() {
    if (text_->document()->isEmpty()) return;
    const QString path = SaveFileDialog(desktop_, this, QStringLiteral("Plain Text files (*.txt)|*.txt"),
                                        QStringLiteral("txt"), QDir::homePath());
    if (path.isEmpty()) return;
    const std::string name = path.toStdString();
    saveBytes(messages_, name,
              bytesToSave(name, {StyledRun{text(), kBlack, false}}, text_->font().family().toStdString(),
                          text_->font().pointSize()));
}

void ExtractForm::closeEvent(QCloseEvent* event) {
    if (exiting_) {
        event->accept();
        return;
    }
    event->ignore();
    hide();
}

void ExtractForm::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const long innerWidth = pixelsToTwipsX(width(), this);
    const long innerHeight = pixelsToTwipsY(height(), this);
    // At or below these sizes the box keeps its last size.
    if (innerWidth > 1000) text_->resize(twipsToPixelsX(innerWidth - 500, this), text_->height());
    if (innerHeight > 2500) text_->resize(text_->width(), twipsToPixelsY(innerHeight - 1500, this));
    placeButtons();
}

void ExtractForm::placeButtons() {
    const int top = text_->geometry().bottom() + twipsToPixelsY(250, this);
    int left = text_->x();
    for (QAbstractButton* b : {saveButton_, clearButton_, hideButton_}) {
        const QSize size(std::max(b->sizeHint().width(), twipsToPixelsX(1400, this)), b->sizeHint().height());
        b->setGeometry(QRect(QPoint(left, top), size));
        left += size.width() + twipsToPixelsX(150, this);
    }
}

}  // namespace vantorel::ui
