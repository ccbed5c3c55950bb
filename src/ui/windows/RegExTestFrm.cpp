#include "ui/windows/RegExTestFrm.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFontDatabase>
#include <QFutureWatcher>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTableWidget>
#include <QTextBlock>
#include <QTimer>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>
#include <cstdio>

#include "core/FrontEndMessages.h"
#include "core/MessageHost.h"
#include "ui/platform/AccessibleName.h"
#include "ui/widgets/CommandButton.h"
#include "ui/platform/DesktopServices.h"
#include "ui/platform/FileDialog.h"
#include "ui/platform/GuiMessageHost.h"
#include "ui/widgets/PatternEdit.h"
#include "ui/widgets/PlainDocument.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/platform/ReadableText.h"
#include "ui/windows/RegExLibFrm.h"
#include "ui/platform/ScreenFit.h"

namespace vantorel::ui {
namespace {

// The largest sample file the tester takes.
constexpr std::uint64_t kMaxSampleBytes = 64u << 20;
// The longest group text shown in the table, in bytes.
constexpr std::size_t kShownGroupBytes = 400;

const QColor kMarkEven(255, 236, 139);
const QColor kMarkOdd(190, 225, 255);
const QColor kMarkChosen(255, 165, 80);
const QColor kMarkText(0, 0, 0);

QString elapsedText(std::chrono::nanoseconds elapsed) {
    const double ms = static_cast<double>(elapsed.count()) / 1e6;
    char text[32];
    if (ms < 10) std::snprintf(text, sizeof text, "%.2f ms", ms);
    else if (ms < 1000) std::snprintf(text, sizeof text, "%.0f ms", ms);
    else std::snprintf(text, sizeof text, "%.2f s", ms / 1000);
    return QString::fromLatin1(text);
}

QLabel* caption(const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

QWidget* pane(QWidget* parent, std::initializer_list<QWidget*> top, QWidget* body) {
    auto* widget = new QWidget(parent);
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 4, 0, 0);
    auto* header = new QHBoxLayout;
    for (QWidget* w : top) header->addWidget(w);
    header->addStretch();
    layout->addLayout(header);
    layout->addWidget(body);
    return widget;
}

// The body's layout, which does not work its height out from its width (as
// the wrapped reason line would have it): a scrolling body whose height
// follows its width is given its whole preferred height, not the window's.
class FixedHeightLayout : public QVBoxLayout {
public:
    using QVBoxLayout::QVBoxLayout;
    bool hasHeightForWidth() const override { return false; }
};

}  // namespace

RegExTestFrm::RegExTestFrm(LibraryState& library, const std::filesystem::path& programFolder, MessageHost* messages,
                           DesktopServices* desktop, QWidget* parent)
    : QWidget(parent, Qt::Window), library_(library), programFolder_(programFolder), injectedMessages_(messages) {
    setObjectName(QStringLiteral("RegExTestFrm"));
    setWindowTitle(QStringLiteral("Regular Expression Tester"));
    if (!messages) {
        ownMessages_ = std::make_unique<GuiMessageHost>(this);
        messages = ownMessages_.get();
    }
    if (!desktop) {
        ownDesktop_ = std::make_unique<SystemDesktop>();
        desktop = ownDesktop_.get();
    }
    messages_ = messages;
    desktop_ = desktop;
    runner_ = new TesterRunner(this);
    connect(runner_, &TesterRunner::finished, this, &RegExTestFrm::showResult);
    updateTimer_ = new QTimer(this);
    updateTimer_->setSingleShot(true);
    connect(updateTimer_, &QTimer::timeout, this, &RegExTestFrm::startWork);
    busyTimer_ = new QTimer(this);
    busyTimer_->setSingleShot(true);
    busyTimer_->setInterval(300);
    connect(busyTimer_, &QTimer::timeout, this, [this] {
        if (runner_->busy()) time_->setText(QStringLiteral("Working..."));
    });
    buildWidgets();
    resize(920, 760);
    keepOnScreen(this);
    keepPaletteReadable();
}

RegExTestFrm::~RegExTestFrm() = default;

void RegExTestFrm::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // The groups' muted texts follow a new palette.
    if (event->type() == QEvent::PaletteChange) showGroups();
}

