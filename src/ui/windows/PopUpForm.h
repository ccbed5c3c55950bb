#pragma once
// The context menu of the results list (mmuPopUp): open the file, open it
// with a chosen program or the remembered one, show its folder, and mark,
// unmark or invert the rows' marks.

#include <QObject>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QWidget;

namespace vantorel {
class MessageHost;
struct AppSettings;
struct MarkedBoxState;
}

namespace vantorel::ui {

class DesktopServices;
class InputFrame;
class ResultsModel;
class ResultsView;

class PopUpForm : public QObject {
    Q_OBJECT
public:
    PopUpForm(QWidget* owner, ResultsView& view, ResultsModel& model, InputFrame& inputs,
              DesktopServices& desktop, MessageHost& messages, AppSettings& settings);

    QMenu* menu() const noexcept { return menu_; }
    // Sets the captions and visible items for the selected row and pops the
    // menu up at `globalPosition`. Nothing happens when the list is empty.
    void popUp(const QPoint& globalPosition);

signals:
    // "View/Execute file": the window opens the selected row's file.
    void runRequested();

private:
    void prepare();
    void openWithChosenProgram();
    void openWithRememberedProgram();
    void openFolder();
    void markRow();
    void markSelected(bool mark);
    void invertMarks();
    bool startProgram(const std::string& program, const std::string& path);
    void applyMarks(const std::vector<bool>& marks, const MarkedBoxState& box);
    std::vector<bool> marks() const;
    std::vector<bool> selectedRows() const;

    QWidget* owner_;
    ResultsView& view_;
    ResultsModel& model_;
    InputFrame& inputs_;
    DesktopServices& desktop_;
    MessageHost& messages_;
    AppSettings& settings_;
    QMenu* menu_ = nullptr;
    QAction* run_ = nullptr;
    QAction* openWith_ = nullptr;
    QAction* openWithRemembered_ = nullptr;
    QAction* explore_ = nullptr;
    QAction* markAll_ = nullptr;
    QAction* unmarkAll_ = nullptr;
    QAction* mark_ = nullptr;
    QAction* invert_ = nullptr;
};

}  // namespace vantorel::ui
