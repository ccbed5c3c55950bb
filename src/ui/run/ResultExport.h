#pragma once
// "Export Match List..." (the results list as a comma-separated log) and
// "Export Match Details..." (the preview as rich or plain text).

class QWidget;

namespace vantorel {
class MessageHost;
}

namespace vantorel::ui {

class DesktopServices;
class PreviewPane;
class ResultsModel;

void exportMatchList(QWidget* owner, DesktopServices& desktop, MessageHost& messages, const ResultsModel& model);
void exportMatchDetails(QWidget* owner, DesktopServices& desktop, MessageHost& messages, const PreviewPane& pane);

}  // namespace vantorel::ui
