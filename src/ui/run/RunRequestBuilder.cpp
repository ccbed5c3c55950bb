#include "ui/run/RunRequestBuilder.h"

#include <QCheckBox>
#include <atomic>
#include <memory>

#include "search/RequestFrom.h"
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
    RunRequest typed;
    typed.kind = kind;
    typed.startFolder = inputs_.box(HistoryBox::Folder)->currentText().toStdString();
    typed.filter = inputs_.box(HistoryBox::Filter)->text();
    typed.regularExpression = inputs_.option(OptionBox::RegularExpression)->isChecked();
    typed.ignoreCase = ignoreCase();
    // The box is off while regular expressions are.
    typed.wholeWords = inputs_.option(OptionBox::WholeWords)->isChecked() && !typed.regularExpression;
    typed.scanSubfolders = settings_.ScanSubfolders;
    typed.skipVersionControl = settings_.SkipVersionControl;
    typed.makeBackups = settings_.MakeBackups;
    typed.showAll = settings_.ShowAll;
    std::optional<std::vector<std::string>> marked;
    if (inputs_.markedBox()->isChecked()) marked = rows_.checkedPaths();
    RunRequest request = requestFrom(std::move(typed), std::move(jobs), std::move(marked));
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
