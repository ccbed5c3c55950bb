#include "ui/windows/frmOptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QVBoxLayout>

#include "settings/HistoryQuestions.h"
#include "ui/platform/AccessibleName.h"
#include "ui/platform/FontNames.h"
#include "ui/widgets/Logo.h"
#include "ui/platform/ReadableText.h"
#include "ui/platform/ScreenFit.h"
#include "ui/widgets/lvButtons_H.h"

namespace vantorel::ui {
namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }

QGroupBox* group(const char* title, QWidget* parent) {
    auto* box = new QGroupBox(QString::fromLatin1(title), parent);
    return box;
}

// The heading band: the program's picture and the page's name, in the
// palette's selection colours so that it reads in light and dark palettes.
QWidget* banner(QWidget* parent) {
    auto* band = new QWidget(parent);
    band->setObjectName(QStringLiteral("Banner"));
    band->setAutoFillBackground(true);
    QPalette colours = band->palette();
    colours.setColor(QPalette::Window, colours.color(QPalette::Highlight));
    colours.setColor(QPalette::WindowText, colours.color(QPalette::HighlightedText));
    band->setPalette(colours);
    auto* logo = new QLabel(band);
    logo->setPixmap(productLogo(36));
    auto* title = new QLabel(QStringLiteral("Vantorel Options Page"), band);
    title->setObjectName(QStringLiteral("BannerLbl"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.5);
    big.setBold(true);
    title->setFont(big);
    // White on the selection colour is too faint on some palettes: the text moves just far enough.
    keepReadable(title, [](const QPalette& palette) { return palette.color(QPalette::WindowText); });
    auto* row = new QHBoxLayout(band);
    row->setContentsMargins(12, 8, 12, 8);
    row->setSpacing(12);
    row->addWidget(logo);
    row->addWidget(title, 1);
    return band;
}

}  // namespace