void RegExTestFrm::buildWidgets() {
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    pattern_ = new PatternEdit(this);
    pattern_->setObjectName(QStringLiteral("FText"));
    pattern_->setFont(fixed);
    replacement_ = new QLineEdit(this);
    replacement_->setObjectName(QStringLiteral("RText"));
    replacement_->setFont(fixed);
    replacement_->setToolTip(QStringLiteral("$1, $<name>, $& insert groups and the match; \\n, \\r, \\t a line feed, "
                                            "return or tab; \\\\ a backslash"));
    reason_ = new QLabel(this);
    reason_->setObjectName(QStringLiteral("PatternProblem"));
    reason_->setWordWrap(true);
    keepReadable(reason_, [](const QPalette&) { return QColor(0xc0, 0x00, 0x00); });
    // A line kept for it, so that the boxes below do not move while typing.
    reason_->setMinimumHeight(reason_->fontMetrics().height());
    caseSensitive_ = new QCheckBox(QStringLiteral("Case Sensitive"), this);
    caseSensitive_->setObjectName(QStringLiteral("CaseChk"));
    dynamic_ = new QCheckBox(QStringLiteral("Dynamic Update"), this);
    dynamic_->setObjectName(QStringLiteral("DynUpdChk"));
    dynamic_->setChecked(true);
    QAbstractButton* library = makeCommandButton("ShowLibBtn", QStringLiteral("Library..."), this);
    QAbstractButton* update = makeCommandButton("UpdateBtn", QStringLiteral("Update"), this);
    QAbstractButton* load = makeCommandButton("LoadTxt", QStringLiteral("Load Text..."), this);
    loadButton_ = load;
    QAbstractButton* close = makeCommandButton("ClsBtn", QStringLiteral("Close"), this);

    sample_ = new QPlainTextEdit(this);
    sample_->setObjectName(QStringLiteral("InText"));
    sample_->setFont(fixed);
    sample_->setLineWrapMode(QPlainTextEdit::NoWrap);
    sample_->setPlaceholderText(QStringLiteral("Type or paste a sample text, or load one from a file"));
    matchList_ = new PreviewPane(this);
    matchList_->setObjectName(QStringLiteral("FRes"));
    matchList_->setFont(fixed);
    replaced_ = new PreviewPane(this);
    replaced_->setObjectName(QStringLiteral("RRes"));
    replaced_->setFont(fixed);
    replaced_->setLineWrapMode(QPlainTextEdit::NoWrap);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("foundlbl"));
    time_ = new QLabel(this);
    time_->setObjectName(QStringLiteral("MatchTime"));
    QFont small = time_->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    time_->setFont(small);
    keepReadable(time_, [](const QPalette& palette) {
        return mutedText(palette, QPalette::WindowText, QPalette::Window);
    });
    matchCaption_ = new QLabel(this);
    matchCaption_->setObjectName(QStringLiteral("MatchCaption"));
    groups_ = new QTableWidget(0, 4, this);
    groups_->setObjectName(QStringLiteral("GroupTable"));
    groups_->setHorizontalHeaderLabels(
        {QStringLiteral("Group"), QStringLiteral("Name"), QStringLiteral("Text"), QStringLiteral("Position")});
    groups_->verticalHeader()->hide();
    setAccessibleNames(groups_, QStringLiteral("Groups of the chosen match"));
    groups_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    groups_->setSelectionBehavior(QAbstractItemView::SelectRows);
    groups_->setWordWrap(false);
    groups_->verticalHeader()->setDefaultSectionSize(groups_->fontMetrics().height() + 6);
    groups_->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    groups_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    groups_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    groups_->horizontalHeader()->setSectionResizeMode(3, QHeaderView::ResizeToContents);

    // Each pane can shrink to a couple of lines, so that on a small screen
    // (a scale factor of 2) all of them share the window before it scrolls.
    for (QAbstractScrollArea* area : std::initializer_list<QAbstractScrollArea*>{sample_, matchList_, replaced_, groups_})
        area->setMinimumHeight(2 * area->fontMetrics().lineSpacing() + 2 * area->frameWidth() +
                               (area == groups_ ? groups_->horizontalHeader()->sizeHint().height() : 0));

    auto* inputs = new QGridLayout;
    inputs->addWidget(caption(QStringLiteral("Reg &Ex:"), pattern_, this), 0, 0);
    inputs->addWidget(pattern_, 0, 1);
    inputs->addWidget(library, 0, 2);
    inputs->addWidget(reason_, 1, 1);
    inputs->addWidget(caption(QStringLiteral("&Replace:"), replacement_, this), 2, 0);
    inputs->addWidget(replacement_, 2, 1);
    inputs->addWidget(update, 2, 2);
    auto* options = new QHBoxLayout;
    options->addWidget(caseSensitive_);
    options->addWidget(dynamic_);
    options->addStretch();
    inputs->addLayout(options, 3, 1, 1, 2);

    auto* results = new QSplitter(Qt::Horizontal, this);
    results->addWidget(pane(results, {caption(QStringLiteral("&Matches"), matchList_, this), count_, time_}, matchList_));
    results->addWidget(pane(results, {matchCaption_}, groups_));
    results->setStretchFactor(0, 3);
    results->setStretchFactor(1, 2);
    auto* bands = new QSplitter(Qt::Vertical, this);
    QWidget* samplePane = pane(bands, {caption(QStringLiteral("&Sample Text:"), sample_, this)}, sample_);
    static_cast<QHBoxLayout*>(samplePane->layout()->itemAt(0)->layout())->addWidget(load);
    bands->addWidget(samplePane);
    bands->addWidget(results);
    bands->addWidget(pane(bands, {caption(QStringLiteral("After Re&placement:"), replaced_, this)}, replaced_));
    bands->setStretchFactor(0, 3);
    bands->setStretchFactor(1, 2);
    bands->setStretchFactor(2, 2);
    bands->setChildrenCollapsible(false);

    // The boxes and the panes scroll where the screen is too small for
    // them (a scale factor of 2); Close stays in view below them.
    auto* body = new QWidget(this);
    body->setObjectName(QStringLiteral("TesterBody"));
    auto* bodyLayout = new FixedHeightLayout(body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->addLayout(inputs);
    bodyLayout->addWidget(bands, 1);
    auto* scroll = new ScrollingBody(body, this);
    scroll->setObjectName(QStringLiteral("TesterScroll"));
    auto* bottom = new QHBoxLayout;
    bottom->addStretch();
    bottom->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll, 1);
    layout->addLayout(bottom);
    clearMatchDetails();
    QWidget* order[] = {pattern_, library, replacement_, update, caseSensitive_, dynamic_,
                        load,     sample_, matchList_,   groups_, replaced_,      close};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    connect(update, &QAbstractButton::clicked, this, &RegExTestFrm::refresh);
    connect(load, &QAbstractButton::clicked, this, &RegExTestFrm::loadSample);
    connect(library, &QAbstractButton::clicked, this, &RegExTestFrm::showLibrary);
    connect(close, &QAbstractButton::clicked, this, &QWidget::close);
    const TesterSteps both{true, true};
    connect(pattern_, &QLineEdit::textChanged, this, [this, both] {
        // The mark belonged to the text as it was.
        pattern_->setErrorMark(-1);
        onEdited(both);
    });
    connect(sample_, &QPlainTextEdit::textChanged, this, [this, both] {
        sampleText_.reset();
        onEdited(both);
    });
    connect(caseSensitive_, &QCheckBox::clicked, this, [this, both] { onEdited(both); });
    connect(dynamic_, &QCheckBox::clicked, this, [this, both] { onEdited(both); });
    connect(replacement_, &QLineEdit::textChanged, this, [this] { onEdited(TesterSteps{false, true}); });
    connect(matchList_, &QPlainTextEdit::cursorPositionChanged, this, &RegExTestFrm::onListingCaretMoved);
    connect(sample_, &QPlainTextEdit::cursorPositionChanged, this, &RegExTestFrm::onSampleCaretMoved);
}

