// The window on a dark desktop: the preview's colours stay readable, and what
// it saves keeps the engine's colours; check marks can be seen.

#include <QStyleFactory>

#include "UiTestSupport.h"
#include "appearance/ReadableColour.h"
#include "ui/platform/ColourValues.h"
#include "ui/widgets/ReadableIndicatorStyle.h"

using namespace vantorel;

class PreviewPaneTest : public QObject {
    Q_OBJECT
private slots:
    void darkPalettesKeepTheColoursReadable() {
        ui::PreviewPane pane;
        const StyledText text{{"/data/a.txt  (1 Found)\r\n", kGrey, true}, {"00000001 | ", kBlue, true},
                              {"a ", kBlack, false}, {"colour", kRed, true}};
        pane.showStyled(text);
        QPalette dark = pane.palette();
        dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
        dark.setColor(QPalette::Text, QColor(0xdd, 0xdd, 0xdd));
        pane.setPalette(dark);  // text already shown takes the new colours
        pane.appendStyled({{"more", kBlue, true}});
        for (QTextBlock block = pane.document()->begin(); block.isValid(); block = block.next())
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QColor shown = it.fragment().charFormat().foreground().color();
                QVERIFY2(contrastRatio(ui::toBgr(shown), 0x1E1E1E) >= kLeastTextContrast,
                         qPrintable(it.fragment().text() + QLatin1Char(' ') + shown.name()));
            }
        // Saved as the engine made it.
        QCOMPARE(pane.styledText(),
                 (StyledText{{"/data/a.txt  (1 Found)", kGrey, true}, {"\r\n", kBlack, false},
                             {"00000001 | ", kBlue, true}, {"a ", kBlack, false}, {"colour", kRed, true},
                             {"\r\n", kBlack, false}, {"more", kBlue, true}}));
    }

    // A run disables the pane while it appends the files' sections.
    void textAddedWhileThePaneIsDisabledKeepsThePagesColours() {
        ui::PreviewPane pane;
        pane.setEnabled(false);
        pane.showStyled({{"context", kBlack, false}});
        pane.setEnabled(true);
        QCOMPARE(pane.document()->begin().begin().fragment().charFormat().foreground().color(),
                 pane.palette().color(QPalette::Active, QPalette::Text));
    }

    // Fusion outlines a check box in a shade darker than the window: on a dark
    // page the frame is lost, and with it every check box of the window.
    void checkBoxesStandOutOnADarkPage() {
        ui::ReadableIndicatorStyle style(QStyleFactory::create(QStringLiteral("Fusion")));
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2b));
        dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
        dark.setColor(QPalette::Text, QColor(0xe6, 0xe6, 0xe6));
        dark.setColor(QPalette::WindowText, QColor(0xe6, 0xe6, 0xe6));
        QCheckBox box(QStringLiteral("Regular Expression"));
        box.setStyle(&style);
        box.setPalette(dark);
        box.resize(box.sizeHint());
        const QImage image = box.grab().toImage();
        QStyleOptionButton option;
        option.initFrom(&box);
        const QRect indicator = style.subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box);
        double best = 1;
        for (int x = indicator.left(); x <= indicator.right(); ++x)
            for (int y = indicator.top(); y <= indicator.bottom(); ++y)
                best = std::max(best, contrastRatio(ui::toBgr(image.pixelColor(x, y)), 0x1E1E1E));
        QVERIFY2(best >= 3, qPrintable(QString::number(best)));
    }
};

QTEST_MAIN(PreviewPaneTest)
#include "PreviewPaneTest.moc"
