#include "ui/platform/ReadableText.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include "ui/platform/ColourValues.h"

namespace vantorel::ui {
namespace {

class ReadableTextKeeper : public QObject {
public:
    ReadableTextKeeper(QWidget* widget, std::function<QColor(const QPalette&)> colour, double least)
        : QObject(widget), widget_(widget), colour_(std::move(colour)), least_(least) {
        widget->installEventFilter(this);
        apply();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::PaletteChange:
            case QEvent::ApplicationPaletteChange:
            case QEvent::ParentChange: apply(); break;
            default: break;
        }
        return false;
    }

private:
    void apply() {
        if (applying_) return;
        applying_ = true;
        // The palette the widget would have without its own colour.
        const QWidget* parent = widget_->parentWidget();
        const QPalette inherited = parent ? parent->palette() : QApplication::palette(widget_);
        const QPalette::ColorRole role = widget_->foregroundRole();
        QPalette own = widget_->palette();
        bool changed = false;
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
            QPalette from = inherited;
            from.setCurrentColorGroup(group);
            const QColor page = from.color(group, widget_->backgroundRole());
            const QColor shown = toQColor(readableColour(toBgr(colour_(from)), toBgr(page), least_));
            if (own.color(group, role) != shown) {
                own.setColor(group, role, shown);
                changed = true;
            }
        }
        if (changed) widget_->setPalette(own);
        applying_ = false;
    }

    QWidget* widget_;
    std::function<QColor(const QPalette&)> colour_;
    double least_;
    bool applying_ = false;
};

class PaletteKeeper : public QObject {
public:
    PaletteKeeper() : QObject(qApp) {
        qApp->installEventFilter(this);
        apply();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) apply();
        return false;
    }

private:
    void apply() {
        if (applying_) return;
        const QPalette readable = readablePalette(QApplication::palette());
        if (readable == QApplication::palette()) return;
        applying_ = true;
        QApplication::setPalette(readable);
        applying_ = false;
    }
    bool applying_ = false;
};

}  // namespace

QPalette readablePalette(QPalette palette) {
    struct Pair {
        QPalette::ColorRole text, page;
        bool movePage;  // the selection: its colour gives way, its text stays
    };
    static constexpr Pair kPairs[] = {
        {QPalette::WindowText, QPalette::Window, false},     {QPalette::Text, QPalette::Base, false},
        {QPalette::ButtonText, QPalette::Button, false},     {QPalette::ToolTipText, QPalette::ToolTipBase, false},
        {QPalette::PlaceholderText, QPalette::Base, false},  {QPalette::Link, QPalette::Base, false},
        {QPalette::LinkVisited, QPalette::Base, false},      {QPalette::HighlightedText, QPalette::Highlight, true},
    };
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        for (const Pair& pair : kPairs) {
            const QColor page = palette.color(group, pair.page);
            // A translucent text (a placeholder) as it shows on its page.
            QColor text = palette.color(group, pair.text);
            if (text.alpha() < 255) text = mix(page, QColor(text.rgb()), text.alphaF());
            const std::uint32_t from = toBgr(pair.movePage ? page : text), against = toBgr(pair.movePage ? text : page);
            // Styles draw a selection in shades of its colour: it keeps a little more than the least.
            const double least = pair.movePage ? kLeastTextContrast + 0.4 : kLeastTextContrast;
            if (const std::uint32_t moved = readableColour(from, against, least); moved != from)
                palette.setColor(group, pair.movePage ? pair.page : pair.text, toQColor(moved));
        }
    return palette;
}

void keepPaletteReadable() {
    static QPointer<QObject> keeper;
    if (!keeper) keeper = new PaletteKeeper;
}

void keepReadable(QWidget* widget, std::function<QColor(const QPalette&)> colour, double least) {
    new ReadableTextKeeper(widget, std::move(colour), least);
}

QColor mutedText(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole page) {
    const QColor background = palette.color(page);
    return toQColor(readableColour(toBgr(mix(palette.color(text), background, 0.45)), toBgr(background)));
}

}  // namespace vantorel::ui
