#pragma once
// The preview pane (RTB1): shows styled text built by the engine. Large
// combined previews are appended section by section. The page follows the
// desktop's palette; the engine's colours are shown readable on it and kept
// as they are for saving.

#include <QHash>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCharFormat>

#include "core/StyledText.h"

namespace vantorel::ui {

class PreviewPane : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit PreviewPane(QWidget* parent = nullptr);

    void setPreviewFont(const QString& family, int pointSize);
    // Replaces everything with the text.
    void showStyled(const StyledText& text);
    // Appends at the end; returns the block where the text starts.
    int appendStyled(const StyledText& text);
    // Removes every block from `block` on.
    void truncateAt(int block);
    // Scrolls so that the block is the first one shown.
    void scrollToBlock(int block);
    int firstVisibleBlockNumber() const { return firstVisibleBlock().blockNumber(); }
    // What the pane shows, as styled runs (line breaks as "\r\n"), for
    // saving it as rich or plain text.
    StyledText styledText() const;
    // Characters held, for the bound on the combined preview.
    qint64 characterCount() const { return document()->characterCount(); }

    // How the pane shows one of the engine's colours on its page.
    QColor shownColour(std::uint32_t colour) const;

protected:
    void changeEvent(QEvent* event) override;

private:
    // The text format property that keeps the engine's colour of a run.
    static constexpr int kEngineColour = QTextFormat::UserProperty + 1;
    const QTextCharFormat& format(std::uint32_t colour, bool bold);
    QHash<quint64, QTextCharFormat> formats_;
};

// "\r\n" and lone "\r" as the pane's line breaks.
QString paneText(const std::string& utf8);

}  // namespace vantorel::ui
