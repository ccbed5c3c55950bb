#include "ui/windows/BatchFrm.h"

#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>
#include <type_traits>

#include "ui/platform/AccessibleName.h"
#include "ui/widgets/CommandButton.h"
#include "ui/platform/GuiMessageHost.h"
#include "ui/platform/ReadableText.h"
#include "ui/platform/ScreenFit.h"
#include "ui/platform/ShownName.h"

namespace vantorel::ui {

BatchFrm::BatchFrm(LibraryState& state, const std::filesystem::path& programFolder, MessageHost* messages,
                   QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("BatchFrm"));
    setWindowTitle(QStringLiteral("Batch Commands"));
    if (!messages) {
        ownMessages_ = std::make_unique<GuiMessageHost>(this);
        messages = ownMessages_.get();
    }
    editor_ = std::make_unique<BatchJobEditor>(BatchJobFile(programFolder), LibraryFile(programFolder), *messages,
                                               state);

    jobs_ = new QComboBox(this);
    jobs_->setObjectName(QStringLiteral("BatchJobsCombo"));
    library_ = new QComboBox(this);
    library_->setObjectName(QStringLiteral("LibraryCombo"));
    entries_ = new QListWidget(this);
    entries_->setObjectName(QStringLiteral("RegExList"));
    entries_->setSelectionMode(QAbstractItemView::SingleSelection);
    setAccessibleNames(entries_, QStringLiteral("Steps"));
    detail_ = new QLabel(this);
    detail_->setObjectName(QStringLiteral("StepDetail"));
    detail_->setTextFormat(Qt::PlainText);
    detail_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    detail_->setWordWrap(true);
    detail_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setAccessibleNames(detail_, QStringLiteral("The chosen step"));
    for (QComboBox* combo : {jobs_, library_}) {
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(28);
    }

    add_ = makeCommandButton("AddREBtn", QStringLiteral("&Add"), this);
    remove_ = makeCommandButton("RemRXbtn", QStringLiteral("&Remove"), this);
    up_ = makeCommandButton("MoveUpBtn", QStringLiteral("Move &Up"), this);
    down_ = makeCommandButton("MoveDnBtn", QStringLiteral("Move &Down"), this);
    newJob_ = makeCommandButton("New_btn", QStringLiteral("&New"), this);
    save_ = makeCommandButton("SaveBtn", QStringLiteral("&Save"), this);
    delete_ = makeCommandButton("DelBtn", QStringLiteral("De&lete"), this);
    use_ = makeCommandButton("usebtn", QStringLiteral("Us&e"), this);
    QAbstractButton* close = makeCommandButton("CloseBtn", QStringLiteral("Close"), this);
    add_->setToolTip(QStringLiteral("Add the library entry to the end of the job"));
    newJob_->setToolTip(QStringLiteral("Start a new, empty job"));
    delete_->setToolTip(QStringLiteral("Delete the chosen job from the saved jobs"));
    use_->setToolTip(QStringLiteral("Queue these steps in the main window: its runs take them in order"));

    auto label = [this](const QString& text, QWidget* buddy) {
        auto* l = new QLabel(text, this);
        l->setBuddy(buddy);
        return l;
    };
    auto* grid = new QGridLayout;
    grid->addWidget(label(QStringLiteral("Batch &job:"), jobs_), 0, 0);
    grid->addWidget(jobs_, 0, 1);
    grid->addWidget(label(QStringLiteral("L&ibrary:"), library_), 1, 0);
    grid->addWidget(library_, 1, 1);
    grid->addWidget(add_, 1, 2);
    grid->addWidget(label(QStringLiteral("S&teps:"), entries_), 2, 0, Qt::AlignTop);
    grid->addWidget(entries_, 2, 1);
    auto* moves = new QVBoxLayout;
    for (QAbstractButton* b : {up_, down_, remove_}) moves->addWidget(b);
    moves->addStretch();
    grid->addLayout(moves, 2, 2);
    grid->addWidget(detail_, 3, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    auto* buttons = new QHBoxLayout;
    for (QAbstractButton* b : {newJob_, save_, delete_}) buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(use_);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    resize(560, 360);
    keepOnScreen(this);
    keepPaletteReadable();
    QWidget* order[] = {jobs_, library_, add_, entries_, up_, down_, remove_, newJob_, save_, delete_, use_, close};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    connect(jobs_, &QComboBox::activated, this, &BatchFrm::chooseJob);
    connect(entries_, &QListWidget::itemSelectionChanged, this, [this] {
        if (showing_) return;
        const QList<QListWidgetItem*> selected = entries_->selectedItems();
        editor_->selectEntry(selected.isEmpty() ? std::nullopt
                                                : std::optional<std::size_t>(entries_->row(selected.front())));
        showState();
    });
    auto edit = [this](QAbstractButton* button, auto action) {
        connect(button, &QAbstractButton::clicked, this, [this, action] {
            action();
            showState();
        });
    };
    edit(add_, [this] {
        const int chosen = library_->currentIndex();
        if (chosen >= 0 && static_cast<std::size_t>(chosen) < editor_->library().size())
            editor_->addEntry(editor_->library()[static_cast<std::size_t>(chosen)].name);
    });
    edit(remove_, [this] { editor_->removeEntry(); });
    edit(up_, [this] { editor_->moveUp(); });
    edit(down_, [this] { editor_->moveDown(); });
    edit(newJob_, [this] { editor_->newJob(); });
    edit(delete_, [this] { editor_->deleteJob(); });
    connect(save_, &QAbstractButton::clicked, this, &BatchFrm::save);
    connect(use_, &QAbstractButton::clicked, this, &BatchFrm::use);
    connect(close, &QAbstractButton::clicked, this, &QDialog::reject);

    editor_->start();
    showState(true);
}

BatchFrm::~BatchFrm() = default;

bool BatchFrm::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && editor_->activate()) showState(true);
    return QDialog::event(event);
}

