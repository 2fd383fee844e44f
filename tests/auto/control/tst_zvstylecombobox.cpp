#include <ZVControl/ZVStyleComboBox>

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>

class tst_ZVStyleComboBox : public QObject
{
    Q_OBJECT

private slots:
    void baseClass();
    void constructors();
    void styleSheetTypeSelector();
};

void tst_ZVStyleComboBox::baseClass()
{
    ZVStyleComboBox combo;
    QObject* object = &combo;
    QVERIFY(qobject_cast<QComboBox*>(object) != nullptr);
    QVERIFY(qobject_cast<ZVStyleComboBox*>(object) != nullptr);
    QCOMPARE(combo.metaObject()->className(), "ZVStyleComboBox");
    QCOMPARE(combo.metaObject()->superClass(), &QComboBox::staticMetaObject);
}

void tst_ZVStyleComboBox::constructors()
{
    ZVStyleComboBox orphan;
    QCOMPARE(orphan.parentWidget(), static_cast<QWidget*>(nullptr));

    QWidget parent;
    auto* child = new ZVStyleComboBox(&parent);
    QCOMPARE(child->parentWidget(), &parent);
}

void tst_ZVStyleComboBox::styleSheetTypeSelector()
{
    QWidget parent;
    parent.setStyleSheet(QStringLiteral("ZVStyleComboBox { color: rgb(1,2,3); }"));
    auto* ours = new ZVStyleComboBox(&parent);
    auto* plain = new QComboBox(&parent);
    ours->ensurePolished();
    plain->ensurePolished();

    QCOMPARE(ours->palette().color(QPalette::ButtonText), QColor(1, 2, 3));
    QCOMPARE(ours->palette().color(QPalette::Text), QColor(1, 2, 3));
    QVERIFY(plain->palette().color(QPalette::ButtonText) != QColor(1, 2, 3));
    QVERIFY(plain->palette().color(QPalette::Text) != QColor(1, 2, 3));
}

QTEST_MAIN(tst_ZVStyleComboBox)
#include "tst_zvstylecombobox.moc"
