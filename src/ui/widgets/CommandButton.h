#pragma once
// The command buttons of every window are made here, in one place: the
// program's own button control, flat, in the desktop's colours.

#include <QAbstractButton>
#include <QString>

namespace vantorel::ui {

// A button named `objectName` with `caption` ("&" marks the access key); the
// default one of its window (pressed by Enter in a dialog) when `isDefault`.
QAbstractButton* makeCommandButton(const char* objectName, const QString& caption, QWidget* parent,
                                   bool isDefault = false);

}  // namespace vantorel::ui
