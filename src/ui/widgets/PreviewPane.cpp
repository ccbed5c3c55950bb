#include "ui/widgets/PreviewPane.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

#include "ui/platform/ColourValues.h"

namespace vantorel::ui {

QString paneText(const std::string& utf8) {
    QString text = QString::fromStdString(utf8);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

PreviewPane::PreviewPane(QWidget* parent) : QPlainTextEdit(parent) {
    setObjectName(QStringLiteral("RTB1"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void PreviewPane::setPreviewFont(const QString& family, int pointSize) {
    QFont font(family, pointSize > 0 ? pointSize : 10);
    font.setStyleHint(QFont::SansSerif);
    setFont(font);
    document()->setDefaultFont(font);
    setTabStopDistance(QFontMetricsF(font).horizontalAdvance(QLatin1Char(' ')) * 4);
}

QColor PreviewPane::shownColour(std::uint32_t colour) const {
    // Black is the page's own text colour; the others keep their hue, made
    // readable on the page (a dark desktop gives a dark page). The active
    // colours, also while a run has the pane disabled: the text stays.
    if (colour == kBlack) return palette().color(QPalette::Active, QPalette::Text);
    return readableOn(colour, palette().color(QPalette::Active, QPalette::Base));
}

const QTextCharFormat& PreviewPane::format(std::uint32_t colour, bool bold) {
    const quint64 key = (quint64{colour} << 1) | (bold ? 1 : 0);
    auto found = formats_.find(key);
    if (found == formats_.end()) {
        QTextCharFormat format;
        format.setForeground(shownColour(colour));
        format.setProperty(kEngineColour, QVariant::fromValue(colour));  // what is saved and exported
        format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
        found = formats_.insert(key, format);
    }
    return *found;
}

void PreviewPane::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return;
    formats_.clear();
    // The text already shown takes the new page's colours.
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            const QTextFragment piece = fragment.fragment();
            const QVariant colour = piece.charFormat().property(kEngineColour);
            if (!colour.isValid()) continue;
            QTextCharFormat recoloured;
            recoloured.setForeground(shownColour(colour.value<std::uint32_t>()));
            cursor.setPosition(piece.position());
            cursor.setPosition(piece.position() + piece.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(recoloured);
        }
    cursor.endEditBlock();
}

void PreviewPane::showStyled(const StyledText& text) {
    clear();
    appendStyled(text);
    moveCursor(QTextCursor::Start);
}

int PreviewPane::appendStyled(const StyledText& text) {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    const int start = document()->isEmpty() ? 0 : cursor.blockNumber() + (cursor.atBlockStart() ? 0 : 1);
    cursor.beginEditBlock();
    if (!document()->isEmpty() && !cursor.atBlockStart()) cursor.insertBlock();
    for (const StyledRun& run : text) cursor.insertText(paneText(run.text), format(run.colour, run.bold));
    cursor.endEditBlock();
    return start;
}

StyledText PreviewPane::styledText() const {
    StyledText out;
    auto add = [&out](const QString& text, std::uint32_t colour, bool bold) {
        if (text.isEmpty()) return;
        const std::string utf8 = text.toStdString();
        if (!out.empty() && out.back().colour == colour && out.back().bold == bold) out.back().text += utf8;
        else out.push_back(StyledRun{utf8, colour, bold});
    };
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block != document()->begin()) add(QStringLiteral("\r\n"), kBlack, false);
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            const QTextFragment piece = fragment.fragment();
            const QTextCharFormat format = piece.charFormat();
            const QVariant colour = format.property(kEngineColour);
            add(piece.text(), colour.isValid() ? colour.value<std::uint32_t>() : kBlack,
                format.fontWeight() >= QFont::Bold);
        }
    }
    return out;
}

void PreviewPane::truncateAt(int block) {
    const QTextBlock first = document()->findBlockByNumber(block);
    if (!first.isValid()) return;
    QTextCursor cursor(document());
    cursor.setPosition(first.position() > 0 ? first.position() - 1 : 0);
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

void PreviewPane::scrollToBlock(int block) {
    const QTextBlock target = document()->findBlockByNumber(block);
    if (!target.isValid()) return;
    // From the end, the cursor's block becomes the first one shown.
    moveCursor(QTextCursor::End);
    QTextCursor cursor(target);
    setTextCursor(cursor);
    ensureCursorVisible();
}

}  // namespace vantorel::ui
