#include "ui/widgets/ChangeLineDelegate.h"

#include <QFontDatabase>
#include <QPainter>

#include "results/ChangeListing.h"
#include "ui/platform/ColourValues.h"
#include "ui/models/ChangedLinesModel.h"

namespace vantorel::ui {
namespace {

constexpr int kNumberWidth = 6;  // characters for each line number
constexpr int kTabWidth = 4;

const ChangeRow* rowOf(const QModelIndex& index) {
    return static_cast<const ChangeRow*>(index.data(ChangedLinesModel::kRowRole).value<const void*>());
}

QFont fixedFont() { return QFontDatabase::systemFont(QFontDatabase::FixedFont); }

}  // namespace

ChangeLineDelegate::Shown ChangeLineDelegate::shown(const ChangeRow& row) {
    Shown out;
    std::vector<int> at;  // the shown position of each byte boundary's character
    at.reserve(row.text.size() + 1);
    const std::string& text = row.text;
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const std::size_t length = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
        for (std::size_t k = 0; k < length && i + k < text.size(); ++k) at.push_back(static_cast<int>(out.text.size()));
        if (c == '\t') out.text += QString(kTabWidth - out.text.size() % kTabWidth, QLatin1Char(' '));
        else out.text += QString::fromUtf8(text.data() + i, static_cast<qsizetype>(std::min(length, text.size() - i)));
        i += length;
    }
    at.push_back(static_cast<int>(out.text.size()));
    auto shownAt = [&at](std::size_t byte) { return at[std::min(byte, at.size() - 1)]; };
    for (const auto& [begin, end] : row.marks) out.marks.emplace_back(shownAt(begin), shownAt(end));
    return out;
}

QSize ChangeLineDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    const QFontMetrics metrics(fixedFont());
    const ChangeRow* row = rowOf(index);
    const int characters = 2 * kNumberWidth + 4 + (row ? static_cast<int>(row->text.size()) : 0);
    return {metrics.horizontalAdvance(QLatin1Char('M')) * characters, metrics.lineSpacing() + 2};
}

ChangeLineDelegate::Colours ChangeLineDelegate::colours(ChangeRow::Kind kind, const QPalette& palette) {
    // Tints of the page, so that the lines read on a light or a dark palette.
    const QColor base = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
    const QColor red(0xff, 0x30, 0x30), green(0x20, 0xc0, 0x20), blue(0x33, 0x66, 0xcc);
    Colours c{base, {}, text, {}};
    switch (kind) {
        case ChangeRow::Kind::Hunk: c.page = mix(base, blue, 0.16); break;
        case ChangeRow::Kind::Removed: c.page = mix(base, red, 0.1), c.mark = mix(base, red, 0.35); break;
        case ChangeRow::Kind::Added: c.page = mix(base, green, 0.12), c.mark = mix(base, green, 0.4); break;
        case ChangeRow::Kind::Context: break;
    }
    c.numbers = toQColor(readableColour(toBgr(mix(text, c.page, 0.4)), toBgr(c.page)));
    if (kind == ChangeRow::Kind::Hunk) c.text = readableOn(toBgr(QColor(0x20, 0x40, 0x90)), c.page);
    return c;
}

void ChangeLineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const ChangeRow* row = rowOf(index);
    if (!row) return;
    painter->save();
    const QFont font = fixedFont();
    painter->setFont(font);
    const QFontMetrics metrics(font);
    const int charWidth = metrics.horizontalAdvance(QLatin1Char('M'));
    const Colours colours = ChangeLineDelegate::colours(row->kind, option.palette);
    const QColor page = colours.page, mark = colours.mark, text = colours.text;
    const QColor blue(0x33, 0x66, 0xcc);
    QRect rect = option.rect;
    painter->fillRect(rect, page);
    if (option.state & QStyle::State_Selected)
        painter->fillRect(rect.left(), rect.top(), 3, rect.height(), blue);
    painter->setPen(colours.numbers);
    const int baseline = rect.top() + 1 + metrics.ascent();
    int x = rect.left() + 4;
    if (row->kind == ChangeRow::Kind::Hunk) {
        painter->setPen(text);
        painter->drawText(x, baseline, QString::fromStdString(row->text));
        painter->restore();
        return;
    }
    auto number = [&](std::uint64_t line) {
        const QString text = line ? QString::number(line) : QString();
        painter->drawText(x + charWidth * kNumberWidth - metrics.horizontalAdvance(text), baseline, text);
        x += charWidth * (kNumberWidth + 1);
    };
    number(row->oldLine);
    number(row->newLine);
    painter->setPen(text);
    const char* sign = row->kind == ChangeRow::Kind::Removed ? "-" : row->kind == ChangeRow::Kind::Added ? "+" : " ";
    painter->drawText(x, baseline, QLatin1String(sign));
    x += charWidth * 2;
    const Shown line = shown(*row);
    for (const auto& [begin, end] : line.marks)
        painter->fillRect(x + metrics.horizontalAdvance(line.text.left(begin)), rect.top(),
                          metrics.horizontalAdvance(line.text.mid(begin, end - begin)), rect.height(), mark);
    painter->drawText(x, baseline, line.text);
    painter->restore();
}

}  // namespace vantorel::ui
