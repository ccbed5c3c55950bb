// A Find, a Replace and an Extract driven through the window's controls, with
// every message and question answered through the message seam.

#include <QDialog>
#include <QDir>
#include <QMenu>

#include <csignal>
#include <filesystem>

#include "UiTestSupport.h"
#include "core/TemporaryFiles.h"
#include "ui/platform/TerminationSignals.h"
#include "ui/widgets/ColourProgressBar.h"
#include "ui/models/ResultsView.h"

using namespace vantorel;
using namespace vantorel::test;

class RepFormRunTest : public QObject {
    Q_OBJECT

    // b.txt and docs/a.txt hold "colour" 1 and 3 times (any case); c.txt none;
    // d.log is not a .txt file.
    static void writeTree(const TempTree& tree) {
        tree.write("b.txt", "Colour\n");
        tree.write("c.txt", "nothing here\n");
        tree.write("d.log", "colour\n");
        tree.write("docs/a.txt", "colour one\ncolour two colour\n");
    }
    struct TreeForm : FormFixture {
        TempTree tree;
        TreeForm() { writeTree(tree); }
    };

private slots:
    void findListsFilesAndShowsTheirSections() {
        TreeForm f;
        QVERIFY(f.run(root(f.tree), "*.txt", "colour"));
        QCOMPARE(f.status(), QString("3 files processed, 4 occurences found in 2 file(s)"));
        QVERIFY(f.messages.messages.empty());
        QCOMPARE(f.column(0), QStringList({"b.txt", "a.txt"}));
        QCOMPARE(f.column(1), QStringList({root(f.tree) + "/", root(f.tree) + "/docs/"}));
        QCOMPARE(f.column(2), QStringList({"1", "3"}));
        QCOMPARE(f.column(3), QStringList({"7", "29"}));
        QVERIFY(f.rows().index(0, 0).data(Qt::FontRole).value<QFont>().bold());
        QCOMPARE(f.rows().index(0, 2).data(Qt::ForegroundRole).value<QColor>(), QColor(0, 0, 255));

        // The combined preview: each file's section under its header, and each
        // row leads to its own section.
        const QString text = f.pane()->toPlainText();
        QVERIFY2(text.contains(root(f.tree) + "/b.txt  (1 Found)\n00000001 | Colour"), qPrintable(text));
        QVERIFY(text.contains(root(f.tree) + "/docs/a.txt  (3 Found)\n00000001 | colour one\n00000002 | colour two colour"));
        QVERIFY(f.sectionOf(1).startsWith(root(f.tree) + "/docs/a.txt  ("));
        QVERIFY(f.sectionOf(0).startsWith(root(f.tree) + "/b.txt  ("));

        // The inputs went to the top of their histories.
        QCOMPARE(f.combo("FindText")->itemText(0), QString("colour"));
        QCOMPARE(f.combo("StartDir")->itemText(0), root(f.tree));
        QCOMPARE(f.combo("FilterCombo")->itemText(0), QString("*.txt"));
        QCOMPARE(f.combo("FilterCombo")->count(), 7);  // "*.txt" was listed already
        QCOMPARE(f.combo("RepText")->count(), 0);        // only a Replace records it
        QCOMPARE(f.form->previewPattern(), std::string("colour"));
    }

