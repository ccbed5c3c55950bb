#include "results/MatchDetailsExport.h"

#include "core/AtomicFileWriter.h"
#include "results/RtfWriter.h"

namespace vantorel {

ExportResult exportMatchDetails(const StyledText& preview, std::string_view fontName, int fontPoints,
                                const std::function<std::string()>& choosePath, MessageHost& messages) {
    if (preview.empty()) {
        messages.showMessage(Message{"Nothing to Export.", kProgramTitle, MessageIcon::None, MessageKind::Notice});
        return ExportResult::NothingToExport;
    }
    const std::string path = choosePath();
    if (path.empty()) return ExportResult::Cancelled;
    return saveBytes(messages, path, bytesToSave(path, preview, fontName, fontPoints)) ? ExportResult::Written
                                                                                      : ExportResult::Failed;
}

}  // namespace vantorel
