#include <ZVControl/ZVStyleDialog>

#include <QtGui/QImage>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

class tst_ZVStyleDialog : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void windowFlags();
    void translucentBackground();
    void parentKept();
    void className();
    void execAccepted();
    void execRejected();
    void styleSheetBackground();
    void unstyledIsTransparent();
};

void tst_ZVStyleDialog::cleanup()
{
    qApp->setStyleSheet(QString());
}

void tst_ZVStyleDialog::windowFlags()
{
    ZVStyleDialog dialog;
    QCOMPARE(dialog.windowFlags() & Qt::WindowType_Mask, Qt::Dialog);
    QVERIFY(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(dialog.isWindow());
}

void tst_ZVStyleDialog::translucentBackground()
{
    ZVStyleDialog dialog;
    QCOMPARE(dialog.testAttribute(Qt::WA_TranslucentBackground), true);
}

void tst_ZVStyleDialog::parentKept()
{
    QWidget parent;
    auto* dialog = new ZVStyleDialog(&parent);
    QCOMPARE(dialog->parentWidget(), &parent);
    QCOMPARE(dialog->windowFlags() & Qt::WindowType_Mask, Qt::Dialog);
    QVERIFY(dialog->windowFlags().testFlag(Qt::FramelessWindowHint));

    ZVStyleDialog orphan;
    QCOMPARE(orphan.parentWidget(), static_cast<QWidget*>(nullptr));
}

void tst_ZVStyleDialog::className()
{
    ZVStyleDialog dialog;
    QCOMPARE(dialog.metaObject()->className(), "ZVStyleDialog");
    QVERIFY(qobject_cast<QDialog*>(&dialog) != nullptr);
}

void tst_ZVStyleDialog::execAccepted()
{
    QWidget parent;
    parent.resize(300, 200);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));

    ZVStyleDialog dialog(&parent);
    dialog.resize(120, 80);
    bool wasVisible = false;
    QTimer::singleShot(0, &dialog, [&dialog, &wasVisible] {
        wasVisible = dialog.isVisible();
        dialog.accept();
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(wasVisible, true);
    QCOMPARE(dialog.isVisible(), false);
}

void tst_ZVStyleDialog::execRejected()
{
    ZVStyleDialog dialog;
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    QTimer::singleShot(0, &dialog, [&dialog] { dialog.reject(); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(rejected.count(), 1);
}

void tst_ZVStyleDialog::styleSheetBackground()
{
    qApp->setStyleSheet(QStringLiteral("ZVStyleDialog { background: rgb(0,0,255); }"));
    ZVStyleDialog dialog;
    dialog.resize(120, 80);
    const QImage image = dialog.grab().toImage();
    QCOMPARE(image.pixelColor(60, 40), QColor(0, 0, 255));
    QCOMPARE(image.pixelColor(1, 1), QColor(0, 0, 255));
}

void tst_ZVStyleDialog::unstyledIsTransparent()
{
    ZVStyleDialog dialog;
    dialog.resize(120, 80);
    const QImage image = dialog.grab().toImage();
    QVERIFY(image.hasAlphaChannel());
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(119, 79).alpha(), 0);
}

QTEST_MAIN(tst_ZVStyleDialog)
#include "tst_zvstyledialog.moc"