frmOptions::frmOptions(AppSettings& settings, MessageHost& messages, QWidget* parent)
    : QDialog(parent), settings_(settings), messages_(messages) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    const OptionsFields shown = OptionsFields::from(settings_);

    auto* finding = group("Finding", this);
    scanSubfolders_ = checkBox("ScanSubchk", "Scan Subfolders", shown.scanSubfolders);
    skipVersionControl_ = checkBox("SkipVcsChk", "Skip version-control folders", shown.skipVersionControl);
    skipVersionControl_->setToolTip(QStringLiteral(".git, .hg, .svn, .bzr, _darcs and CVS"));
    clearExtractText_ = checkBox("ClearTxtChk", "Clear text window before extracting", shown.clearExtractText);
    auto* findingLayout = new QVBoxLayout(finding);
    for (QCheckBox* box : {scanSubfolders_, skipVersionControl_, clearExtractText_}) findingLayout->addWidget(box);
    findingLayout->addStretch(1);
    // Without subfolders there are no version-control folders to skip.
    skipVersionControl_->setEnabled(shown.scanSubfolders);
    connect(scanSubfolders_, &QCheckBox::toggled, skipVersionControl_, &QWidget::setEnabled);

    auto* replacing = group("Replacing", this);
    makeBackups_ = checkBox("createBakChk", "Create .bak (backup) files when replacing.", shown.makeBackups);
    undoRuns_ = numberBox("UndoRunsTxt", 0);
    undoRuns_->setText(qs(shown.undoRuns));
    undoRuns_->setToolTip(QStringLiteral("0 keeps none: a Replace can then not be undone"));
    auto* undoLabel = new QLabel(QStringLiteral("Replaces kept for Undo"), replacing);
    undoLabel->setBuddy(undoRuns_);
    auto* undoRow = new QHBoxLayout;
    undoRow->addWidget(undoLabel);
    undoRow->addWidget(undoRuns_);
    undoRow->addStretch(1);
    auto* replacingLayout = new QVBoxLayout(replacing);
    replacingLayout->addWidget(makeBackups_);
    replacingLayout->addLayout(undoRow);
    replacingLayout->addStretch(1);

    auto* preview = group("Text Preview", this);
    hitsPerPage_ = numberBox("HppTxt", kLeastHitsPerPage);
    charsAround_ = numberBox("EndPrevTxt", kLeastCharacters);
    charsBetween_ = numberBox("BetPrevTxt", kLeastCharacters);
    hitsPerPage_->setText(qs(shown.hitsPerPage));
    charsAround_->setText(qs(shown.charsAround));
    charsBetween_->setText(qs(shown.charsBetween));
    showLineNumbers_ = checkBox("LineNosChk", "Show Line Numbers", shown.showLineNumbers);
    fontName_ = new QComboBox(this);
    fontName_->setObjectName(QStringLiteral("Combo1"));
    fontName_->setEditable(true);
    fontName_->setInsertPolicy(QComboBox::NoInsert);
    fontName_->addItems(FontNames());
    fontName_->setEditText(qs(shown.fontName));
    fontName_->setMinimumContentsLength(16);
    fontName_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    fontSize_ = new QComboBox(this);
    fontSize_->setObjectName(QStringLiteral("Combo2"));
    fontSize_->setEditable(true);
    fontSize_->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& size : previewFontSizes()) fontSize_->addItem(qs(size));
    fontSize_->setEditText(qs(shown.fontSize));
    setAccessibleNames(fontName_, QStringLiteral("Preview font"));
    setAccessibleNames(fontSize_, QStringLiteral("Preview font size"));
    fontSize_->setMinimumContentsLength(3);

    auto* form = new QFormLayout(preview);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    auto addRow = [&](const char* caption, QWidget* field) {
        auto* label = new QLabel(QString::fromLatin1(caption), preview);
        label->setBuddy(field);  // screen readers take the field's name from it
        form->addRow(label, field);
    };
    addRow("Max Number of hits per page / per file", hitsPerPage_);
    addRow("Max chars before/after found text", charsAround_);
    addRow("Max chars between found texts", charsBetween_);
    form->addRow(showLineNumbers_);
    auto* fontRow = new QHBoxLayout;
    fontRow->addWidget(fontName_, 1);
    fontRow->addWidget(fontSize_);
    auto* fontLabel = new QLabel(QStringLiteral("Preview Font:"), preview);
    fontLabel->setBuddy(fontName_);
    form->addRow(fontLabel, fontRow);

    auto* history = group("History", this);
    buildHistoryButtons(history);

    auto* ok = lvButtons_H::create(this, QStringLiteral("CmdOK"), QStringLiteral("OK"));
    auto* cancel = lvButtons_H::create(this, QStringLiteral("CmdCancel"), QStringLiteral("Cancel"));
    apply_ = lvButtons_H::create(this, QStringLiteral("CmdApply"), QStringLiteral("Apply"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] {
        apply();
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(apply_, &QPushButton::clicked, this, &frmOptions::apply);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (lvButtons_H* b : {ok, cancel, apply_}) buttons->addWidget(b);

    // The groups in two columns, or in one where the screen is narrow (a
    // small screen, a scale factor of 2); they scroll where even that is too
    // large, while the banner and the buttons stay in view.
    groups_ = {finding, replacing, preview, history};
    auto* body = new QWidget(this);
    body->setObjectName(QStringLiteral("OptionsBody"));
    grid_ = new QGridLayout(body);
    grid_->setContentsMargins(12, 12, 12, 0);
    grid_->setHorizontalSpacing(12);
    grid_->setVerticalSpacing(10);
    arrangeGroups(true);
    twoColumnWidth_ = body->minimumSizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    auto* scroll = new ScrollingBody(body, this);
    scroll->setObjectName(QStringLiteral("OptionsScroll"));
    auto* buttonBand = new QVBoxLayout;
    buttonBand->setContentsMargins(12, 12, 12, 12);
    buttonBand->addLayout(buttons);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(0);
    page->addWidget(banner(this));
    page->addWidget(scroll, 1);
    page->addLayout(buttonBand);

    // Any change from here on can be applied.
    for (QLineEdit* edit : {hitsPerPage_, charsAround_, charsBetween_, undoRuns_})
        connect(edit, &QLineEdit::textChanged, this, &frmOptions::changed);
    for (QCheckBox* box : {scanSubfolders_, skipVersionControl_, makeBackups_, clearExtractText_, showLineNumbers_})
        connect(box, &QCheckBox::toggled, this, &frmOptions::changed);
    for (QComboBox* box : {fontName_, fontSize_}) connect(box, &QComboBox::editTextChanged, this, &frmOptions::changed);
    apply_->setEnabled(false);
    resize(sizeHint());
    keepOnScreen(this);
    keepPaletteReadable();
}

void frmOptions::arrangeGroups(bool twoColumns) {
    if (twoColumns == twoColumns_ && grid_->count() > 0) return;
    twoColumns_ = twoColumns;
    for (QWidget* group : groups_) grid_->removeWidget(group);
    auto [finding, replacing, preview, history] = groups_;
    if (twoColumns) {
        grid_->addWidget(finding, 0, 0);
        grid_->addWidget(replacing, 1, 0);
        grid_->addWidget(preview, 0, 1, 2, 1);
        grid_->addWidget(history, 2, 0, 1, 2);
    } else {
        grid_->addWidget(finding, 0, 0);
        grid_->addWidget(replacing, 1, 0);
        grid_->addWidget(preview, 2, 0);
        grid_->addWidget(history, 3, 0);
    }
}

void frmOptions::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    arrangeGroups(width() >= twoColumnWidth_);
}

