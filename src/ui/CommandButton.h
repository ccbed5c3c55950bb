#pragma once
// The windows' command buttons are all made here: today a push button with a
// caption; the program's own button control takes its place in this one spot.

#include <QString>

class QAbstractButton;
class QWidget;

namespace vantorel::ui {

// A button named `objectName` with `caption`; the default one of its window
// when `isDefault`.
QAbstractButton* makeCommandButton(QWidget* parent, const char* objectName, const QString& caption,
                                   bool isDefault = false);

}  // namespace vantorel::ui
