// Every window as it opens at the scale factor this test runs at (CTest runs
// it at 1, 1.5 and 2 on a 1280x800 screen), in a light and a dark palette:
// it lies within the screen, each of its controls can be reached, and each
// of its texts can be read.

#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTextBlock>
#include <QTextEdit>

#include "UiTestSupport.h"
#include "appearance/ReadableColour.h"
#include "ui/platform/ColourValues.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

QString sizeText(const QRect& rect) {
    return QStringLiteral("%1x%2%3%4").arg(rect.width()).arg(rect.height()).arg(rect.x() < 0 ? "" : "+").arg(rect.x()) +
           QStringLiteral("%1%2").arg(rect.y() < 0 ? "" : "+").arg(rect.y());
}

QString describe(const QWidget* w) {
    return w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className()) : w->objectName();
}

// The palettes every window is looked at in.
void addPaletteRows() {
    QTest::addColumn<QString>("window");
    QTest::addColumn<bool>("dark");
    for (const QString& name : WindowCatalogue::names())
        for (const bool dark : {false, true})
            QTest::newRow(qPrintable(name + (dark ? " dark" : " light"))) << name << dark;
}

// The desktop's palette for the row; back to the light one at the end.
struct PaletteForRow {
    explicit PaletteForRow(bool dark) {
        if (dark) QApplication::setPalette(darkPalette());
    }
    ~PaletteForRow() { QApplication::setPalette(QApplication::style()->standardPalette()); }
};

}  // namespace

class WindowFitTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(QApplication::style()->standardPalette());
    }

    // Tab reaches every control: a control in a scrolling body is scrolled
    // into view, as Tab does, and must then be on the screen whole enough
    // to be used.
    void everyWindowFitsAndEveryControlCanBeReached_data() { addPaletteRows(); }
    void everyWindowFitsAndEveryControlCanBeReached() {
        QFETCH(QString, window);
        QFETCH(bool, dark);
        PaletteForRow palette(dark);
        WindowCatalogue catalogue;
        QWidget* shown = catalogue.open(window);
        QVERIFY(shown);
        const QRect room = shown->screen()->availableGeometry();
        QVERIFY2(room.contains(shown->frameGeometry()), qPrintable(sizeText(shown->frameGeometry()) + " on " + sizeText(room)));
        int controls = 0;
        for (QWidget* control : shown->findChildren<QWidget*>()) {
            if (control->isWindow() || !control->isVisibleTo(shown) || !(control->focusPolicy() & Qt::TabFocus) ||
                !control->isEnabled())
                continue;
            ++controls;
            for (QWidget* up = control->parentWidget(); up && up != shown; up = up->parentWidget())
                if (auto* area = qobject_cast<QScrollArea*>(up); area && area->widget() && area->widget()->isAncestorOf(control))
                    area->ensureWidgetVisible(control, 0, 0);
            const QRect seen = control->visibleRegion().boundingRect();
            const QRect onScreen(control->mapToGlobal(seen.topLeft()), seen.size());
            QVERIFY2(!seen.isEmpty() && room.contains(onScreen),
                     qPrintable(describe(control) + " at " + sizeText(onScreen) + " on " + sizeText(room)));
            if (qobject_cast<QAbstractButton*>(control))
                QVERIFY2(seen == control->rect() && control->width() >= control->minimumWidth(),
                         qPrintable(describe(control) + " shown " + sizeText(seen) + " of " + sizeText(control->rect())));
        }
        QVERIFY(controls > 0);
    }

    // Each text drawn against the page behind it, as it is on the screen.
    void everyTextCanBeRead_data() { addPaletteRows(); }
    void everyTextCanBeRead() {
        QFETCH(QString, window);
        QFETCH(bool, dark);
        PaletteForRow palette(dark);
        WindowCatalogue catalogue;
        QWidget* shown = catalogue.open(window);
        QVERIFY(shown);
        const QImage picture = shown->grab().toImage();
        const std::vector<DrawnText> texts = drawnTexts(shown);
        QVERIFY(!texts.empty());
        auto expectReadable = [](const QString& text, const QWidget* widget, const QColor& colour, const QColor& page,
                                 const QFont& font) {
            const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 72.0 / 96;
            const bool large = points >= 18 || (font.bold() && points >= 14);
            const double contrast = contrastRatio(ui::toBgr(colour), ui::toBgr(page));
            QVERIFY2(contrast >= (large ? kLeastLargeTextContrast : kLeastTextContrast) - 0.01,
                     qPrintable(QStringLiteral("\"%1\" in %2: %3 on %4, %5:1")
                                    .arg(text, describe(widget), colour.name(), page.name())
                                    .arg(contrast, 0, 'f', 2)));
        };
        // Text documents repaint marked text over the plain, clipped: their formats are looked at instead.
        auto inDocument = [](const QWidget* w) {
            return w && (qobject_cast<const QPlainTextEdit*>(w->parentWidget()) ||
                         qobject_cast<const QTextEdit*>(w->parentWidget()));
        };
        for (const DrawnText& text : texts)
            if (!inDocument(text.widget))
                expectReadable(text.text, text.widget,  text.colour, pageBehind(picture, text.rect, picture.devicePixelRatio()),
                               text.font);
        for (const QPlainTextEdit* edit : shown->findChildren<QPlainTextEdit*>()) {
            if (!edit->isVisible()) continue;
            const QPalette& palette = edit->palette();
            const QColor page = palette.color(QPalette::Base);
            for (QTextBlock block = edit->document()->begin(); block.isValid(); block = block.next())
                for (auto it = block.begin(); !it.atEnd(); ++it) {
                    const QTextCharFormat format = it.fragment().charFormat();
                    expectReadable(it.fragment().text(), edit,
                                   format.hasProperty(QTextFormat::ForegroundBrush) ? format.foreground().color()
                                                                                   : palette.color(QPalette::Text),
                                   format.hasProperty(QTextFormat::BackgroundBrush) ? format.background().color() : page,
                                   edit->font());
                }
            for (const QTextEdit::ExtraSelection& mark : edit->extraSelections())
                expectReadable(mark.cursor.selectedText(), edit,
                               mark.format.hasProperty(QTextFormat::ForegroundBrush) ? mark.format.foreground().color()
                                                                                    : palette.color(QPalette::Text),
                               mark.format.background().color(), edit->font());
            if (edit->document()->isEmpty() && !edit->placeholderText().isEmpty())
                expectReadable(edit->placeholderText(), edit, palette.color(QPalette::PlaceholderText), page, edit->font());
        }
    }
};

QTEST_MAIN(WindowFitTest)
#include "WindowFitTest.moc"
