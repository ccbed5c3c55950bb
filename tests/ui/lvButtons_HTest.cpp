// The program's own button: option groups, check and push behaviour from the
// mouse and the keyboard, what screen readers are told, hover colours, and
// its settings put on and taken off a button.

#include <QAccessible>
#include <QEnterEvent>

#include "UiTestSupport.h"
#include "ui/widgets/lvButtons_H.h"

using namespace vantorel;
using ui::lvButtons_H;

class lvButtons_HTest : public QObject {
    Q_OBJECT

    static QList<bool> values(const QList<lvButtons_H*>& buttons) {
        QList<bool> out;
        for (const lvButtons_H* b : buttons) out << b->value();
        return out;
    }

private slots:
    void settingOneOptionClearsTheOthersOfItsContainer() {
        QWidget window;
        QWidget first(&window);
        QWidget second(&window);
        QList<lvButtons_H*> group;
        for (const char* name : {"a", "b", "c"})
            group << lvButtons_H::create(&first, QString::fromLatin1(name), QString::fromLatin1(name), button::Option);
        auto* elsewhere = lvButtons_H::create(&second, QStringLiteral("d"), QStringLiteral("d"), button::Option);
        auto* check = lvButtons_H::create(&first, QStringLiteral("e"), QStringLiteral("e"), button::Check);
        window.show();
        elsewhere->setValue(true);
        check->setValue(true);

        group[0]->setProperty("Value", true);
        group[1]->setProperty("Value", true);
        QCOMPARE(values(group), (QList<bool>{false, true, false}));
        QTest::mouseClick(group[2], Qt::LeftButton);
        QCOMPARE(values(group), (QList<bool>{false, false, true}));
        QTest::mouseClick(group[2], Qt::LeftButton);  // a click never clears an option
        QVERIFY(group[2]->value());
        group[2]->setValue(false);
        QCOMPARE(values(group), (QList<bool>{false, false, false}));
        QVERIFY(elsewhere->value());
        QVERIFY(check->value());
        delete group.takeFirst();  // a member that goes leaves the others working
        group[0]->setValue(true);
        group[1]->setValue(true);
        QCOMPARE(values(group), (QList<bool>{false, true}));
    }

    void keyboardAndScreenReaders() {
        QWidget window;
        auto* push = lvButtons_H::create(&window, QStringLiteral("FindBtn"), QStringLiteral("&Find"));
        auto* check = lvButtons_H::create(&window, QStringLiteral("Chk"), QStringLiteral("Marked"), button::Check);
        auto* option = lvButtons_H::create(&window, QStringLiteral("Opt"), QStringLiteral("One"), button::Option);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy clicks(push, &QAbstractButton::clicked);
        push->setFocus();
        QTest::keyClick(push, Qt::Key_Space);
        QTest::keyClick(push, Qt::Key_Return);
        QTRY_COMPARE(clicks.count(), 2);
        QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);  // the access key
        QTRY_COMPARE(clicks.count(), 3);
        QTest::keyClick(check, Qt::Key_Space);
        QVERIFY(check->value());
        QTest::keyClick(check, Qt::Key_Space);
        QVERIFY(!check->value());

        QCOMPARE(push->focusPolicy(), Qt::StrongFocus);
        QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(push);
        QCOMPARE(reader->text(QAccessible::Name), QStringLiteral("Find"));
        QCOMPARE(reader->role(), QAccessible::Button);
        QCOMPARE(QAccessible::queryAccessibleInterface(check)->role(), QAccessible::CheckBox);
        QCOMPARE(QAccessible::queryAccessibleInterface(option)->role(), QAccessible::RadioButton);
    }

    void aPushButtonRefusesAValueWithANotice() {
        lvButtons_H push;
        QSignalSpy notices(&push, &lvButtons_H::designNotice);
        QVERIFY(push.setProperty("Value", true));
        QVERIFY(!push.value());
        QCOMPARE(notices.count(), 1);
        QCOMPARE(notices.at(0).at(0).toString(),
                 QStringLiteral("This property is not applicable for command button modes."));
    }

    void hoverColoursComeFromTheSettingsOrThePalette() {
        QWidget window;
        QPalette dark;
        dark.setColor(QPalette::Button, QColor(0x30, 0x30, 0x30));
        dark.setColor(QPalette::ButtonText, QColor(0xee, 0xee, 0xee));
        window.setPalette(dark);
        auto* b = lvButtons_H::create(&window, QStringLiteral("b"), QStringLiteral("Go"));
        window.show();
        QCOMPARE(b->shownForeColour(), QColor(0xee, 0xee, 0xee));
        QCOMPARE(b->shownBackColour(), QColor(0x30, 0x30, 0x30));
        b->setHoverBackColor(0x000000FF);  // red
        QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2));
        QApplication::sendEvent(b, &enter);
        QVERIFY(b->isHovering());
        QCOMPARE(b->shownBackColour(), QColor(255, 0, 0));
        b->setHoverColorLocks(button::KeepBackColour);
        QCOMPARE(b->shownBackColour(), QColor(0x30, 0x30, 0x30));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(b, &leave);
        QVERIFY(!b->isHovering());
    }

    void storedSettingsGoOnAndComeOffUnchanged() {
        QWidget window;
        const ButtonSettings s{.Caption = "&Replace", .ButtonShape = button::Rounded,
                               .Font = ButtonFont{"DejaVu Sans", 11, true, false, false, false}, .Mode = button::Check,
                               .Value = true, .Enabled = false, .BackColor = 0x00336699, .HoverBackColor = 0x00112233};
        auto* b = new lvButtons_H(&window);
        b->applySettings(s);
        QCOMPARE(b->text(), QStringLiteral("&Replace"));
        QVERIFY(!b->isEnabled());
        QCOMPARE(b->settings(), s);
        b->applySettings(ButtonSettings{});
        QCOMPARE(b->settings(), ButtonSettings{});
        QCOMPARE(b->font(), window.font());  // no font of its own
    }
};

QTEST_MAIN(lvButtons_HTest)
#include "lvButtons_HTest.moc"