void RegExTestFrm::setSample(const QString& text) {
    crlf_ = false;
    sample_->setPlainText(text);
}

void RegExTestFrm::refresh() { schedule(TesterSteps{true, true}, false); }

void RegExTestFrm::onEdited(TesterSteps steps) {
    if (dynamic_->isChecked()) schedule(steps, sample_->document()->characterCount() > kLargeSample);
}

void RegExTestFrm::schedule(TesterSteps steps, bool pause) {
    pending_.list = pending_.list || steps.list;
    pending_.preview = pending_.preview || steps.preview;
    // Edits that come together are worked on together.
    updateTimer_->start(pause ? 200 : 0);
}

void RegExTestFrm::startWork() {
    if (!sampleText_) sampleText_ = std::make_shared<const TesterSample>(sample_->document()->toRawText(), crlf_);
    TesterRunner::Request request;
    request.sample = sampleText_;
    request.expression = TesterExpression{pattern_->text().toStdString(), replacement_->text().toStdString(),
                                          caseSensitive_->isChecked()};
    request.steps = pending_;
    pending_ = {};
    runner_->submit(std::move(request));
    busyTimer_->start();
}

void RegExTestFrm::showResult(std::shared_ptr<TesterRunner::Result> result) {
    busyTimer_->stop();
    showing_ = true;
    const TesterUpdate& update = result->update;
    if (update.list) {
        shown_ = result;
        showMatches(*update.list);
    }
    if (result->replaced) showPlainDocument(replaced_, std::move(result->replaced), true);
    if (update.problem) {
        showProblem(*update.problem);
    } else {
        reason_->clear();
        pattern_->setErrorMark(-1);
    }
    showing_ = false;
    emit updated();
}

