#pragma once
// The command buttons of every window are made here, in one place, so that
// the program's own button control can take QPushButton's place by a change
// to this function alone.

#include <QAbstractButton>
#include <QString>

namespace vantorel::ui {

// A button named `objectName` with `caption`; the default one of its window
// when `isDefault`.
QAbstractButton* makeCommandButton(const char* objectName, const QString& caption, QWidget* parent,
                                   bool isDefault = false);

}  // namespace vantorel::ui
