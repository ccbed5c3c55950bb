#pragma once
// The options dialog "Options": the preview's limits and font, subfolders,
// version-control folders, backups, the extraction window's clearing, line
// numbers, and three buttons that empty the main window's histories.
//
// It edits the settings it is given in place when Apply or OK is pressed;
// Cancel closes it and keeps what was applied before. What concerns the main
// window goes out as signals: the preview to bring up to date after an
// Apply (when it shows one file at a time), and a history to empty.

#include <QDialog>
#include <array>

#include "settings/AppSettings.h"
#include "settings/MainWindowState.h"
#include "core/MessageHost.h"
#include "settings/OptionsFields.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;

namespace vantorel::ui {

class lvButtons_H;

class frmOptions : public QDialog {
    Q_OBJECT
public:
    frmOptions(AppSettings& settings, MessageHost& messages, QWidget* parent = nullptr);

    // What the dialog's boxes hold now.
    OptionsFields fields() const;

public slots:
    void apply();

protected:
    void resizeEvent(QResizeEvent* event) override;

signals:
    // After an Apply while the preview shows one file at a time.
    void previewUpdateRequested();
    // The user confirmed emptying the history of a box (Find, Replace or Folder).
    void historyCleared(vantorel::HistoryBox box);

private:
    QLineEdit* numberBox(const char* name, long least);
    QCheckBox* checkBox(const char* name, const char* caption, bool ticked);
    void buildHistoryButtons(QWidget* group);
    void clearHistory(HistoryBox box);
    void changed();
    void arrangeGroups(bool twoColumns);

    AppSettings& settings_;
    MessageHost& messages_;
    QLineEdit* hitsPerPage_ = nullptr;
    QLineEdit* charsAround_ = nullptr;
    QLineEdit* charsBetween_ = nullptr;
    QLineEdit* undoRuns_ = nullptr;
    QCheckBox* scanSubfolders_ = nullptr;
    QCheckBox* skipVersionControl_ = nullptr;
    QCheckBox* makeBackups_ = nullptr;
    QCheckBox* clearExtractText_ = nullptr;
    QCheckBox* showLineNumbers_ = nullptr;
    QComboBox* fontName_ = nullptr;
    QComboBox* fontSize_ = nullptr;
    lvButtons_H* apply_ = nullptr;
    QGridLayout* grid_ = nullptr;
    std::array<QWidget*, 4> groups_{};  // finding, replacing, preview, history
    bool twoColumns_ = false;
    int twoColumnWidth_ = 0;  // the narrowest the dialog shows two columns at
};

}  // namespace vantorel::ui
