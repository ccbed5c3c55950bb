#include "ui/widgets/PreviewFrame.h"

#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include "results/PathCompaction.h"
#include "ui/platform/AccessibleName.h"
#include "ui/widgets/PreviewPane.h"

namespace vantorel::ui {

PreviewFrame::PreviewFrame(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("PrevFrame"));
    label_ = new QLabel(this);
    label_->setObjectName(QStringLiteral("PreviewLbl"));
    label_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    label_->setMinimumWidth(0);
    back_ = new QToolButton(this);
    back_->setObjectName(QStringLiteral("LineBackButton"));
    back_->setArrowType(Qt::LeftArrow);
    back_->setToolTip(tr("Previous hits"));
    back_->setEnabled(false);
    forward_ = new QToolButton(this);
    forward_->setObjectName(QStringLiteral("LineFwdButton"));
    forward_->setArrowType(Qt::RightArrow);
    forward_->setToolTip(tr("Next hits"));
    forward_->setEnabled(false);
    pane_ = new PreviewPane(this);
    setAccessibleNames(pane_, QStringLiteral("Matches preview"));
    setAccessibleNames(back_, tr("Previous hits"));
    setAccessibleNames(forward_, tr("Next hits"));

    auto* heading = new QHBoxLayout;
    heading->setContentsMargins(0, 0, 0, 0);
    heading->addWidget(label_, 1);
    heading->addWidget(back_);
    heading->addWidget(forward_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 0, 4, 0);
    layout->setSpacing(2);
    layout->addLayout(heading);
    layout->addWidget(pane_, 1);

    connect(back_, &QToolButton::clicked, this, [this] { emit pageRequested(-1); });
    connect(forward_, &QToolButton::clicked, this, [this] { emit pageRequested(+1); });
}

void PreviewFrame::reset() {
    ++generation_;
    request_.reset();
    onDemandBlock_ = -1;
    hasCaption_ = false;
    label_->clear();
    label_->setToolTip({});
    back_->setEnabled(false);
    forward_->setEnabled(false);
}

void PreviewFrame::showIntroduction(const StyledText& text) {
    reset();
    pane_->showStyled(text);
    content_ = Content::Introduction;
}

void PreviewFrame::startRun(bool combined) {
    reset();
    pane_->clear();
    content_ = combined ? Content::Combined : Content::Nothing;
}

void PreviewFrame::showStaleNotice() {
    reset();
    pane_->showStyled(MatchPreview::staleNotice());
    content_ = Content::StaleNotice;
}

void PreviewFrame::clearAll() {
    reset();
    pane_->clear();
    content_ = Content::Nothing;
}

void PreviewFrame::showFilePage(const std::string& path, const std::string& pattern, bool ignoreCase,
                                const PreviewSettings& settings, std::uint64_t first) {
    build(Request{path, pattern, ignoreCase, settings, std::max<std::uint64_t>(1, first)});
}

void PreviewFrame::turnPage(int direction) {
    if (!request_) return;
    Request next = *request_;
    const auto hits = static_cast<std::uint64_t>(std::max(1L, next.settings.hitsPerPage));
    if (direction > 0) next.first += hits;
    else next.first = next.first > hits ? next.first - hits : 1;
    build(next);
}

void PreviewFrame::build(const Request& request) {
    const std::uint64_t generation = ++generation_;
    const auto hits = static_cast<std::uint64_t>(std::max(1L, request.settings.hitsPerPage));
    auto* watcher = new QFutureWatcher<std::optional<PreviewPage>>(this);
    connect(watcher, &QFutureWatcher<std::optional<PreviewPage>>::finished, this, [this, watcher, generation, request] {
        watcher->deleteLater();
        if (generation != generation_) return;  // a newer request came in
        const std::optional<PreviewPage> page = watcher->result();
        if (!page) {
            emit unableToShow();
            return;
        }
        request_ = request;
        onDemandBlock_ = -1;
        pane_->showStyled(page->text);
        content_ = Content::FilePage;
        back_->setEnabled(page->backEnabled);
        forward_->setEnabled(page->forwardEnabled);
        hasCaption_ = true;
        captionFirst_ = page->first;
        captionLast_ = page->lastShown;
        captionPath_ = MatchPreview::displayPath(request.path);
        updateCaption();
        emit shown();
    });
    watcher->setFuture(QtConcurrent::run([request, hits] {
        return MatchPreview(request.settings)
            .pageOfFile(request.path, request.pattern, request.ignoreCase, request.first, request.first + hits - 1);
    }));
}

void PreviewFrame::showSectionOnDemand(const std::string& path, const std::string& pattern, bool ignoreCase,
                                       const PreviewSettings& settings) {
    const std::uint64_t generation = ++generation_;
    auto* watcher = new QFutureWatcher<std::optional<StyledText>>(this);
    connect(watcher, &QFutureWatcher<std::optional<StyledText>>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != generation_) return;
        const std::optional<StyledText> section = watcher->result();
        if (!section) {
            emit unableToShow();
            return;
        }
        if (onDemandBlock_ >= 0) pane_->truncateAt(onDemandBlock_);
        onDemandBlock_ = pane_->appendStyled(*section);
        pane_->scrollToBlock(onDemandBlock_);
        emit shown();
    });
    watcher->setFuture(QtConcurrent::run([path, pattern, ignoreCase, settings] {
        return MatchPreview(settings).sectionOfFile(path, pattern, ignoreCase);
    }));
}

void PreviewFrame::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    updateCaption();
}

void PreviewFrame::updateCaption() {
    if (!hasCaption_) return;
    const QString full = QString::fromStdString(MatchPreview::caption(captionFirst_, captionLast_, captionPath_));
    const QFontMetrics metrics = label_->fontMetrics();
    const int available = label_->contentsRect().width();
    QString shown = full;
    if (metrics.horizontalAdvance(full) > available) {
        // The characters that fit, estimated from the average character's
        // width with a small margin, then trimmed until the line fits.
        const QString prefix = QString::fromStdString(MatchPreview::caption(captionFirst_, captionLast_, ""));
        const int room = available - metrics.horizontalAdvance(prefix);
        long chars = static_cast<long>(room / std::max(1, metrics.averageCharWidth()) * 0.96);
        do {
            shown = QString::fromStdString(MatchPreview::caption(
                captionFirst_, captionLast_, compactPath(captionPath_, static_cast<std::size_t>(std::max(0L, chars)))));
        } while (metrics.horizontalAdvance(shown) > available && --chars >= 0);
    }
    label_->setText(shown);
    label_->setToolTip(QString::fromStdString(captionPath_));
}

}  // namespace vantorel::ui
