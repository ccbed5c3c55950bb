// The window on a dark desktop: the preview's colours stay readable, and what
// it saves keeps the engine's colours.

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
};

QTEST_MAIN(PreviewPaneTest)
#include "PreviewPaneTest.moc"
