#include "ui/widgets/HistoryCombo.h"

#include <QLineEdit>
#include <limits>

namespace vantorel::ui {

QString beforeNul(const QString& text) {
    const qsizetype nul = text.indexOf(QChar(u'\0'));
    return nul < 0 ? text : text.first(nul);
}

HistoryCombo::HistoryCombo(const QString& objectName, int limit, QWidget* parent)
    : QComboBox(parent), limit_(limit) {
    setObjectName(objectName);
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);  // no text is ever filled in behind the user's back
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    setMaxVisibleItems(20);
    lineEdit()->setMaxLength(std::numeric_limits<int>::max());
    // Set, typed or pasted: the text ends at a NUL.
    connect(this, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (text.contains(QChar(u'\0'))) setEditText(beforeNul(text));
    });
}

std::vector<std::string> HistoryCombo::items() const {
    std::vector<std::string> list;
    list.reserve(static_cast<std::size_t>(count()));
    for (int i = 0; i < count(); ++i) list.push_back(itemText(i).toStdString());
    return list;
}

void HistoryCombo::setItems(const std::vector<std::string>& items) {
    const QString edited = currentText();
    const QSignalBlocker blocker(this);
    clear();
    for (const std::string& item : items)
        if (const QString entry = beforeNul(QString::fromStdString(item)); !entry.isEmpty()) addItem(entry);
    setCurrentIndex(-1);
    setEditText(edited);
}

std::string HistoryCombo::text() const { return currentText().toStdString(); }

void HistoryCombo::setText(const std::string& text) { setEditText(QString::fromStdString(text)); }

void HistoryCombo::remember(const QString& entry) {
    if (entry.isEmpty()) return;
    const QString edited = currentText();
    const QSignalBlocker blocker(this);
    for (int i = count() - 1; i >= 0; --i)
        if (itemText(i) == entry) removeItem(i);
    insertItem(0, entry);
    while (count() > limit_) removeItem(count() - 1);
    setCurrentIndex(-1);
    setEditText(edited);
}

}  // namespace vantorel::ui
