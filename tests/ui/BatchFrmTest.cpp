// The batch jobs window driven through its controls: a job built from the
// library, reordered, saved, updated and deleted, and the questions about
// changed entries.

#include <QComboBox>
#include <QInputDialog>
#include <QTimer>

#include "UiTestSupport.h"
#include "ui/windows/BatchFrm.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

struct BatchFixture : LibraryWindowFixture<ui::BatchFrm> {
    explicit BatchFixture(const QByteArray& jobs = {})
        : LibraryWindowFixture({{"RegEx.txt", "tags\t<[^>]+>\t\r\nspaces\t {2,}\t \r\ndigits\t\\d+\t#\r\n"},
                                {"BatchJobs.txt", jobs}}) {}
    QByteArray jobsFile() const { return file("BatchJobs.txt"); }
    QComboBox* combo(const char* name) const { return child<QComboBox>(name); }
    bool enabled(const char* button) const { return child<QAbstractButton>(button)->isEnabled(); }
    // Chooses the next item of a combo box with the keyboard, as a user would.
    void chooseNext(const char* name) const { QTest::keyClick(combo(name), Qt::Key_Down); }
    void addFromLibrary(int index) const {
        combo("LibraryCombo")->setCurrentIndex(index);
        click("AddREBtn");
    }
    QStringList jobs() const {
        QStringList out;
        for (int i = 0; i < combo("BatchJobsCombo")->count(); ++i) out << combo("BatchJobsCombo")->itemText(i);
        return out;
    }
    // Saves, answering the name question with `name`; returns the name offered.
    QString saveAs(const QString& name) {
        QString offered;
        QTimer::singleShot(0, [&] {
            auto* ask = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            QVERIFY(ask);
            QCOMPARE(ask->windowTitle(), QString("Save"));
            QCOMPARE(ask->labelText(), QString("Please enter a name for the batch process"));
            offered = ask->textValue();
            ask->setTextValue(name);
            ask->accept();
        });
        click("SaveBtn");
        return offered;
    }
};

}  // namespace

class BatchFrmTest : public QObject {
    Q_OBJECT

private slots:
    void aJobIsBuiltReorderedSavedUpdatedAndDeleted() {
        BatchFixture f;
        QCOMPARE(f.combo("LibraryCombo")->count(), 3);
        for (const char* off : {"usebtn", "SaveBtn", "New_btn", "MoveUpBtn", "MoveDnBtn", "RemRXbtn", "DelBtn"})
            QVERIFY2(!f.enabled(off), off);
        f.addFromLibrary(0);
        f.addFromLibrary(2);
        f.addFromLibrary(1);
        QVERIFY(f.enabled("SaveBtn") && f.enabled("usebtn") && f.enabled("New_btn"));
        f.clickEntry(2);
        QVERIFY(f.enabled("MoveUpBtn") && !f.enabled("MoveDnBtn") && f.enabled("RemRXbtn"));
        f.click("MoveUpBtn");
        f.click("MoveUpBtn");
        QCOMPARE(f.entries(), QStringList({"spaces", "tags", "digits"}));
        QCOMPARE(f.list()->currentRow(), 0);
        QVERIFY(!f.enabled("MoveUpBtn") && f.enabled("MoveDnBtn"));

        // The first job of all is listed, not selected.
        QCOMPARE(f.saveAs("Tidy"), QString());
        QCOMPARE(f.jobsFile(), QByteArray("Tidy\tspaces\ttags\tdigits\r\n"));
        QCOMPARE(f.jobs(), QStringList({"Tidy"}));
        QCOMPARE(f.combo("BatchJobsCombo")->currentIndex(), -1);
        QVERIFY(!f.enabled("DelBtn"));

        // Chosen, edited and saved under a name of other letter case: an update in place.
        f.chooseNext("BatchJobsCombo");
        QCOMPARE(f.combo("BatchJobsCombo")->currentText(), QString("Tidy"));
        f.clickEntry(1);
        f.click("RemRXbtn");
        f.messages.answers = {true};
        QCOMPARE(f.saveAs("TIDY"), QString("Tidy"));
        QCOMPARE(f.jobsFile(), QByteArray("TIDY\tspaces\tdigits\r\n"));
        QCOMPARE(f.jobs(), QStringList({"TIDY"}));
        QCOMPARE(f.combo("BatchJobsCombo")->currentText(), QString("TIDY"));

        f.messages.answers = {true};
        f.click("DelBtn");
        QCOMPARE(f.jobsFile(), QByteArray());
        QVERIFY(f.jobs().isEmpty() && f.entries().isEmpty());
        QVERIFY(!f.enabled("DelBtn") && !f.enabled("SaveBtn"));
    }

    void changedEntriesAreConfirmedBeforeTheyAreLost() {
        BatchFixture f("One\ttags\r\nBare\r\nTwo\tdigits\r\n");
        f.chooseNext("BatchJobsCombo");
        QCOMPARE(f.entries(), QStringList({"tags"}));
        // A job without entries leaves the list as it was.
        f.chooseNext("BatchJobsCombo");
        QCOMPARE(f.combo("BatchJobsCombo")->currentText(), QString("Bare"));
        QCOMPARE(f.entries(), QStringList({"tags"}));
        f.addFromLibrary(1);
        f.chooseNext("BatchJobsCombo");
        QCOMPARE(f.messages.questions.back().text,
                 std::string("Current batch job has been updated. Selecting another will lose changes. continue?"));
        QCOMPARE(f.combo("BatchJobsCombo")->currentText(), QString("Bare"));
        QCOMPARE(f.entries(), QStringList({"tags", "spaces"}));
        f.click("New_btn");
        QCOMPARE(f.messages.questions.back().text,
                 std::string("Current batch job has been updated. Creating a new one will lose changes. Sure?"));
        QCOMPARE(f.entries().size(), 2);
        f.messages.answers = {true};
        f.click("New_btn");
        QVERIFY(f.entries().isEmpty());
        QCOMPARE(f.combo("BatchJobsCombo")->currentIndex(), -1);
    }
};

QTEST_MAIN(BatchFrmTest)
#include "BatchFrmTest.moc"
