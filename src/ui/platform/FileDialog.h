#pragma once
// The dialog helpers of the program: a save-file and an open-file dialog, a
// folder picker and opening a page or document with its default program.
// Each dialog returns "" when cancelled.

#include <QString>

#include "core/MessageHost.h"
#include "ui/platform/DesktopServices.h"

class QWidget;

namespace vantorel::ui {

// A filter given as "|"-separated pairs of description and pattern
// ("CSV files (*.csv)|*.csv|All files (*.*)|*.*") in the desktop's form
// ("CSV files (*.csv);;All files (*)"). A pair whose description already
// names its pattern keeps the description as it is.
QString desktopFilter(const QString& pairs);

QString SaveFileDialog(DesktopServices& desktop, QWidget* owner, const QString& filter,
                       const QString& defaultExtension, const QString& initialFolder);
QString OpenFileDialog(DesktopServices& desktop, QWidget* owner, const QString& filter,
                       const QString& initialFolder);
QString BrowseForFolder(DesktopServices& desktop, QWidget* owner, const QString& title, const QString& startFolder);

// Opens a web address or a local document with the desktop's handler; when
// that fails, says "Unable to find/view page." (as long as `receiver` lives).
void OpenPage(DesktopServices& desktop, MessageHost& messages, const QString& target, QObject* receiver);

// The maker's web page and the program's home page.
extern const char* const kMakerPage;
extern const char* const kProductPage;

}  // namespace vantorel::ui
