#include "ui/windows/RegExLibFrm.h"

#include <QAbstractButton>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "ui/platform/AccessibleName.h"
#include "ui/widgets/CommandButton.h"
#include "ui/platform/GuiMessageHost.h"
#include "ui/platform/ReadableText.h"
#include "ui/platform/ScreenFit.h"
#include "ui/platform/ShownName.h"

namespace vantorel::ui {

RegExLibFrm::RegExLibFrm(LibraryState& state, const std::filesystem::path& programFolder, MessageHost* messages,
                         QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("RegExLibFrm"));
    setWindowTitle(QStringLiteral("Regular Expression Library"));
    if (!messages) {
        ownMessages_ = std::make_unique<GuiMessageHost>(this);
        messages = ownMessages_.get();
    }
    library_ = std::make_unique<ExpressionLibrary>(LibraryFile(programFolder), *messages, state);

    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("RegExList"));
    list_->setSortingEnabled(false);  // index i is entry i of the file
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    setAccessibleNames(list_, QStringLiteral("Library"), QStringLiteral("Enter or a double click uses the entry"));
    auto edit = [this](const char* name) {
        auto* box = new QLineEdit(this);
        box->setObjectName(QString::fromLatin1(name));
        box->setMinimumWidth(320);
        return box;
    };
    name_ = edit("REName");
    pattern_ = edit("REtxt");
    replacement_ = edit("RepTxt");
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    pattern_->setFont(fixed);
    replacement_->setFont(fixed);

    QAbstractButton* use = makeCommandButton("lvButtons_H1", QStringLiteral("Use"), this);
    QAbstractButton* save = makeCommandButton("lvButtons_H2", QStringLiteral("Save"), this);
    QAbstractButton* close = makeCommandButton("lvButtons_H3", QStringLiteral("Close"), this);
    QAbstractButton* remove = makeCommandButton("DelBtn", QStringLiteral("Remove"), this);
    use->setToolTip(QStringLiteral("Use this expression and replacement, saved or not"));
    save->setToolTip(QStringLiteral("Save under the name, or update the entry of that name"));
    remove->setToolTip(QStringLiteral("Remove the selected entry from the library"));

    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("&Name:"), name_);
    fields->addRow(QStringLiteral("Reg &Ex:"), pattern_);
    fields->addRow(QStringLiteral("&Replace:"), replacement_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(use);
    buttons->addWidget(save);
    buttons->addWidget(remove);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* right = new QVBoxLayout;
    right->addLayout(fields);
    right->addStretch();
    right->addLayout(buttons);
    auto* listColumn = new QVBoxLayout;
    auto* listLabel = new QLabel(QStringLiteral("&Library:"), this);
    listLabel->setBuddy(list_);
    listColumn->addWidget(listLabel);
    listColumn->addWidget(list_);
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(listColumn, 2);
    layout->addLayout(right, 3);
    resize(720, 280);
    keepOnScreen(this);
    keepPaletteReadable();
    QWidget* order[] = {list_, name_, pattern_, replacement_, use, save, remove, close};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    connect(list_, &QListWidget::currentRowChanged, this, [this] {
        if (!reloading_) showEntry();
    });
    connect(list_, &QListWidget::itemClicked, this, &RegExLibFrm::showEntry);
    connect(list_, &QListWidget::itemActivated, this, &RegExLibFrm::useEntry);  // Enter, or a double click
    connect(use, &QAbstractButton::clicked, this, &RegExLibFrm::useTyped);
    connect(save, &QAbstractButton::clicked, this, &RegExLibFrm::save);
    connect(close, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(remove, &QAbstractButton::clicked, this, &RegExLibFrm::removeEntry);

    library_->load();
    fillList();
}

RegExLibFrm::~RegExLibFrm() = default;

void RegExLibFrm::setTexts(const QString& pattern, const QString& replacement) {
    pattern_->setText(pattern);
    replacement_->setText(replacement);
}

void RegExLibFrm::fillList(std::optional<std::size_t> select) {
    reloading_ = true;
    list_->clear();
    for (const LibraryEntry& entry : library_->entries()) {
        auto* item = new QListWidgetItem(shownName(entry.name), list_);
        item->setData(Qt::AccessibleTextRole, spokenName(entry.name));
    }
    if (select && *select < library_->entries().size()) list_->setCurrentRow(static_cast<int>(*select));
    reloading_ = false;
}

std::optional<std::size_t> RegExLibFrm::selectedIndex() const {
    const int row = list_->currentRow();
    if (row < 0 || !list_->item(row)->isSelected()) return std::nullopt;
    return static_cast<std::size_t>(row);
}

LibraryEntry RegExLibFrm::typed() const {
    return LibraryEntry{name_->text().toStdString(), pattern_->text().toStdString(),
                        replacement_->text().toStdString()};
}

void RegExLibFrm::showEntry() {
    const auto index = selectedIndex();
    if (!index) return;
    const LibraryEntry& entry = library_->entries()[*index];
    pattern_->setText(QString::fromStdString(entry.pattern));
    replacement_->setText(QString::fromStdString(entry.replacement));
    name_->setText(QString::fromStdString(entry.name));
}

void RegExLibFrm::useEntry() {
    const auto index = selectedIndex();
    if (!index) return;
    library_->choose(*index);
    accept();
}

void RegExLibFrm::useTyped() {
    const LibraryEntry entry = typed();
    library_->choose(entry.pattern, entry.replacement);
    accept();
}

void RegExLibFrm::save() {
    std::size_t index = 0;
    switch (library_->save(typed(), &index)) {
        case ExpressionLibrary::SaveResult::Saved:
        case ExpressionLibrary::SaveResult::Updated: fillList(index); break;
        default: break;
    }
}

void RegExLibFrm::removeEntry() {
    const auto index = selectedIndex();
    if (index && library_->remove(*index)) fillList();
}

std::optional<LibraryChoice> openLibrary(QWidget* opener, LibraryState& state,
                                         const std::filesystem::path& programFolder, MessageHost* messages,
                                         const QString& findText, const QString& replaceText) {
    RegExLibFrm library(state, programFolder, messages, opener);
    library.setTexts(findText, replaceText);
    state.choice.clear();
    library.exec();
    if (state.choice.pattern.empty()) return std::nullopt;
    return state.choice;
}

}  // namespace vantorel::ui
