// The program's own button: push, check and option behaviour from the mouse
// and the keyboard, what screen readers are told, hover colours, and its
// settings put on and taken off a button.

#include <QAccessible>
#include <QEnterEvent>

#include "UiTestSupport.h"
#include "ui/widgets/lvButtons_H.h"

using namespace vantorel;
using ui::lvButtons_H;

class lvButtons_HTest : public QObject {
    Q_OBJECT

private slots:
    void pushButtonsByKeyboardAndScreenReader() {
        QWidget window;
        auto* push = lvButtons_H::create(&window, QStringLiteral("FindBtn"), QStringLiteral("&Find"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy clicks(push, &QAbstractButton::clicked);
        push->setFocus();
        QTest::keyClick(push, Qt::Key_Space);
        QTest::keyClick(push, Qt::Key_Return);
        QTRY_COMPARE(clicks.count(), 2);
        QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);  // the access key
        QTRY_COMPARE(clicks.count(), 3);
        QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(push);
        QCOMPARE(reader->text(QAccessible::Name), QStringLiteral("Find"));
        QCOMPARE(reader->role(), QAccessible::Button);
    }

    // The check and option modes are kept for the published interface only:
    // once over, an option clears the others of its container (not a click on
    // itself), a check toggles by Space, and a push button refuses a Value.
    void checkAndOptionModes() {
        QWidget window;
        QList<lvButtons_H*> group;
        for (const char* name : {"a", "b"})
            group << lvButtons_H::create(&window, QString::fromLatin1(name), QString::fromLatin1(name), button::Option);
        auto* check = lvButtons_H::create(&window, QStringLiteral("c"), QStringLiteral("c"), button::Check);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        group[0]->setProperty("Value", true);
        QTest::mouseClick(group[1], Qt::LeftButton);
        QTest::mouseClick(group[1], Qt::LeftButton);
        QVERIFY(!group[0]->value() && group[1]->value());
        group[1]->setValue(false);
        QVERIFY(!group[1]->value());
        check->setFocus();
        QTest::keyClick(check, Qt::Key_Space);
        QVERIFY(check->value());
        QCOMPARE(QAccessible::queryAccessibleInterface(check)->role(), QAccessible::CheckBox);
        QCOMPARE(QAccessible::queryAccessibleInterface(group[0])->role(), QAccessible::RadioButton);

        lvButtons_H push;
        QSignalSpy notices(&push, &lvButtons_H::designNotice);
        push.setValue(true);
        QVERIFY(!push.value());
        QCOMPARE(notices.value(0).value(0).toString(),
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
