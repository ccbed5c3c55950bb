// The options dialog on its own: validation while typing, Apply, OK and
// Cancel, the font list, and the history buttons' questions.

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
        QLineEdit* edit(const char* name) const { return child<QLineEdit>(name); }
        QAbstractButton* button(const char* name) const { return child<QAbstractButton>(name); }
        // Replaces a box's text by typing, as a user would.
        void type(const char* name, const QString& keys) const {
            QLineEdit* box = edit(name);
            box->selectAll();
            QTest::keyClicks(box, keys);
        }
        void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    };

private slots:
    void initTestCase() {
        ui::setFontNameSource([] { return QStringList{QStringLiteral("Beta Sans"), QStringLiteral("Alpha Mono")}; });
    }

    void numberBoxesShowTheirValueWhileTyping() {
        const struct {
            const char *box, *typed, *shown;
        } cases[] = {{"HppTxt", "abc", "1"}, {"BetPrevTxt", "250px", "250"}};  // letters; a number then letters
        for (const auto& c : cases) {
            Dialog d;
            QVERIFY(!d.button("CmdApply")->isEnabled());
            d.type(c.box, c.typed);
            QCOMPARE(d.edit(c.box)->text(), QString(c.shown));
            QVERIFY(d.button("CmdApply")->isEnabled());
        }
    }

    void theDialogShowsTheSettingsAndFillsTheFontsOnce() {
        int reads = 0;
        ui::setFontNameSource([&reads] {
            ++reads;
            return QStringList{QStringLiteral("Beta Sans"), QStringLiteral("Alpha Mono")};
        });
        Dialog first;
        Dialog second;
        second.settings.PreviewFontName = "Not Installed";
        second.form = std::make_unique<ui::frmOptions>(second.settings, second.messages);
        QCOMPARE(reads, 1);
        auto* fonts = second.child<QComboBox>("Combo1");
        QCOMPARE(fonts->count(), 2);
        QCOMPARE(fonts->itemText(0), QStringLiteral("Beta Sans"));  // in the system's order
        QCOMPARE(fonts->currentText(), QStringLiteral("Not Installed"));
        auto* sizes = second.child<QComboBox>("Combo2");
        QCOMPARE(sizes->count(), 16);
        QCOMPARE(sizes->itemText(15), QStringLiteral("40"));
        QCOMPARE(second.edit("HppTxt")->text(), QStringLiteral("100"));
        QVERIFY(second.child<QCheckBox>("ScanSubchk")->isChecked());
        QVERIFY(second.child<QCheckBox>("SkipVcsChk")->isChecked());
        initTestCase();  // the counter goes out of scope
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

    void cancelAfterApplyKeepsTheAppliedValues() {
        Dialog d;
        d.form->show();
        d.type("BetPrevTxt", QStringLiteral("80"));
        d.click("CmdApply");
        d.type("BetPrevTxt", QStringLiteral("5"));
        d.child<QCheckBox>("LineNosChk")->setChecked(false);
        d.click("CmdCancel");
        QCOMPARE(d.form->result(), int(QDialog::Rejected));
        QVERIFY(!d.form->isVisible());
        QCOMPARE(d.settings.CharsBetween, 80L);
        QVERIFY(d.settings.ShowLineNumbers);

        Dialog ok;
        ok.form->show();
        ok.type("EndPrevTxt", QStringLiteral("3"));
        QTest::keyClick(ok.edit("EndPrevTxt"), Qt::Key_Return);  // OK is the default button
        QCOMPARE(ok.form->result(), int(QDialog::Accepted));
        QCOMPARE(ok.settings.CharsAround, 3L);
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
