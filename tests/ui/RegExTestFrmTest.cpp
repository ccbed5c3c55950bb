// The tester driven through its controls: dynamic update on and off, an
// invalid expression, and matches marked with their groups.

#include <QPlainTextEdit>
#include <QTableWidget>

#include "UiTestSupport.h"
#include "ui/widgets/PatternEdit.h"
#include "ui/windows/RegExTestFrm.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

struct TesterFixture : LibraryWindowFixture<ui::RegExTestFrm> {
    QString text(const char* name) const {
        if (auto* edit = window->findChild<QPlainTextEdit*>(name)) return edit->toPlainText();
        if (auto* line = window->findChild<QLineEdit*>(name)) return line->text();
        return child<QLabel>(name)->text();
    }
    // Does something and waits until its update is on show.
    template <class Action>
    bool updatedBy(Action&& action) {
        QSignalSpy updated(window.get(), &ui::RegExTestFrm::updated);
        action();
        return updated.wait(10000);
    }
    QTableWidget* groups() const { return child<QTableWidget>("GroupTable"); }
    QStringList groupRow(int row) const {
        QStringList cells;
        for (int c = 0; c < groups()->columnCount(); ++c) cells << groups()->item(row, c)->text();
        return cells;
    }
};

}  // namespace

class RegExTestFrmTest : public QObject {
    Q_OBJECT

private slots:
    void dynamicUpdateFollowsEditsOnlyWhenChecked() {
        TesterFixture f;
        QVERIFY(f.child<QCheckBox>("DynUpdChk")->isChecked());
        QVERIFY(f.updatedBy([&] { f.window->setSample("Cat cat\ncAT"); }));
        QVERIFY(f.updatedBy([&] { f.type("FText", "cat"); }));
        QCOMPARE(f.text("foundlbl"), QString("(3)"));
        QCOMPARE(f.text("FRes"), QString("1) Cat \n2) cat \n3) cAT \n"));
        QVERIFY(f.updatedBy([&] { f.type("RText", "<$&>\\t"); }));
        QCOMPARE(f.text("RRes"), QString("<Cat>\t <cat>\t\n<cAT>\t"));
        // Case sensitive.
        QVERIFY(f.updatedBy([&] { f.click("CaseChk"); }));
        QCOMPARE(f.text("foundlbl"), QString("(1)"));

        // Off: typing changes nothing until Update is pressed.
        f.click("DynUpdChk");
        QSignalSpy updated(f.window.get(), &ui::RegExTestFrm::updated);
        f.type("FText", "c");
        f.type("RText", "-");
        QVERIFY(!updated.wait(300));
        QCOMPARE(f.text("foundlbl"), QString("(1)"));
        QVERIFY(f.updatedBy([&] { f.click("UpdateBtn"); }));
        QCOMPARE(f.text("foundlbl"), QString("(2)"));
        QCOMPARE(f.text("RRes"), QString("Cat -at\n-AT"));
        // Switching it on brings both results up to date at once.
        f.type("FText", "a");
        QVERIFY(f.updatedBy([&] { f.click("DynUpdChk"); }));
        QCOMPARE(f.text("foundlbl"), QString("(2)"));
        QCOMPARE(f.text("RRes"), QString("C-t c-t\ncAT"));
        // An empty expression clears the list and the count.
        QVERIFY(f.updatedBy([&] { f.child<QLineEdit>("FText")->clear(); }));
        QCOMPARE(f.text("foundlbl"), QString());
        QCOMPARE(f.text("FRes"), QString());
    }

    void anInvalidExpressionIsSaidInTheListAndPointedAt() {
        TesterFixture f;
        QVERIFY(f.updatedBy([&] { f.window->setSample("abc"); }));
        QVERIFY(f.updatedBy([&] { f.type("RText", "X"); }));
        QVERIFY(f.updatedBy([&] { f.type("FText", "b"); }));
        QCOMPARE(f.text("RRes"), QString("aXc"));
        QVERIFY(f.updatedBy([&] { f.type("FText", "a(b"); }));
        QCOMPARE(f.text("FRes"), QString("Error in Regular Expression!"));
        QCOMPARE(f.text("RRes"), QString("aXc"));
        QCOMPARE(f.text("foundlbl"), QString());
        QCOMPARE(f.text("PatternProblem"), QString("Missing ')' to close this group"));
        QCOMPARE(f.child<ui::PatternEdit>("FText")->errorMark(), 1);
        QCOMPARE(f.groups()->rowCount(), 0);
        // A replacement edit reports the same failure in the list.
        QVERIFY(f.updatedBy([&] { f.type("RText", "Y"); }));
        QCOMPARE(f.text("RRes"), QString("aXc"));
        // Put right, everything comes back.
        QVERIFY(f.updatedBy([&] { f.type("FText", "a(b)"); }));
        QCOMPARE(f.text("FRes"), QString("1) ab \n"));
        QCOMPARE(f.text("RRes"), QString("Yc"));
        QCOMPARE(f.text("PatternProblem"), QString());
        QCOMPARE(f.child<ui::PatternEdit>("FText")->errorMark(), -1);
    }

    void matchesAreMarkedAndTheChosenOnesGroupsShown() {
        TesterFixture f;
        QVERIFY(f.updatedBy([&] { f.window->setSample("a1 \xF0\x9F\x98\x80 b22"); }));
        QVERIFY(f.updatedBy([&] { f.type("FText", "(?<letter>[a-z])(\\d+)(x)?"); }));
        auto* sample = f.child<QPlainTextEdit>("InText");
        const QList<QTextEdit::ExtraSelection> marks = sample->extraSelections();
        QCOMPARE(marks.size(), 2);
        QCOMPARE(marks[1].cursor.selectedText(), QString("b22"));
        QCOMPARE(f.window->selectedMatch(), 0);
        QCOMPARE(f.text("MatchCaption"), QString("Match 1 of 2"));
        QCOMPARE(f.groupRow(0), QStringList({"0", "", "a1", "0-2"}));
        QCOMPARE(f.groupRow(1), QStringList({"1", "letter", "a", "0-1"}));
        QCOMPARE(f.groupRow(3), QStringList({"3", "", "unset", ""}));
        // A click on the second match in the list chooses it and shows it in the sample.
        auto* list = f.child<QPlainTextEdit>("FRes");
        const QRect second = list->cursorRect(QTextCursor(list->document()->findBlockByNumber(1)));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, second.center() + QPoint(2, 0));
        QCOMPARE(f.window->selectedMatch(), 1);
        QCOMPARE(f.groupRow(2), QStringList({"2", "", "22", "7-9"}));
        QCOMPARE(sample->textCursor().position(), 6);
        // The caret in the sample chooses the match it is in.
        QTextCursor caret(sample->document());
        caret.setPosition(1);
        sample->setTextCursor(caret);
        QCOMPARE(f.window->selectedMatch(), 0);
        QVERIFY(!f.text("MatchTime").isEmpty());
    }
};

QTEST_MAIN(RegExTestFrmTest)
#include "RegExTestFrmTest.moc"