    void replaceAsksOnceOnTheWindowThreadAndRewritesFiles() {
        TreeForm f;
        f.messages.answers = {true};
        bool busyWhileAsked = false;
        f.messages.onQuestion = [&](const Message&) {
            busyWhileAsked = !f.button("FindBtn")->isEnabled() && !f.button("RepBtn")->isEnabled() &&
                             f.button("StopBtn")->isEnabled() && !f.child("ListView1")->isEnabled() &&
                             !f.pane()->isEnabled() && !f.child<QMenu>("mnuFile")->menuAction()->isEnabled() &&
                             !f.child<QMenu>("mView")->menuAction()->isEnabled() &&
                             !f.action("mAbout")->isEnabled() && !f.button("OptBtn")->isEnabled() &&
                             !f.action("mOpts")->isEnabled() && !f.button("ShowLibBtn")->isEnabled() &&
                             f.status() == "Replace Files?";
            // The counting pass ended at 100%, yellow on blue.
            auto* bar = f.child<ui::ColourProgressBar>("ProgressBar");
            busyWhileAsked = busyWhileAsked && bar->percent() == 100 && bar->fillColour() == QColor(255, 255, 0) &&
                             bar->backColour() == QColor(0, 0, 255);
        };
        QVERIFY(f.run(root(f.tree), "*.txt", "colour", "color", "RepBtn"));
        QVERIFY(busyWhileAsked);
        QVERIFY(!f.messages.offWindowThread);
        QCOMPARE(f.messages.questions.size(), size_t(1));
        QCOMPARE(f.messages.texts(), std::vector<std::string>{"3 files processed, 4 occurences changed in 2 file(s)"});
        QCOMPARE(f.status(), QString("3 files processed, 4 occurences changed in 2 file(s)"));
        QCOMPARE(f.tree.read("docs/a.txt"), std::string("color one\ncolor two color\n"));
        QCOMPARE(f.column(0), QStringList({"b.txt", "a.txt"}));  // rebuilt by the writing pass
        // The writing pass's rows lead to the sections the counting pass showed.
        QVERIFY(f.sectionOf(0).startsWith(root(f.tree) + "/b.txt  ("));
        QVERIFY(f.sectionOf(1).startsWith(root(f.tree) + "/docs/a.txt  ("));
        QCOMPARE(f.combo("RepText")->itemText(0), QString("color"));
        QCOMPARE(f.form->previewPattern(), std::string("color"));

        QVERIFY(f.idle());
        QVERIFY(f.child<QMenu>("mnuFile")->menuAction()->isEnabled());
        QVERIFY(f.button("OptBtn")->isEnabled() && f.action("mOpts")->isEnabled() && f.button("ShowLibBtn")->isEnabled());
        QVERIFY(!f.button("ExtrBtn")->isEnabled());  // still plain-text mode
    }

    void declinedOrStoppedReplaceKeepsTheFiles() {
        TreeForm f;
        f.messages.answers = {false};
        QVERIFY(f.run(root(f.tree), "*.txt", "colour", "color", "RepBtn"));
        QCOMPARE(f.status(), QString("3 files processed, 4 occurences found in 2 file(s)"));
        QVERIFY(f.messages.messages.empty());
        QCOMPARE(f.column(0), QStringList({"b.txt", "a.txt"}));  // the counting pass's rows stay

        // Stop pressed while the question is open: the writing pass never starts.
        f.messages.answers = {true};
        f.messages.onQuestion = [&](const Message&) { QTest::mouseClick(f.button("StopBtn"), Qt::LeftButton); };
        QVERIFY(f.runBy("RepBtn"));
        QCOMPARE(f.messages.texts(), std::vector<std::string>({"Search operation stopped."}));
        QCOMPARE(f.status(), QString("3 files processed, 4 occurences found in 2 file(s)"));
        QCOMPARE(f.tree.read("docs/a.txt"), std::string("colour one\ncolour two colour\n"));
        QVERIFY(f.button("RepBtn")->isEnabled());
    }