void RegExTestFrm::showMatches(const MatchList& list) {
    count_->setText(QString::fromStdString(list.countLabel));
    matchList_->showStyled(list.listing);
    listingStarts_.clear();
    int at = 0;
    for (std::size_t i = 0; i < list.listing.size(); ++i) {
        if (i % 2 == 0 && i + 1 < list.listing.size()) listingStarts_.push_back(at);
        at += static_cast<int>(paneText(list.listing[i].text).size());
    }
    QString timing = list.countLabel.empty() ? QString() : elapsedText(list.elapsed);
    if (list.count > list.matches.size())
        timing += QStringLiteral(", the first %1 marked in the sample").arg(list.matches.size());
    time_->setText(timing);
    selected_ = list.matches.empty() ? -1 : 0;
    markMatches();
    showGroups();
}

void RegExTestFrm::showProblem(const TesterProblem& problem) {
    matchList_->showStyled({StyledRun{kRegexErrorText, kBlack, false}});
    count_->clear();
    shown_.reset();
    listingStarts_.clear();
    selected_ = -1;
    clearMatchDetails();
    reason_->setText(QString::fromStdString(problem.reason));
    pattern_->setErrorMark(problem.offset ? utf16Position(pattern_->text(), *problem.offset) : -1);
}

void RegExTestFrm::clearMatchDetails() {
    time_->clear();
    sample_->setExtraSelections({});
    groups_->setRowCount(0);
    matchCaption_->setText(QStringLiteral("Groups"));
}

