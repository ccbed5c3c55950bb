// Batch mode of the main window: a job queued from the batch window, runs
// taking its steps, "Cancel Queue", and a job whose entry is missing.

#include <QComboBox>

#include "UiTestSupport.h"
#include "ui/windows/BatchFrm.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

struct BatchFormFixture : FormFixture {
    TempTree tree;

    explicit BatchFormFixture(const std::string& jobs) {
        tree.write("program/RegEx.txt",
                   "tags\t<[^>]+>\t\r\nspaces\t {2,}\t \r\nbritish\tcolour\tcolor\r\nshout\tred\tRED\r\nbad\t(open\t\r\n");
        tree.write("program/BatchJobs.txt", jobs);
        tree.write("site/a.html", "<p>The  colour   is <b>red</b></p>\n");
        tree.write("site/b.html", "<i>colour</i>\n");
        programFolder = tree.path("program");
        restart();
        setInputs(QString::fromStdString(tree.path("site")), "*.html", "typed", "kept");
        child<QCheckBox>("RegExpFind")->setChecked(true);
    }
    // Opens Tools > Batch Commands, chooses the job at `position` and uses
    // it; then closes the window if it is still open.
    void useJob(int position) {
        whenModal([position](QWidget* modal) {
            QVERIFY(qobject_cast<ui::BatchFrm*>(modal));
            for (int i = 0; i <= position; ++i)
                QTest::keyClick(modal->findChild<QComboBox*>("BatchJobsCombo"), Qt::Key_Down);
            QTest::mouseClick(modal->findChild<QAbstractButton*>("usebtn"), Qt::LeftButton);
            if (modal->isVisible()) QTest::mouseClick(modal->findChild<QAbstractButton*>("CloseBtn"), Qt::LeftButton);
        });
        action("mBatch")->trigger();
    }
    bool inBatchMode() const { return !child<QLabel>("BatchLbl")->isHidden(); }
    // Batch mode as the user sees it: the label, the cancel button, the locked boxes, the library button.
    void expectBatchMode(bool on, bool libraryButton) const {
        QCOMPARE(inBatchMode(), on);
        QCOMPARE(button("BatchCancelBtn")->isHidden(), !on);
        QCOMPARE(combo("FindText")->isEnabled(), !on);
        QCOMPARE(combo("RepText")->isEnabled(), !on);
        QCOMPARE(button("ShowLibBtn")->isHidden(), !libraryButton);
    }
};

}  // namespace

class RepFormBatchTest : public QObject {
    Q_OBJECT

private slots:
    void aQueuedJobRunsItsStepsUntilTheQueueIsCancelled() {
        BatchFormFixture f("Tidy\ttags\tspaces\tbritish\r\nLoud\tshout\r\n");
        f.expectBatchMode(false, true);
        f.useJob(0);
        QCOMPARE(f.child<QLabel>("BatchLbl")->text(), QString("Batch Commands Queued (Tidy)"));
        f.expectBatchMode(true, false);

        // One run, three steps, each file written once after one confirmation.
        f.messages.answers = {true, true};
        QVERIFY(f.runBy("RepBtn"));
        QCOMPARE(f.tree.read("site/a.html"), std::string("The color is red\n"));
        QCOMPARE(f.messages.questions.size(), std::size_t{2});  // replacing with nothing, and the count
        QVERIFY(f.form->previewPattern().empty());
        // The boxes' texts were not used, so they are not remembered; the folder and filter are.
        QCOMPARE(f.combo("FindText")->findText("typed"), -1);
        QCOMPARE(f.combo("RepText")->findText("kept"), -1);
        QVERIFY(f.combo("FilterCombo")->findText("*.html") >= 0);
        // The library button is back after the run; the boxes stay locked.
        f.expectBatchMode(true, true);

        // Another job takes the queue's place.
        f.useJob(1);
        QCOMPARE(f.child<QLabel>("BatchLbl")->text(), QString("Batch Commands Queued (Loud)"));
        f.messages.answers = {true};
        QVERIFY(f.runBy("RepBtn"));
        QCOMPARE(f.tree.read("site/a.html"), std::string("The color is RED\n"));

        QTest::mouseClick(f.button("BatchCancelBtn"), Qt::LeftButton);
        f.expectBatchMode(false, true);
        f.combo("FindText")->setEditText("colou?r");
        QVERIFY(f.runBy("FindBtn"));
        QCOMPARE(f.status(), QString("2 files processed, 2 occurences found in 2 file(s)"));
        QCOMPARE(f.form->previewPattern(), std::string("colou?r"));
    }

    void aJobWithAMissingEntryIsNotQueuedNorOneWithAnInvalidStepRun() {
        BatchFormFixture f("Broken\tspaces\tTags\r\nInvalid\tspaces\tbad\r\n");
        f.useJob(0);  // refused by the batch window: not queued
        f.expectBatchMode(false, true);

        // Every step is checked before any file is touched; the status says which one failed.
        f.useJob(1);
        f.messages.messages.clear();
        QVERIFY(f.runBy("RepBtn"));
        QCOMPARE(f.messages.texts(), std::vector<std::string>{"Regular Expression is invalid - please check syntax."});
        QCOMPARE(f.status(), QString("Step 2: At character 1: Missing ')' to close this group"));
        QVERIFY(f.messages.questions.empty());
        QCOMPARE(f.tree.read("site/a.html"), std::string("<p>The  colour   is <b>red</b></p>\n"));
        f.expectBatchMode(true, false);  // a refused run leaves the library button hidden
    }
};

QTEST_MAIN(RepFormBatchTest)
#include "RepFormBatchTest.moc"
