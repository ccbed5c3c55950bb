#include "ui/ResultExport.h"

#include <QDir>

#include "core/MessageHost.h"
#include "core/AtomicFileWriter.h"
#include "results/ResultRow.h"
#include "results/RtfWriter.h"
#include "ui/ExtractForm.h"
#include "ui/FileDialog.h"
#include "ui/PreviewPane.h"
#include "ui/ResultsModel.h"

namespace vantorel::ui {
namespace {

void tell(MessageHost& messages, const std::string& text, MessageIcon icon = MessageIcon::None) {
    messages.showMessage(Message{text, kProgramTitle, icon, MessageKind::Notice});
}

}  // namespace

void exportMatchList(QWidget* owner, DesktopServices& desktop, MessageHost& messages, const ResultsModel& model) {
    if (model.rowCount() == 0) {
        tell(messages, "No Results to Export.");
        return;
    }
    try {
        // A name typed without an extension gets ".txt", as it always has.
        const QString path = SaveFileDialog(desktop, owner, QStringLiteral("CSV files (*.csv)|*.csv|All files (*.*)|*.*"),
                                            QStringLiteral("txt"), QDir::homePath());
        if (path.isEmpty()) return;
        std::vector<ResultRow> rows;
        rows.reserve(static_cast<std::size_t>(model.rowCount()));
        for (int r = 0; r < model.rowCount(); ++r) rows.push_back(model.rowAt(r));  // as shown, sorted or not
        AtomicFileWriter writer(path.toStdString());
        writer.write(matchListLog(rows));
        writer.commit();
        tell(messages, path.toStdString() + " log file created.", MessageIcon::Information);
    } catch (const std::exception&) {
        tell(messages, "Error exporting log file!");
    }
}

void exportMatchDetails(QWidget* owner, DesktopServices& desktop, MessageHost& messages, const PreviewPane& pane) {
    if (pane.document()->isEmpty()) {
        tell(messages, "Nothing to Export.");
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
