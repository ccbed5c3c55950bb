#pragma once
// A one-line box for a regular expression that can mark the character an
// error points at (a red underline and tint) without moving the caret or
// the selection, so that typing goes on undisturbed.

#include <QLineEdit>
#include <cstddef>

namespace vantorel::ui {

class PatternEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit PatternEdit(QWidget* parent = nullptr);

    // Marks the character at a position of text() (its length: just after
    // the last character); -1 takes the mark away.
    void setErrorMark(int position);
    int errorMark() const noexcept { return mark_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int mark_ = -1;
};

// The position in a QString of the character that comes after `characters`
// code points (an offset as the engine reports it).
int utf16Position(const QString& text, std::size_t characters);

}  // namespace vantorel::ui
