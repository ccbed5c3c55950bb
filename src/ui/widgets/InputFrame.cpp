#include "ui/widgets/InputFrame.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QAbstractButton>

#include "settings/SettingsStore.h"
#include "ui/platform/AccessibleName.h"
#include "ui/widgets/CommandButton.h"
#include "ui/widgets/HistoryCombo.h"

namespace vantorel::ui {
namespace {

QLabel* caption(const QString& name, const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setBuddy(buddy);
    return label;
}

QCheckBox* checkBox(const QString& name, const QString& text, QWidget* parent) {
    auto* box = new QCheckBox(text, parent);
    box->setObjectName(name);
    return box;
}

}  // namespace

InputFrame::InputFrame(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("UpperFrame"));
    find_ = new HistoryCombo(QStringLiteral("FindText"), SettingsStore::kFindHistory, this);
    replace_ = new HistoryCombo(QStringLiteral("RepText"), SettingsStore::kReplaceHistory, this);
    folder_ = new HistoryCombo(QStringLiteral("StartDir"), SettingsStore::kFolderHistory, this);
    filter_ = new HistoryCombo(QStringLiteral("FilterCombo"), SettingsStore::kFilterHistory, this);
    findCaption_ = caption(QStringLiteral("Findcaption"), QStringLiteral("Find:"), find_, this);
    replaceCaption_ = caption(QStringLiteral("RepCaption"), QStringLiteral("&Replace:"), replace_, this);
    folderLabel_ = caption(QStringLiteral("StLocLbl"), QStringLiteral("F&older:"), folder_, this);
    filterLabel_ = caption(QStringLiteral("ffiltLbl"), QStringLiteral("Fi&les:"), filter_, this);
    folderButton_ = makeCommandButton("FolderButton", QStringLiteral("..."), this);
    folderButton_->setToolTip(QStringLiteral("Choose the start folder"));
    folderButton_->setFixedWidth(folderButton_->fontMetrics().horizontalAdvance(QStringLiteral("...")) + 24);
    libraryButton_ = makeCommandButton("ShowLibBtn", QStringLiteral("Li&brary..."), this);
    libraryButton_->setToolTip(QStringLiteral("Take an expression and its replacement from the library, or keep these there"));
    regularExpression_ = checkBox(QStringLiteral("RegExpFind"), QStringLiteral("Re&gular Expression"), this);
    matchCase_ = checkBox(QStringLiteral("CaseSensChk"), QStringLiteral("Match &Case"), this);
    wholeWords_ = checkBox(QStringLiteral("WholeWordsChk"), QStringLiteral("&Whole Words"), this);
    marked_ = checkBox(QStringLiteral("MarkedChk"), QStringLiteral("In Marked Files Only"), this);
    marked_->setEnabled(false);  // usable only while some row is marked
    filter_->setToolTip(QStringLiteral("One or more patterns separated by \";\", such as *.txt or *.htm*;*.css"));
    setAccessibleNames(find_, QStringLiteral("Find"));
    setAccessibleNames(replace_, QStringLiteral("Replace with"));
    setAccessibleNames(folder_, QStringLiteral("Start folder"));
    setAccessibleNames(filter_, QStringLiteral("Files"), filter_->toolTip());
    setAccessibleNames(folderButton_, QStringLiteral("Choose the start folder"));

    auto* folderRow = new QHBoxLayout;
    folderRow->setContentsMargins(0, 0, 0, 0);
    folderRow->addWidget(folder_, 1);
    folderRow->addWidget(folderButton_);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 2);
    grid->setVerticalSpacing(4);
    // The library button stands between the two boxes it fills; the folder
    // and filter boxes reach to its right edge.
    grid->addWidget(findCaption_, 0, 0);
    grid->addWidget(find_, 0, 1);
    grid->addWidget(libraryButton_, 0, 2, 2, 1, Qt::AlignVCenter);
    grid->addWidget(regularExpression_, 0, 3);
    grid->addWidget(replaceCaption_, 1, 0);
    grid->addWidget(replace_, 1, 1);
    grid->addWidget(matchCase_, 1, 3);
    grid->addWidget(folderLabel_, 2, 0);
    grid->addLayout(folderRow, 2, 1, 1, 2);
    grid->addWidget(wholeWords_, 2, 3);
    grid->addWidget(filterLabel_, 3, 0);
    grid->addWidget(filter_, 3, 1, 1, 2);
    grid->addWidget(marked_, 3, 3);
    grid->setColumnStretch(1, 1);
    // The find box's caption changes width between "Find:" and "Reg Ex:".
    grid->setColumnMinimumWidth(0, fontMetrics().horizontalAdvance(QStringLiteral("Replace: ")) + 4);

    QWidget* order[] = {find_, replace_, libraryButton_, folder_, folderButton_, filter_,
                        regularExpression_, matchCase_, wholeWords_, marked_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    connect(regularExpression_, &QCheckBox::toggled, this, &InputFrame::applyRegularExpressionMode);
    connect(marked_, &QCheckBox::toggled, this, &InputFrame::applyMarkedOnly);
    applyRegularExpressionMode(false);
}

void InputFrame::setOptionColumnWidth(int pixels) {
    for (QCheckBox* box : {regularExpression_, matchCase_, wholeWords_, marked_})
        box->setMinimumWidth(std::max(pixels, box->sizeHint().width()));
}

HistoryCombo* InputFrame::box(HistoryBox which) const {
    switch (which) {
        case HistoryBox::Find: return find_;
        case HistoryBox::Replace: return replace_;
        case HistoryBox::Folder: return folder_;
        case HistoryBox::Filter: return filter_;
    }
    return find_;
}

QCheckBox* InputFrame::option(OptionBox which) const {
    switch (which) {
        case OptionBox::RegularExpression: return regularExpression_;
        case OptionBox::MatchCase: return matchCase_;
        case OptionBox::WholeWords: return wholeWords_;
    }
    return regularExpression_;
}

void InputFrame::applyRegularExpressionMode(bool on) {
    wholeWords_->setEnabled(!on);
    findCaption_->setText(on ? QStringLiteral("Reg Ex:") : QStringLiteral("Find:"));
    emit regularExpressionModeChanged(on);
}

void InputFrame::applyMarkedBox(const MarkedBoxState& state) {
    marked_->setEnabled(state.enabled);
    if (state.touchChecked) marked_->setChecked(state.checked);
}

void InputFrame::applyMarkedOnly(bool on) {
    for (QWidget* input : std::initializer_list<QWidget*>{filter_, folder_, folderButton_, filterLabel_, folderLabel_})
        input->setEnabled(!on);
}

}  // namespace vantorel::ui