    void refusedInputsShowTheirMessageAndLeaveTheWindowIdle() {
        TreeForm f;
        struct Case {
            QString folder, filter, find;
            bool regex;
            std::string message;
        };
        const Case cases[] = {
            {root(f.tree), "", "colour", false, "Please enter a valid file type filter (eg. *.txt)"},
            // The pattern is checked before the filter.
            {root(f.tree), "", "a)b", true, "Regular Expression is invalid - please check syntax."},
        };
        for (const Case& c : cases) {
            f.messages.messages.clear();
            f.child<QCheckBox>("RegExpFind")->setChecked(c.regex);
            QVERIFY(f.run(c.folder, c.filter, c.find));
            QCOMPARE(f.messages.texts(), std::vector<std::string>({c.message}));
            QCOMPARE(f.messages.messages[0].icon, MessageIcon::Information);
            QVERIFY(f.idle());
            QCOMPARE(f.combo("FindText")->count(), 0);  // nothing was recorded
            QCOMPARE(f.combo("FindText")->currentText(), c.find);  // nothing typed was lost
        }
        // The window points at the fault in the pattern.
        QLineEdit* edit = f.combo("FindText")->lineEdit();
        QCOMPARE(edit->selectionStart(), 1);
        QCOMPARE(edit->selectedText(), QString(")"));
        QVERIFY(!f.status().isEmpty());  // says what is wrong
    }

    void markedFilesRunTakesOnlyTheMarkedRows() {
        TreeForm f;
        QVERIFY(f.run(root(f.tree), "*.txt", "colour"));
        auto* marked = f.child<QCheckBox>("MarkedChk");
        QVERIFY(!marked->isEnabled());

        for (int row : {0, 1}) f.rows().setData(f.rows().index(row, 0), Qt::Checked, Qt::CheckStateRole);
        QVERIFY(marked->isEnabled() && marked->isChecked());
        for (const char* input : {"FilterCombo", "StartDir", "FolderButton", "ffiltLbl", "StLocLbl"})
            QVERIFY2(!f.child(input)->isEnabled(), input);
        f.rows().setData(f.rows().index(0, 0), Qt::Unchecked, Qt::CheckStateRole);

        f.tree.write("docs/a.txt", "colour colour\n");
        QVERIFY(f.runBy("FindBtn"));
        QVERIFY(f.messages.messages.empty());
        QCOMPARE(f.status(), QString("1 files processed, 2 occurences found in 1 file(s)"));
        QCOMPARE(f.column(0), QStringList({"a.txt"}));
        QCOMPARE(f.rows().index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QVERIFY(marked->isEnabled() && marked->isChecked());
    }

    void aRequestToEndStopsTheRunAndClosesEveryWindowLeavingNoTemporaryFiles() {
        TempTree tree;
        const std::string before(20000, 'x');
        for (int i = 0; i < 300; ++i) tree.write("f" + std::to_string(i) + ".txt", before);
        FormFixture f;
        ui::TerminationSignals endRequests;
        connect(&endRequests, &ui::TerminationSignals::received, f.form.get(), &ui::RepForm::endProgram);
        f.form->show();
        f.action("mRETest")->trigger();
        auto* tester = f.child("RegExTestFrm");
        QVERIFY(tester->isVisible());
        auto* dialog = new QDialog(f.form.get());
        f.setInputs(root(tree), "*.txt", "x", "y");
        // SIGTERM as the writing pass begins, with a dialog open.
        f.messages.answers = {true};
        f.messages.onQuestion = [&](const Message&) {
            dialog->open();
            ::raise(SIGTERM);
        };
        QTest::mouseClick(f.button("RepBtn"), Qt::LeftButton);
        QTRY_VERIFY(!f.form->isVisible());
        QVERIFY(!dialog->isVisible() && !tester->isVisible());
        QTRY_VERIFY(!f.form->isRunning());
        QCOMPARE(f.messages.texts(), std::vector<std::string>());  // not even "Replace operation stopped."
        int written = 0;
        for (const auto& entry : std::filesystem::directory_iterator(tree.root())) {
            const std::string name = entry.path().filename().string();
            QVERIFY2(!TemporaryFiles::isTemporaryName(name), name.c_str());
            const std::string now = tree.read(name);
            QVERIFY(now == before || now == std::string(before.size(), 'y'));
            written += now != before;
        }
        QVERIFY(written < 300);  // stopped part way
    }
};

QTEST_MAIN(RepFormRunTest)
#include "RepFormRunTest.moc"
