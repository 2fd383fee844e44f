#include <ZVControl/ZVLabel>

#include <QtTest/QtTest>
#include <QtWidgets/QLabel>

class tst_ZVLabel : public QObject
{
    Q_OBJECT

private slots:
    void baseClass();
    void constructors();
    void styleSheetTypeSelector();
};

void tst_ZVLabel::baseClass()
{
    ZVLabel label;
    QObject* object = &label;
    QVERIFY(qobject_cast<QLabel*>(object) != nullptr);
    QVERIFY(qobject_cast<ZVLabel*>(object) != nullptr);
    QCOMPARE(label.metaObject()->className(), "ZVLabel");
    QCOMPARE(label.metaObject()->superClass(), &QLabel::staticMetaObject);
}

void tst_ZVLabel::constructors()
{
    ZVLabel empty;
    QCOMPARE(empty.text(), QString());
    QCOMPARE(empty.parentWidget(), static_cast<QWidget*>(nullptr));

    QWidget parent;
    auto* child = new ZVLabel(&parent);
    QCOMPARE(child->parentWidget(), &parent);
    QCOMPARE(child->text(), QString());

    ZVLabel texted(QStringLiteral("Hello"));
    QCOMPARE(texted.text(), QStringLiteral("Hello"));
    QCOMPARE(texted.parentWidget(), static_cast<QWidget*>(nullptr));

    auto* textedChild = new ZVLabel(QStringLiteral("World"), &parent);
    QCOMPARE(textedChild->text(), QStringLiteral("World"));
    QCOMPARE(textedChild->parentWidget(), &parent);
}

void tst_ZVLabel::styleSheetTypeSelector()
{
    QWidget parent;
    parent.setStyleSheet(QStringLiteral("ZVLabel { color: rgb(1,2,3); }"));
    auto* ours = new ZVLabel(QStringLiteral("ours"), &parent);
    auto* plain = new QLabel(QStringLiteral("plain"), &parent);
    ours->ensurePolished();
    plain->ensurePolished();

    QCOMPARE(ours->palette().color(QPalette::WindowText), QColor(1, 2, 3));
    QVERIFY(plain->palette().color(QPalette::WindowText) != QColor(1, 2, 3));
}

QTEST_MAIN(tst_ZVLabel)
#include "tst_zvlabel.moc"
