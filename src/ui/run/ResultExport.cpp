#include "ui/run/ResultExport.h"

#include <QDir>

#include "core/MessageHost.h"
#include "results/MatchListExport.h"
#include "results/RtfWriter.h"
#include "ui/windows/ExtractForm.h"
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
    if (pane.document()->isEmpty()) {
        messages.showMessage(Message{"Nothing to Export.", kProgramTitle, MessageIcon::None, MessageKind::Notice});
        return;
    }
    const QString path = SaveFileDialog(desktop, owner, QStringLiteral("Rich Text files (*.rtf)|*.rtf|Plain Text files (*.txt)|*.txt"),
                                        QStringLiteral("rtf"), QDir::homePath());
    if (path.isEmpty()) return;
    const StyledText text = pane.styledText();
    // The name decides, not the filter entry chosen.
    const std::string bytes = savesAsRichText(path.toStdString())
                                  ? toRtf(text, pane.font().family().toStdString(), std::max(1, pane.font().pointSize()))
                                  : toPlainText(text);
    saveBytes(messages, path, bytes);
}

}  // namespace vantorel::ui