void RegExTestFrm::markMatches() {
    QList<QTextEdit::ExtraSelection> marks;
    if (shown_ && shown_->update.list) {
        QTextDocument* document = sample_->document();
        const auto last = static_cast<std::uint64_t>(std::max(0, document->characterCount() - 1));
        const std::vector<TesterMatch>& matches = shown_->update.list->matches;
        marks.reserve(static_cast<qsizetype>(matches.size()));
        for (std::size_t i = 0; i < matches.size(); ++i) {
            const SampleSpan& span = matches[i].span;
            QTextEdit::ExtraSelection mark;
            mark.cursor = QTextCursor(document);
            mark.cursor.setPosition(static_cast<int>(std::min(span.position, last)));
            mark.cursor.setPosition(static_cast<int>(std::min(span.position + span.length, last)),
                                    QTextCursor::KeepAnchor);
            mark.format.setBackground(static_cast<int>(i) == selected_ ? kMarkChosen : i % 2 ? kMarkOdd : kMarkEven);
            mark.format.setForeground(kMarkText);  // the marks are light in a dark palette too
            marks.push_back(mark);
        }
    }
    sample_->setExtraSelections(marks);
}

void RegExTestFrm::selectMatch(int index) {
    if (!shown_ || !shown_->update.list || index < 0 ||
        static_cast<std::size_t>(index) >= shown_->update.list->matches.size() || index == selected_)
        return;
    selected_ = index;
    markMatches();
    showGroups();
}

QString RegExTestFrm::groupText(const SampleSpan& span) const {
    const std::string& sample = shown_->sample->utf8();
    std::size_t end = span.end;
    const bool cut = end - span.begin > kShownGroupBytes;
    if (cut) {
        end = span.begin + kShownGroupBytes;
        while (end > span.begin && (static_cast<unsigned char>(sample[end]) & 0xC0) == 0x80) --end;
    }
    QString text = QString::fromUtf8(sample.data() + span.begin, static_cast<qsizetype>(end - span.begin));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\u21B5"));
    text.replace(QLatin1Char('\n'), QStringLiteral("\u21B5"));
    text.replace(QLatin1Char('\r'), QStringLiteral("\u21B5"));
    text.replace(QLatin1Char('\t'), QStringLiteral("\u2192"));
    return cut ? text + QStringLiteral("\u2026") : text;
}

void RegExTestFrm::showGroups() {
    groups_->setRowCount(0);
    if (!shown_ || selected_ < 0) {
        matchCaption_->setText(QStringLiteral("Groups"));
        return;
    }
    const MatchList& list = *shown_->update.list;
    const TesterMatch& match = list.matches[static_cast<std::size_t>(selected_)];
    matchCaption_->setText(QStringLiteral("Match %1 of %2").arg(selected_ + 1).arg(list.count));
    groups_->setRowCount(static_cast<int>(match.groups.size()) + 1);
    auto cell = [this](int row, int column, const QString& text) {
        auto* item = new QTableWidgetItem(text);
        groups_->setItem(row, column, item);
        return item;
    };
    for (int row = 0; row <= static_cast<int>(match.groups.size()); ++row) {
        const std::optional<SampleSpan>& span = row == 0 ? std::optional<SampleSpan>(match.span)
                                                         : match.groups[static_cast<std::size_t>(row - 1)];
        cell(row, 0, QString::number(row));
        cell(row, 1, row == 0 ? QString() : QString::fromStdString(list.groupNames[static_cast<std::size_t>(row - 1)]));
        if (!span) {
            QTableWidgetItem* unset = cell(row, 2, QStringLiteral("unset"));
            QFont italic = unset->font();
            italic.setItalic(true);
            unset->setFont(italic);
            unset->setForeground(mutedText(groups_->palette(), QPalette::Text, QPalette::Base));
            cell(row, 3, QString());
            continue;
        }
        cell(row, 2, groupText(*span));
        cell(row, 3, QStringLiteral("%1-%2").arg(span->position).arg(span->position + span->length));
    }
}

