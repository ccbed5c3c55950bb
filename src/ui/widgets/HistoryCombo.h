#pragma once
// An editable drop-down box with a history: a newly used entry goes to the
// top, an entry is never listed twice, and the list keeps at most its limit.
// Like the system's edit boxes, a box shows, holds and saves what precedes a
// NUL character, in its text and in its entries.

#include <QComboBox>
#include <string>
#include <vector>

namespace vantorel::ui {

class HistoryCombo : public QComboBox {
    Q_OBJECT
public:
    HistoryCombo(const QString& objectName, int limit, QWidget* parent = nullptr);

    int limit() const noexcept { return limit_; }
    std::vector<std::string> items() const;
    // Replaces the list; the text being edited stays.
    void setItems(const std::vector<std::string>& items);
    std::string text() const;
    void setText(const std::string& text);
    // Puts the entry at the top of the list (moving it there when listed).
    void remember(const QString& entry);
    // Remembers the text in the edit field.
    void rememberText() { remember(currentText()); }

private:
    int limit_;
};

// The text up to its first NUL character.
QString beforeNul(const QString& text);

}  // namespace vantorel::ui
