#include "ui/ReadableText.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include "ui/ColourValues.h"

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

}  // namespace

void keepReadable(QWidget* widget, std::function<QColor(const QPalette&)> colour, double least) {
    new ReadableTextKeeper(widget, std::move(colour), least);
}

QColor mutedText(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole page) {
    const QColor background = palette.color(page);
    return toQColor(readableColour(toBgr(mix(palette.color(text), background, 0.45)), toBgr(background)));
}

}  // namespace vantorel::ui