void RegExTestFrm::onListingCaretMoved() {
    if (showing_ || listingStarts_.empty()) return;
    const int at = matchList_->textCursor().position();
    const auto next = std::upper_bound(listingStarts_.begin(), listingStarts_.end(), at);
    if (next == listingStarts_.begin()) return;
    const int index = static_cast<int>(next - listingStarts_.begin()) - 1;
    selectMatch(index);
    // The sample shows the match.
    const SampleSpan& span = shown_->update.list->matches[static_cast<std::size_t>(index)].span;
    QTextCursor cursor(sample_->document());
    cursor.setPosition(std::min(static_cast<int>(span.position), sample_->document()->characterCount() - 1));
    sample_->setTextCursor(cursor);
    sample_->ensureCursorVisible();
}

void RegExTestFrm::onSampleCaretMoved() {
    if (showing_ || !shown_ || !shown_->update.list) return;
    const std::vector<TesterMatch>& matches = shown_->update.list->matches;
    const auto at = static_cast<std::uint64_t>(sample_->textCursor().position());
    const auto after = std::upper_bound(matches.begin(), matches.end(), at,
                                        [](std::uint64_t p, const TesterMatch& m) { return p < m.span.position; });
    if (after == matches.begin()) return;
    const TesterMatch& match = *(after - 1);
    if (at <= match.span.position + match.span.length) selectMatch(static_cast<int>(after - matches.begin()) - 1);
}

void RegExTestFrm::loadSample() {
    const QString path = OpenFileDialog(*desktop_, this, QStringLiteral("Text Files (*.txt)|*.txt|All Files (*.*)|*.*"),
                                        QString());
    if (path.isEmpty()) return;
    // A large file is read and made into a document off the window's thread.
    struct Loaded {
        PlainDocument document;
        bool crlf = false;
        std::shared_ptr<const TesterSample> sample;
        std::string error;  // why the file was not taken
    };
    loadButton_->setEnabled(false);
    auto* watcher = new QFutureWatcher<std::shared_ptr<Loaded>>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        watcher->deleteLater();
        loadButton_->setEnabled(true);
        const std::shared_ptr<Loaded> loaded = watcher->result();
        if (!loaded->error.empty()) {
            messages_->showMessage(errorLoadingFile(loaded->error));
            return;
        }
        sample_->setExtraSelections({});
        showPlainDocument(sample_, std::move(loaded->document));
        crlf_ = loaded->crlf;
        sampleText_ = loaded->sample;
        onEdited(TesterSteps{true, true});
    });
    watcher->setFuture(QtConcurrent::run([file = path.toStdString()]() -> std::shared_ptr<Loaded> {
        auto loaded = std::make_shared<Loaded>();
        try {
            const SampleFile sample = readSampleFile(file, kMaxSampleBytes);
            loaded->document = makePlainDocument(QString::fromStdString(sample.text), true);
            loaded->crlf = sample.crlf;
            std::string text = sample.text;
            if (sample.crlf) {
                text.clear();
                for (const char c : sample.text) text += c == '\n' ? std::string_view("\r\n") : std::string_view(&c, 1);
            }
            loaded->sample = std::make_shared<const TesterSample>(std::move(text));
        } catch (const std::exception& error) {
            loaded->error = error.what();
        }
        return loaded;
    }));
}

void RegExTestFrm::showLibrary() {
    if (const auto chosen = openLibrary(this, library_, programFolder_, injectedMessages_, pattern_->text(),
                                        replacement_->text())) {
        pattern_->setText(QString::fromStdString(chosen->pattern));
        replacement_->setText(QString::fromStdString(chosen->replacement));
    }
}

}  // namespace vantorel::ui
