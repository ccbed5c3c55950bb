// The preview pane on a dark desktop: its colours stay readable, and what it
// saves keeps the engine's colours.

#include "UiTestSupport.h"
#include "core/ReadableColour.h"
#include "ui/ColourValues.h"

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
};

QTEST_MAIN(PreviewPaneTest)
#include "PreviewPaneTest.moc"
