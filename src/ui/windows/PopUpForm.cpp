#include "ui/windows/PopUpForm.h"

#include <QAction>
#include <QDir>
#include <QItemSelectionModel>
#include <QMenu>
#include <QUrl>

#include "settings/AppSettings.h"
#include "core/FrontEndMessages.h"
#include "core/MessageHost.h"
#include "files/FileFunctions.h"
#include "results/ResultActions.h"
#include "ui/platform/DesktopServices.h"
#include "ui/platform/FileDialog.h"
#include "ui/widgets/InputFrame.h"
#include "ui/models/ResultsModel.h"
#include "ui/models/ResultsView.h"

namespace vantorel::ui {

PopUpForm::PopUpForm(QWidget* owner, ResultsView& view, ResultsModel& model, InputFrame& inputs,
                     DesktopServices& desktop, MessageHost& messages, AppSettings& settings)
    : QObject(owner),
      owner_(owner),
      view_(view),
      model_(model),
      inputs_(inputs),
      desktop_(desktop),
      messages_(messages),
      settings_(settings) {
    setObjectName(QStringLiteral("PopUpForm"));
    menu_ = new QMenu(owner);
    menu_->setObjectName(QStringLiteral("mmuPopUp"));
    auto item = [this](const char* name, const char* caption) {
        QAction* action = menu_->addAction(QString::fromUtf8(caption));
        action->setObjectName(QString::fromLatin1(name));
        return action;
    };
    run_ = item("mmuRun", "View/Execute file");
    openWith_ = item("mmuOpenWith", "Open with...");
    openWithRemembered_ = item("mnuOpenWithFN", "Open with blah.exe");
    explore_ = item("mmuExp", "Open Containing Folder in Explorer");
    menu_->addSeparator()->setObjectName(QStringLiteral("mnuDiv1"));
    markAll_ = item("MnuMarkAll", "Mark all selected");
    unmarkAll_ = item("MnuUnmarkAll", "Unmark all selected");
    mark_ = item("mmuMark", "Mark File");
    invert_ = item("mnuInv", "Invert Marked Files");
    connect(run_, &QAction::triggered, this, &PopUpForm::runRequested);
    connect(openWith_, &QAction::triggered, this, &PopUpForm::openWithChosenProgram);
    connect(openWithRemembered_, &QAction::triggered, this, &PopUpForm::openWithRememberedProgram);
    connect(explore_, &QAction::triggered, this, &PopUpForm::openFolder);
    connect(markAll_, &QAction::triggered, this, [this] { markSelected(true); });
    connect(unmarkAll_, &QAction::triggered, this, [this] { markSelected(false); });
    connect(mark_, &QAction::triggered, this, &PopUpForm::markRow);
    connect(invert_, &QAction::triggered, this, &PopUpForm::invertMarks);
}

void PopUpForm::popUp(const QPoint& globalPosition) {
    if (model_.rowCount() == 0) return;
    try {
        prepare();
        menu_->popup(globalPosition);
    } catch (const std::exception&) {
        messages_.showMessage(errorDisplayingContextMenu());
    }
}

void PopUpForm::prepare() {
    std::size_t selected = 0;
    for (const bool s : selectedRows()) selected += s;
    const bool several = showsMultiMarkItems(selected);
    markAll_->setVisible(several);
    unmarkAll_->setVisible(several);
    const int row = view_.selectedRow();
    const std::string name = row >= 0 ? model_.rowAt(row).name : std::string();
    mark_->setText(displayText(markCaption(name, row >= 0 && model_.rowAt(row).checked)));
    run_->setText(displayText(runCaption(name)));
    const auto remembered = openWithCaption(settings_.OpenWithProgram);
    openWithRemembered_->setVisible(remembered.has_value());
    if (remembered) openWithRemembered_->setText(displayText(*remembered));
}

bool PopUpForm::startProgram(const std::string& program, const std::string& path) {
    // The path goes to the program as it is: one argument, nothing added.
    return desktop_.startProgram(QString::fromStdString(program), {QString::fromStdString(path)});
}

void PopUpForm::openWithChosenProgram() {
    const int row = view_.selectedRow();
    const std::string path = row >= 0 ? model_.pathAt(row) : std::string();
    if (path.empty()) return;
    const QString program = OpenFileDialog(desktop_, owner_, QStringLiteral("Applications (*)|*"), QDir::homePath());
    if (program.isEmpty()) return;  // cancelled: the remembered program stays
    if (!startProgram(program.toStdString(), path)) messages_.showMessage(errorOpeningApplication());
    settings_.OpenWithProgram = program.toStdString();
}

void PopUpForm::openWithRememberedProgram() {
    const int row = view_.selectedRow();
    if (row < 0) return;
    if (!startProgram(settings_.OpenWithProgram, model_.pathAt(row)))
        messages_.showMessage(errorOpeningApplication(settings_.OpenWithProgram));
}

void PopUpForm::openFolder() {
    try {
        const int row = view_.selectedRow();
        const std::string folder = row >= 0 ? model_.rowAt(row).folder : std::string();
        if (folder.empty()) return;
        desktop_.openUrl(QUrl::fromLocalFile(QString::fromStdString(folder)), this, [this](bool opened) {
            if (!opened) messages_.showMessage(errorOpeningFolder());
        });
    } catch (const std::exception&) {
        messages_.showMessage(errorOpeningFile());
    }
}

std::vector<bool> PopUpForm::marks() const {
    std::vector<bool> marks(static_cast<std::size_t>(model_.rowCount()));
    for (int r = 0; r < model_.rowCount(); ++r) marks[static_cast<std::size_t>(r)] = model_.rowAt(r).checked;
    return marks;
}

std::vector<bool> PopUpForm::selectedRows() const {
    std::vector<bool> selected(static_cast<std::size_t>(model_.rowCount()));
    if (QItemSelectionModel* selection = view_.selectionModel())
        for (const QModelIndex& index : selection->selectedRows()) selected[static_cast<std::size_t>(index.row())] = true;
    return selected;
}

void PopUpForm::applyMarks(const std::vector<bool>& marks, const MarkedBoxState& box) {
    for (int r = 0; r < model_.rowCount(); ++r)
        if (model_.rowAt(r).checked != marks[static_cast<std::size_t>(r)]) model_.setChecked(r, marks[static_cast<std::size_t>(r)]);
    inputs_.applyMarkedBox(box);
}

void PopUpForm::markRow() {
    const int row = view_.selectedRow();
    if (row < 0) return;
    std::vector<bool> current = marks();
    const std::vector<bool> selected = selectedRows();
    const MarkedBoxState box = MarkAction{current, selected}.toggle(static_cast<std::size_t>(row));
    applyMarks(current, box);
}

void PopUpForm::markSelected(bool mark) {
    std::vector<bool> current = marks();
    const std::vector<bool> selected = selectedRows();
    MarkAction action{current, selected};
    const MarkedBoxState box = mark ? action.markSelected() : action.unmarkSelected();
    applyMarks(current, box);
}

void PopUpForm::invertMarks() {
    std::vector<bool> current = marks();
    const std::vector<bool> selected = selectedRows();
    const MarkedBoxState box = MarkAction{current, selected}.invert();
    applyMarks(current, box);
}

}  // namespace vantorel::ui
