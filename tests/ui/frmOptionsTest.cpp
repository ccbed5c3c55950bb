// The options dialog on its own: Apply, an empty font and a size not taken,
// and the history buttons' questions.

#include <QComboBox>

#include "UiTestSupport.h"
#include "ui/platform/FontNames.h"
#include "ui/windows/frmOptions.h"

using namespace vantorel;
using namespace vantorel::test;

class frmOptionsTest : public QObject {
    Q_OBJECT

    struct Dialog {
        AppSettings settings;
        RecordingMessages messages;
        std::unique_ptr<ui::frmOptions> form;

        Dialog() { form = std::make_unique<ui::frmOptions>(settings, messages); }
        template <class T = QWidget>
        T* child(const char* name) const {
            return namedChild<T>(form.get(), name);
        }
        QAbstractButton* button(const char* name) const { return child<QAbstractButton>(name); }
        void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    };

private slots:
    void initTestCase() {
        ui::setFontNameSource([] { return QStringList{QStringLiteral("Beta Sans"), QStringLiteral("Alpha Mono")}; });
    }

    void applyTakesTheBoxesAndAnEmptyFontBecomesArial() {
        Dialog d;
        d.settings.PreviewAll = false;
        d.form = std::make_unique<ui::frmOptions>(d.settings, d.messages);
        QSignalSpy update(d.form.get(), &ui::frmOptions::previewUpdateRequested);
        d.child<QComboBox>("Combo1")->setEditText(QString());
        d.child<QComboBox>("Combo2")->setEditText(QStringLiteral("14"));
        d.child<QCheckBox>("SkipVcsChk")->setChecked(false);
        d.click("CmdApply");
        QCOMPARE(d.settings.PreviewFontName, std::string("Arial"));
        QCOMPARE(d.child<QComboBox>("Combo1")->currentText(), QStringLiteral("Arial"));
        QCOMPARE(d.settings.PreviewFontSize, 14L);
        QVERIFY(!d.settings.SkipVersionControl);
        QCOMPARE(update.count(), 1);
        QVERIFY(!d.button("CmdApply")->isEnabled());

        // A size that is not taken leaves the box showing the size in force.
        for (const char* typed : {"abc", "0", "16pt"}) {
            QComboBox* size = d.child<QComboBox>("Combo2");
            size->lineEdit()->selectAll();
            QTest::keyClicks(size->lineEdit(), QString::fromLatin1(typed));
            d.click("CmdApply");
            QCOMPARE(size->currentText(), QString::number(d.settings.PreviewFontSize));
        }
        QCOMPARE(d.settings.PreviewFontSize, 16L);
    }

    void aHistoryIsClearedOnlyOnYes() {
        const struct {
            const char *button, *question;
            HistoryBox box;
        } cases[] = {{"cmdClearFindHist", "Clear Find History - Sure?", HistoryBox::Find},
                     {"cmdClearRepHist", "Clear Replace History - Sure?", HistoryBox::Replace},
                     {"cmdClearfolderHist", "Clear Folder History - Sure?", HistoryBox::Folder}};
        for (const auto& c : cases) {
            Dialog d;
            QSignalSpy cleared(d.form.get(), &ui::frmOptions::historyCleared);
            d.messages.answers = {false, true};
            d.click(c.button);
            QCOMPARE(cleared.count(), 0);
            d.click(c.button);
            QCOMPARE(cleared.count(), 1);
            QCOMPARE(int(cleared.at(0).at(0).value<HistoryBox>()), int(c.box));
            QCOMPARE(d.messages.asked(), (std::vector<std::string>{c.question, c.question}));
            QCOMPARE(d.messages.questions[0].icon, MessageIcon::Question);
        }
    }
};

QTEST_MAIN(frmOptionsTest)
#include "frmOptionsTest.moc"