QLineEdit* frmOptions::numberBox(const char* name, long least) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setMaxLength(12);
    edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("0000000000")) + 12);
    // Each change shows the box's numeric value.
    connect(edit, &QLineEdit::textChanged, this, [edit, least](const QString& typed) {
        const QString value = qs(numberBoxText(typed.toStdString(), least));
        if (value != typed) edit->setText(value);
    });
    return edit;
}

QCheckBox* frmOptions::checkBox(const char* name, const char* caption, bool ticked) {
    auto* box = new QCheckBox(QString::fromLatin1(caption), this);
    box->setObjectName(QString::fromLatin1(name));
    box->setChecked(ticked);
    return box;
}

void frmOptions::buildHistoryButtons(QWidget* history) {
    struct HistoryButton {
        const char* name;
        const char* caption;
        HistoryBox box;
    };
    static constexpr HistoryButton kButtons[] = {
        {"cmdClearFindHist", "Clear Find History", HistoryBox::Find},
        {"cmdClearRepHist", "Clear Replace History", HistoryBox::Replace},
        {"cmdClearfolderHist", "Clear Folder History", HistoryBox::Folder},
    };
    auto* row = new QHBoxLayout(history);
    for (const HistoryButton& entry : kButtons) {
        auto* b = lvButtons_H::create(history, QString::fromLatin1(entry.name), QString::fromLatin1(entry.caption));
        connect(b, &QPushButton::clicked, this, [this, &entry] { clearHistory(entry.box); });
        row->addWidget(b);
    }
    row->addStretch(1);
}

void frmOptions::clearHistory(HistoryBox box) {
    if (messages_.askYesNo(clearHistoryQuestion(box))) emit historyCleared(box);
}

void frmOptions::changed() { apply_->setEnabled(true); }

OptionsFields frmOptions::fields() const {
    OptionsFields out;
    out.hitsPerPage = hitsPerPage_->text().toStdString();
    out.charsAround = charsAround_->text().toStdString();
    out.charsBetween = charsBetween_->text().toStdString();
    out.scanSubfolders = scanSubfolders_->isChecked();
    out.skipVersionControl = skipVersionControl_->isChecked();
    out.makeBackups = makeBackups_->isChecked();
    out.clearExtractText = clearExtractText_->isChecked();
    out.showLineNumbers = showLineNumbers_->isChecked();
    out.fontName = fontName_->currentText().toStdString();
    out.fontSize = fontSize_->currentText().toStdString();
    out.undoRuns = undoRuns_->text().toStdString();
    return out;
}

void frmOptions::apply() {
    OptionsFields taken = fields();
    const bool updatePreview = taken.applyTo(settings_);
    // The boxes show what is in force: a size that was not taken shows the size kept.
    if (fontName_->currentText().toStdString() != taken.fontName) fontName_->setEditText(qs(taken.fontName));
    if (const QString size = QString::number(settings_.PreviewFontSize); fontSize_->currentText() != size)
        fontSize_->setEditText(size);
    if (updatePreview) emit previewUpdateRequested();
    apply_->setEnabled(false);
}

}  // namespace vantorel::ui
