#pragma once
// The command buttons of the tool windows are made here, in one place, so
// that the program's own button control can take QPushButton's place by a
// change to this function alone.

#include <QAbstractButton>
#include <QString>

namespace vantorel::ui {

QAbstractButton* makeCommandButton(const char* objectName, const QString& caption, QWidget* parent);

}  // namespace vantorel::ui
