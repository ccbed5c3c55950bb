#pragma once
// The inputs of a run (UpperFrame): what to find and what to put in its
// place, where and in which files, and the option boxes, with their rules:
// regular-expression mode disables "Whole Words" and captions the find box
// "Reg Ex:"; "In Marked Files Only" disables the inputs that choose files.

#include <QWidget>

#include "settings/MainWindowState.h"
#include "results/ResultActions.h"

class QAbstractButton;
class QCheckBox;
class QLabel;

namespace vantorel::ui {

class HistoryCombo;

class InputFrame : public QWidget {
    Q_OBJECT
public:
    explicit InputFrame(QWidget* parent = nullptr);

    HistoryCombo* box(HistoryBox which) const;
    QCheckBox* option(OptionBox which) const;
    QCheckBox* markedBox() const noexcept { return marked_; }
    QAbstractButton* folderButton() const noexcept { return folderButton_; }
    // ShowLibBtn, beside the find and replace boxes that the library fills.
    QAbstractButton* libraryButton() const noexcept { return libraryButton_; }
    // "In Marked Files Only" after the marks changed.
    void applyMarkedBox(const MarkedBoxState& state);
    // The width of the column of option boxes, in pixels.
    void setOptionColumnWidth(int pixels);

signals:
    void regularExpressionModeChanged(bool on);

private:
    void applyRegularExpressionMode(bool on);
    void applyMarkedOnly(bool on);

    HistoryCombo* find_;
    HistoryCombo* replace_;
    HistoryCombo* folder_;
    HistoryCombo* filter_;
    QLabel* findCaption_;
    QLabel* replaceCaption_;
    QLabel* folderLabel_;
    QLabel* filterLabel_;
    QAbstractButton* folderButton_;
    QAbstractButton* libraryButton_;
    QCheckBox* regularExpression_;
    QCheckBox* matchCase_;
    QCheckBox* wholeWords_;
    QCheckBox* marked_;
};

}  // namespace vantorel::ui
