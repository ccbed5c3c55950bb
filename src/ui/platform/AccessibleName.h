#pragma once
// What a screen reader says for a control whose caption is not its own: a
// view, an edit box inside a drop-down box, a button that shows only an
// arrow. Its tooltip, when it has one, becomes its description.

#include <QComboBox>
#include <QLineEdit>
#include <QString>
#include <QWidget>

namespace vantorel::ui {

inline void setAccessibleNames(QWidget* control, const QString& name, const QString& description = {}) {
    control->setAccessibleName(name);
    if (!description.isEmpty()) control->setAccessibleDescription(description);
    // The edit box of a drop-down box the user types in is a control of its own.
    if (auto* box = qobject_cast<QComboBox*>(control); box && box->lineEdit()) {
        box->lineEdit()->setAccessibleName(name);
        if (!description.isEmpty()) box->lineEdit()->setAccessibleDescription(description);
    }
}

}  // namespace vantorel::ui
