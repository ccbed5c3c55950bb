#include "ui/run/RunRequestBuilder.h"

#include <QCheckBox>
#include <QDir>
#include <atomic>
#include <memory>

#include "ui/widgets/HistoryCombo.h"
#include "ui/widgets/InputFrame.h"
#include "ui/models/ResultsModel.h"

namespace vantorel::ui {
namespace {

// Sections built during a run at most (the shown ones and a margin for the
// files that workers finish out of order).
constexpr long kSectionsBuilt = 20'000;

}  // namespace

JobSource RunRequestBuilder::typedPair() const {
    return JobSource::typedPair(inputs_.box(HistoryBox::Find)->text(), inputs_.box(HistoryBox::Replace)->text());
}

PreviewSettings RunRequestBuilder::previewSettings() const {
    return PreviewSettings{settings_.HitsPerPage, settings_.CharsAround, settings_.CharsBetween,
                           settings_.ShowLineNumbers};
}

bool RunRequestBuilder::ignoreCase() const { return !inputs_.option(OptionBox::MatchCase)->isChecked(); }

RunRequest RunRequestBuilder::build(RunKind kind, JobSource jobs) const {
    RunRequest request;
    request.kind = kind;
    request.jobs = std::move(jobs.jobs);
    request.batch = jobs.batch;
    QString folder = inputs_.box(HistoryBox::Folder)->currentText();
    if (!folder.isEmpty() && QDir::isRelativePath(folder)) folder = QDir::current().absoluteFilePath(folder);
    request.startFolder = folder.toStdString();
    request.filter = inputs_.box(HistoryBox::Filter)->text();
    request.regularExpression = inputs_.option(OptionBox::RegularExpression)->isChecked();
    request.ignoreCase = ignoreCase();
    request.wholeWords = inputs_.option(OptionBox::WholeWords)->isChecked() && !request.regularExpression;
    request.scanSubfolders = settings_.ScanSubfolders;
    request.skipVersionControl = settings_.SkipVersionControl;
    request.makeBackups = settings_.MakeBackups;
    request.showAll = settings_.ShowAll;
    request.markedOnly = inputs_.markedBox()->isChecked();
    if (request.markedOnly) request.markedFiles = rows_.checkedPaths();
    if (settings_.PreviewAll) {
        const MatchPreview preview(previewSettings());
        auto built = std::make_shared<std::atomic<long>>(0);
        request.previewSection = [preview, built](const std::string& path, std::string_view text,
                                                  TextEncoding encoding, const CompiledPattern& pattern) {
            if (built->fetch_add(1) >= kSectionsBuilt) return StyledText{};
            return preview.section(path, text, encoding, pattern);
        };
    }
    return request;
}

}  // namespace vantorel::ui
