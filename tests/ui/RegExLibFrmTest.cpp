// The library window driven through its controls: save, update, remove,
// the click and double-click rules, and what it hands over.

#include "UiTestSupport.h"
#include "ui/windows/RegExLibFrm.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

struct LibraryFixture : LibraryWindowFixture<ui::RegExLibFrm> {
    explicit LibraryFixture(const QByteArray& file) : LibraryWindowFixture({{"RegEx.txt", file}}) {}
    QByteArray file() const { return LibraryWindowFixture::file("RegEx.txt"); }
    QString text(const char* box) const { return child<QLineEdit>(box)->text(); }
};

}  // namespace

class RegExLibFrmTest : public QObject {
    Q_OBJECT

private slots:
    // Names that differ only by spaces at their end look different.
    void trailingSpacesOfANameCanBeSeen() {
        LibraryFixture f("Digits\t\\d+\t\r\nDigits  \t[0-9]+\t\r\n");
        QCOMPARE(f.entries().size(), 2);
        QCOMPARE(f.entries()[0], QString("Digits"));
        QVERIFY2(f.entries()[1].startsWith("Digits") && f.entries()[1] != "Digits" && f.entries()[1].trimmed() == f.entries()[1],
                 qPrintable(f.entries()[1]));
        QVERIFY(f.list()->item(1)->data(Qt::AccessibleTextRole).toString().contains("2 spaces"));
        f.clickEntry(1);
        QCOMPARE(f.text("REName"), QString("Digits  "));  // the name itself as it is
    }

    void saveAppendsThenACaseDifferentNameUpdatesInPlace() {
        LibraryFixture f("digits\t\\d+\t\r\nfoo\told\t\r\n");
        f.type("REName", "Words");
        f.type("REtxt", "\\w+");
        f.click("lvButtons_H2");
        QCOMPARE(f.entries(), QStringList({"digits", "foo", "Words"}));
        QCOMPARE(f.list()->currentRow(), 2);

        f.messages.answers = {true};
        f.type("REName", "FOO");
        f.type("REtxt", "new");
        f.type("RepTxt", "$&!");
        f.click("lvButtons_H2");
        QCOMPARE(f.messages.questions.size(), std::size_t{1});
        QCOMPARE(f.entries(), QStringList({"digits", "FOO", "Words"}));
        QCOMPARE(f.file(), QByteArray("digits\t\\d+\t\r\nFOO\tnew\t$&!\r\nWords\t\\w+\t\r\n"));
    }

    void aClickShowsAnEntryAndRemoveAsksFirst() {
        LibraryFixture f("a\t1\tx\r\nb\t2\t\r\n");
        // Nothing selected: nothing to remove.
        f.click("DelBtn");
        QVERIFY(f.messages.questions.empty());
        f.clickEntry(0);
        QCOMPARE(f.text("REName"), QString("a"));
        QCOMPARE(f.text("REtxt"), QString("1"));
        QCOMPARE(f.text("RepTxt"), QString("x"));
        f.click("DelBtn");  // No
        QCOMPARE(f.entries(), QStringList({"a", "b"}));
        f.messages.answers = {true};
        f.click("DelBtn");
        QCOMPARE(f.entries(), QStringList({"b"}));
        QCOMPARE(f.file(), QByteArray("b\t2\t\r\n"));
    }

    void useCloseAndDoubleClickHandOver() {
        LibraryFixture f("a\t\\d\tstored\r\n");
        // A double click hands over the stored pair, whatever the boxes say.
        f.clickEntry(0);
        f.type("REtxt", "typed");
        QTest::mouseDClick(f.list()->viewport(), Qt::LeftButton, {}, f.list()->visualItemRect(f.list()->item(0)).center());
        QCOMPARE(f.window->result(), int(QDialog::Accepted));
        QCOMPARE(f.state.choice.pattern, std::string("\\d"));
        QCOMPARE(f.state.choice.replacement, std::string("stored"));
        // Use: the boxes as typed, saved or not.
        f.type("REtxt", "typed");
        f.type("RepTxt", "");
        f.click("lvButtons_H1");
        QCOMPARE(f.state.choice.pattern, std::string("typed"));
        QCOMPARE(f.state.choice.replacement, std::string());
        // Close hands over nothing.
        f.state.choice.clear();
        f.click("lvButtons_H3");
        QCOMPARE(f.window->result(), int(QDialog::Rejected));
        QVERIFY(f.state.choice.pattern.empty());
    }
};

QTEST_MAIN(RegExLibFrmTest)
#include "RegExLibFrmTest.moc"
