#include <ZVControl/ZVStyleButton>

#include <QtTest/QtTest>
#include <QtWidgets/QPushButton>

class tst_ZVStyleButton : public QObject
{
    Q_OBJECT

private slots:
    void baseClass();
    void constructors();
    void styleSheetTypeSelector();
};

void tst_ZVStyleButton::baseClass()
{
    ZVStyleButton button;
    QObject* object = &button;
    QVERIFY(qobject_cast<QPushButton*>(object) != nullptr);
    QVERIFY(qobject_cast<ZVStyleButton*>(object) != nullptr);
    QCOMPARE(button.metaObject()->className(), "ZVStyleButton");
    QCOMPARE(button.metaObject()->superClass(), &QPushButton::staticMetaObject);
}

void tst_ZVStyleButton::constructors()
{
    ZVStyleButton empty;
    QCOMPARE(empty.text(), QString());
    QCOMPARE(empty.parentWidget(), static_cast<QWidget*>(nullptr));

    QWidget parent;
    auto* child = new ZVStyleButton(&parent);
    QCOMPARE(child->parentWidget(), &parent);
    QCOMPARE(child->text(), QString());

    ZVStyleButton texted(QStringLiteral("OK"));
    QCOMPARE(texted.text(), QStringLiteral("OK"));
    QCOMPARE(texted.parentWidget(), static_cast<QWidget*>(nullptr));

    auto* textedChild = new ZVStyleButton(QStringLiteral("Cancel"), &parent);
    QCOMPARE(textedChild->text(), QStringLiteral("Cancel"));
    QCOMPARE(textedChild->parentWidget(), &parent);
}

void tst_ZVStyleButton::styleSheetTypeSelector()
{
    QWidget parent;
    parent.setStyleSheet(QStringLiteral("ZVStyleButton { color: rgb(1,2,3); }"));
    auto* ours = new ZVStyleButton(QStringLiteral("ours"), &parent);
    auto* plain = new QPushButton(QStringLiteral("plain"), &parent);
    ours->ensurePolished();
    plain->ensurePolished();

    QCOMPARE(ours->palette().color(QPalette::ButtonText), QColor(1, 2, 3));
    QCOMPARE(ours->palette().color(QPalette::WindowText), QColor(1, 2, 3));
    QVERIFY(plain->palette().color(QPalette::ButtonText) != QColor(1, 2, 3));
    QVERIFY(plain->palette().color(QPalette::WindowText) != QColor(1, 2, 3));
}

QTEST_MAIN(tst_ZVStyleButton)
#include "tst_zvstylebutton.moc"
