// Every window as it opens at the scale factor this test runs at (CTest runs
// it at 1, 1.5 and 2 on a 1280x800 screen), in a light and a dark palette:
// it lies within the screen, each of its controls can be reached, and each
// of its texts can be read. The main window's narrow and low shapes, its
// geometry across scale factors, and the message boxes' titles.

#include <QGridLayout>
#include <QMessageBox>
#include <QProcess>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTextBlock>
#include <QTextEdit>

#include "UiTestSupport.h"
#include "appearance/ReadableColour.h"
#include "ui/widgets/ColourProgressBar.h"
#include "ui/platform/ColourValues.h"
#include "ui/platform/GuiMessageHost.h"
#include "ui/platform/ScreenFit.h"

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

    // The bar's figure over either of its colours, in both passes.
    void theProgressFigureCanBeRead() {
        for (const PassKind pass : {PassKind::Searching, PassKind::Writing}) {
            ui::ColourProgressBar bar;
            bar.setProgress(50, pass);
            for (const QColor& part : {bar.fillColour(), bar.backColour()})
                QVERIFY(contrastRatio(ui::toBgr(ui::ColourProgressBar::figureColourOn(part)), ui::toBgr(part)) >=
                        kLeastTextContrast);
        }
    }

    // Narrowed as far as it goes: the version and the logo give way before
    // the progress bar, which stays between Stop and Options.
    void theProgressBarGivesWayLast() {
        FormFixture f;
        f.showActive();
        QWidget* bar = f.child("ProgressBar");
        const int preferred = bar->sizeHint().width();
        QVERIFY(f.form->minimumWidth() <= f.form->screen()->availableGeometry().width());
        for (int width = f.form->width() + 300; width >= f.form->minimumWidth(); width -= 7) {
            f.form->resize(width, f.form->height());
            QTRY_COMPARE(f.child("MidFrame")->width(), f.form->centralWidget()->width());
            QVERIFY2(bar->isVisible() && bar->width() >= bar->minimumWidth() &&
                         bar->width() >= bar->fontMetrics().horizontalAdvance("100%"),
                     qPrintable(QString("%1 wide at %2").arg(bar->width()).arg(width)));
            QVERIFY(bar->geometry().left() > f.button("StopBtn")->geometry().right() &&
                    bar->geometry().right() < f.button("OptBtn")->geometry().left());
            if (bar->width() < preferred)
                QVERIFY2(!f.child("VLabel")->isVisible() && !f.child("Picture2")->isVisible(),
                         qPrintable(QString("the bar gave way first at %1").arg(width)));
        }
    }

    // On the screen as it is, the preview shows more than a line or two.
    void thePreviewKeepsAUsableShare() {
        FormFixture f;
        f.showActive();
        auto* pane = f.pane();
        const int lines = pane->viewport()->height() / pane->fontMetrics().lineSpacing();
        QVERIFY2(lines >= 3, qPrintable(QString("%1 lines in %2").arg(lines).arg(sizeText(pane->geometry()))));
    }

    // A window saved filling the screen at another scale factor fills it here too.
    void aWindowSavedAtAnotherScaleCoversTheSameScreen() {
        const QByteArray saveTo = qgetenv("VANTOREL_SAVE_WINDOW_TO");
        if (!saveTo.isEmpty()) {  // the other scale factor's run, started below
            RecordingMessages messages;
            ui::RepFormOptions options;
            options.messages = &messages;
            options.settingsFile = saveTo.toStdString();
            ui::RepForm form(options);
            form.findChild<QTimer*>("SplashTimer")->stop();
            form.show();
            QVERIFY(QTest::qWaitForWindowExposed(&form));
            const QRect room = form.screen()->availableGeometry();
            form.resize(room.size() - (form.frameGeometry().size() - form.size()));
            form.move(room.topLeft());
            form.close();
            return;
        }
        QTemporaryDir config;
        const QString file = config.filePath("settings.reg");
        const double here = QGuiApplication::primaryScreen()->devicePixelRatio();
        QProcess other;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_SCALE_FACTOR", here == 2 ? "1" : "2");
        environment.insert("VANTOREL_SAVE_WINDOW_TO", file);
        other.setProcessEnvironment(environment);
        other.start(QCoreApplication::applicationFilePath(), {"aWindowSavedAtAnotherScaleCoversTheSameScreen"});
        QVERIFY(other.waitForFinished(60000));
        QVERIFY2(other.exitCode() == 0, other.readAllStandardOutput().constData());

        RecordingMessages messages;
        ui::RepFormOptions options;
        options.messages = &messages;
        options.settingsFile = file.toStdString();
        ui::RepForm form(options);
        form.findChild<QTimer*>("SplashTimer")->stop();
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        const QRect room = form.screen()->availableGeometry();
        QVERIFY2(room.contains(form.frameGeometry()) && form.frameGeometry().width() >= room.width() * 9 / 10 &&
                     form.frameGeometry().height() >= room.height() * 9 / 10,
                 qPrintable(sizeText(form.frameGeometry()) + " on " + sizeText(room)));
    }

    // The window system's title bar holds the title, the window's icon and
    // its buttons: a box with a short text is made wide enough for them.
    void messageBoxesShowTheirTitle_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("short text") << "Vantorel" << "Done.";
        QTest::newRow("question") << "Vantorel" << "Sure?";
        QTest::newRow("long title") << "Undo Last Replace" << "No.";
    }
    void messageBoxesShowTheirTitle() {
        QFETCH(QString, title);
        QFETCH(QString, text);
        QWidget owner;
        ui::GuiMessageHost host(&owner);
        int width = 0, room = 0;
        whenModal([&](QWidget* modal) {
            auto* box = qobject_cast<QMessageBox*>(modal);
            QVERIFY(box);
            QFont bold = box->font();
            bold.setBold(true);
            const QStyle* style = box->style();
            room = QFontMetrics(bold).horizontalAdvance(title) +
                   4 * style->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, box) +
                   2 * style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, box);
            width = box->width();
            box->reject();
        });
        if (text.endsWith('?')) host.askYesNo(Message{text.toStdString(), title.toStdString()});
        else host.showMessage(Message{text.toStdString(), title.toStdString()});
        QVERIFY2(width >= room, qPrintable(QString("%1 wide, the title needs %2").arg(width).arg(room)));
    }
};

QTEST_MAIN(WindowFitTest)
#include "WindowFitTest.moc"
