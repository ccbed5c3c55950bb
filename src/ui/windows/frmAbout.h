#pragma once
// The About box: the program's name and version, the freeware notice, and
// pictures and a line that open the maker's and the program's web pages.

#include <QDialog>

#include "core/MessageHost.h"
#include "ui/platform/DesktopServices.h"

namespace vantorel::ui {

class frmAbout : public QDialog {
    Q_OBJECT
public:
    frmAbout(DesktopServices& desktop, MessageHost& messages, QWidget* parent = nullptr);

    // "Version " major "." minor "-" revision.
    static QString versionText(const QString& version);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    DesktopServices& desktop_;
    MessageHost& messages_;
};

}  // namespace vantorel::ui