namespace {

// Puts `names` into a combo box or list, unless it holds them already (so
// that a click being handled does not lose its item).
template <class Box>
void fill(Box* box, const std::vector<std::string>& names, bool entryNames) {
    auto shown = [entryNames](const std::string& name) {
        return entryNames ? shownName(name) : QString::fromStdString(name);
    };
    bool same = box->count() == static_cast<int>(names.size());
    for (int i = 0; same && i < box->count(); ++i) {
        if constexpr (std::is_same_v<Box, QComboBox>) same = box->itemText(i) == shown(names[i]);
        else same = box->item(i)->text() == shown(names[i]);
    }
    if (same) return;
    box->clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
        box->addItem(shown(names[i]));
        if (!entryNames) continue;
        if constexpr (std::is_same_v<Box, QComboBox>)
            box->setItemData(static_cast<int>(i), spokenName(names[i]), Qt::AccessibleTextRole);
        else box->item(static_cast<int>(i))->setData(Qt::AccessibleTextRole, spokenName(names[i]));
    }
}

}  // namespace

void BatchFrm::showState(bool library) {
    showing_ = true;
    if (library) {
        std::vector<std::string> names;
        for (const LibraryEntry& entry : editor_->library()) names.push_back(entry.name);
        fill(library_, names, true);
    }
    fill(jobs_, editor_->jobNames(), false);
    jobs_->setCurrentIndex(editor_->currentJob());
    fill(entries_, editor_->entries(), true);
    if (const auto selected = editor_->selectedEntry()) {
        entries_->setCurrentRow(static_cast<int>(*selected));
    } else {
        entries_->clearSelection();
        entries_->setCurrentRow(-1);
    }
    showDetail();
    const BatchButtons enabled = editor_->buttons();
    use_->setEnabled(enabled.use);
    save_->setEnabled(enabled.save);
    newJob_->setEnabled(enabled.newJob);
    up_->setEnabled(enabled.moveUp);
    down_->setEnabled(enabled.moveDown);
    remove_->setEnabled(enabled.removeEntry);
    add_->setEnabled(enabled.addEntry);
    delete_->setEnabled(enabled.deleteJob);
    showing_ = false;
}

void BatchFrm::showDetail() {
    const auto selected = editor_->selectedEntry();
    if (!selected) {
        detail_->clear();
        return;
    }
    const std::string& name = editor_->entries()[*selected];
    const LibraryEntry* entry = findEntry(editor_->library(), name);
    if (!entry) {
        detail_->setText(QStringLiteral("'%1' is not in the library").arg(QString::fromStdString(name)));
        return;
    }
    detail_->setText(QStringLiteral("Find: %1\nReplace with: %2")
                         .arg(QString::fromStdString(entry->pattern),
                              entry->replacement.empty() ? QStringLiteral("(nothing)")
                                                         : QString::fromStdString(entry->replacement)));
}

void BatchFrm::chooseJob(int position) {
    editor_->selectJob(position);
    showState();  // back on the current job when the user kept the changes
}

void BatchFrm::save() {
    QInputDialog ask(this);
    ask.setObjectName(QStringLiteral("SaveName"));
    ask.setWindowTitle(QStringLiteral("Save"));
    ask.setLabelText(QStringLiteral("Please enter a name for the batch process"));
    ask.setTextValue(jobs_->currentText());
    if (ask.exec() != QDialog::Accepted) return;
    editor_->save(ask.textValue().toStdString());
    showState();
}

void BatchFrm::use() {
    queue_ = editor_->queue();
    if (queue_) accept();
}

std::optional<BatchQueue> openBatchJobs(QWidget* opener, LibraryState& state,
                                        const std::filesystem::path& programFolder, MessageHost* messages) {
    BatchFrm window(state, programFolder, messages, opener);
    if (window.exec() != QDialog::Accepted) return std::nullopt;
    return window.queue();
}

}  // namespace vantorel::ui
