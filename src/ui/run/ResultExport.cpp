#include "ui/run/ResultExport.h"

#include <QDir>

#include "core/MessageHost.h"
#include "results/MatchDetailsExport.h"
#include "results/MatchListExport.h"
#include "ui/platform/FileDialog.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/models/ResultsModel.h"

namespace vantorel::ui {

void exportMatchList(QWidget* owner, DesktopServices& desktop, MessageHost& messages, const ResultsModel& model) {
    std::vector<ResultRow> rows;
    rows.reserve(static_cast<std::size_t>(model.rowCount()));
    for (int r = 0; r < model.rowCount(); ++r) rows.push_back(model.rowAt(r));  // as shown, sorted or not
    vantorel::exportMatchList(
        rows,
        [&] {
            // A name typed without an extension gets ".txt", as it always has.
            return SaveFileDialog(desktop, owner, QStringLiteral("CSV files (*.csv)|*.csv|All files (*.*)|*.*"),
                                  QStringLiteral("txt"), QDir::homePath())
                .toStdString();
        },
        messages);
}

void exportMatchDetails(QWidget* owner, DesktopServices& desktop, MessageHost& messages, const PreviewPane& pane) {
    vantorel::exportMatchDetails(
        pane.styledText(), pane.font().family().toStdString(), pane.font().pointSize(),
        [&] {
            // The name decides what is written, not the filter entry chosen.
            return SaveFileDialog(desktop, owner,
                                  QStringLiteral("Rich Text files (*.rtf)|*.rtf|Plain Text files (*.txt)|*.txt"),
                                  QStringLiteral("rtf"), QDir::homePath())
                .toStdString();
        },
        messages);
}

}  // namespace vantorel::ui
