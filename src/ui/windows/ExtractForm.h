#pragma once
// The extraction window ("Extracted Text"): the text of every match an
// Extract run gathers, one a line, kept between runs, saved as plain or rich
// text. Closing it hides it, so that the text survives, until the program
// exits.

#include <QWidget>
#include <string>

class QAbstractButton;
class QPlainTextEdit;

namespace vantorel {
class MessageHost;
}

namespace vantorel::ui {

class DesktopServices;

class ExtractForm : public QWidget {
    Q_OBJECT
public:
    ExtractForm(DesktopServices& desktop, MessageHost& messages, QWidget* parent = nullptr);

    // Adds text (UTF-8, lines ended by CR LF) after what is there.
    void appendText(const std::string& text);
    void clearText();
    // The text, lines ended by CR LF as gathered.
    std::string text() const;
    // While false, a close request hides the window instead.
    void setExiting(bool exiting) { exiting_ = exiting; }
    // "Save Text...": asks for a file; rich text when its name ends in "rtf".
    void save();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeButtons();

    DesktopServices& desktop_;
    MessageHost& messages_;
    QPlainTextEdit* text_ = nullptr;
    QAbstractButton* saveButton_ = nullptr;
    QAbstractButton* clearButton_ = nullptr;
    QAbstractButton* hideButton_ = nullptr;
    bool exiting_ = false;
};

}  // namespace vantorel::ui
