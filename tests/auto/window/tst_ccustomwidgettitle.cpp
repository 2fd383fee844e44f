// The small title bar of the frame's dialogs.
#include <ZVCore/private/CCustomWidgetTitle>
#include <ZVControl/ZVStyleWidget>

#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

Q_DECLARE_METATYPE(QMargins)

class tst_CCustomWidgetTitle : public QObject
{
    Q_OBJECT

private:
    static QLabel* titleLabel(const CCustomWidgetTitle& title)
    {
        return title.findChild<QLabel*>(QStringLiteral("Core_label_title"));
    }
    static QPushButton* closeButton(const CCustomWidgetTitle& title)
    {
        return title.findChild<QPushButton*>(QStringLiteral("Core_btn_close"));
    }

private slots:
    void cleanup()
    {
        qApp->setProperty("dlgRadius", QVariant());
        qApp->setLayoutDirection(Qt::LeftToRight);
    }

    void isAStyleWidgetWithItsObjectNames()
    {
        CCustomWidgetTitle title;
        QVERIFY(qobject_cast<ZVStyleWidget*>(&title));
        QCOMPARE(title.objectName(), QStringLiteral("Core_widgetTitle"));
        QVERIFY(titleLabel(title));
        QVERIFY(closeButton(title));
        QCOMPARE(title.findChildren<QLabel*>().size(), 1);
        QCOMPARE(title.findChildren<QPushButton*>().size(), 1);
    }

    void closeButtonIs24By24()
    {
        CCustomWidgetTitle title;
        QPushButton* close = closeButton(title);
        QVERIFY(close);
        QCOMPARE(close->minimumSize(), QSize(24, 24));
        QCOMPARE(close->maximumSize(), QSize(24, 24));
    }

    void styleSheetCarriesTheDialogRadius_data()
    {
        QTest::addColumn<QVariant>("radius");
        QTest::addColumn<QString>("styleSheet");
        QTest::newRow("absent") << QVariant()
                                << "CCustomWidgetTitle { border-top-left-radius: 0px; border-top-right-radius: 0px; }";
        QTest::newRow("8") << QVariant(8)
                           << "CCustomWidgetTitle { border-top-left-radius: 8px; border-top-right-radius: 8px; }";
        QTest::newRow("numeric text") << QVariant(QStringLiteral("12"))
                                      << "CCustomWidgetTitle { border-top-left-radius: 12px; border-top-right-radius: 12px; }";
        QTest::newRow("not a number") << QVariant(QStringLiteral("round"))
                                      << "CCustomWidgetTitle { border-top-left-radius: 0px; border-top-right-radius: 0px; }";
    }

    void styleSheetCarriesTheDialogRadius()
    {
        QFETCH(QVariant, radius);
        QFETCH(QString, styleSheet);
        qApp->setProperty("dlgRadius", radius);
        CCustomWidgetTitle title;
        QCOMPARE(title.styleSheet(), styleSheet);
    }

    void layoutFollowsTheDirection_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::addColumn<QMargins>("mainMargins");
        QTest::addColumn<QMargins>("buttonColumnMargins");
        QTest::newRow("left to right") << Qt::LeftToRight << QMargins(34, 0, 0, 0) << QMargins(0, 16, 16, 0);
        QTest::newRow("right to left") << Qt::RightToLeft << QMargins(0, 0, 34, 0) << QMargins(16, 16, 0, 0);
    }

    void layoutFollowsTheDirection()
    {
        QFETCH(Qt::LayoutDirection, direction);
        QFETCH(QMargins, mainMargins);
        QFETCH(QMargins, buttonColumnMargins);
        qApp->setLayoutDirection(direction);
        CCustomWidgetTitle title;

        auto* main = qobject_cast<QHBoxLayout*>(title.layout());
        QVERIFY(main);
        QCOMPARE(main->spacing(), 6);
        QCOMPARE(main->contentsMargins(), mainMargins);
        // Title column, stretch 1, button column.
        QCOMPARE(main->count(), 3);

        auto* left = qobject_cast<QVBoxLayout*>(main->itemAt(0)->layout());
        QVERIFY(left);
        QCOMPARE(left->contentsMargins(), QMargins(0, 16, 0, 4));
        QCOMPARE(left->count(), 1);
        QCOMPARE(left->itemAt(0)->widget(), titleLabel(title));

        QVERIFY(main->itemAt(1)->spacerItem());
        QCOMPARE(main->stretch(1), 1);

        auto* right = qobject_cast<QVBoxLayout*>(main->itemAt(2)->layout());
        QVERIFY(right);
        QCOMPARE(right->contentsMargins(), buttonColumnMargins);
        QCOMPARE(right->count(), 1);
        QCOMPARE(right->itemAt(0)->widget(), closeButton(title));
    }

    void closeClickEmitsTheSignal()
    {
        CCustomWidgetTitle title;
        QSignalSpy spy(&title, &CCustomWidgetTitle::signalCilckClose);
        closeButton(title)->click();
        QCOMPARE(spy.count(), 1);
        closeButton(title)->click();
        QCOMPARE(spy.count(), 2);
    }

    void theOneSignalKeepsItsName()
    {
        const QMetaObject& meta = CCustomWidgetTitle::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod method = meta.method(meta.methodOffset());
        QCOMPARE(method.methodType(), QMetaMethod::Signal);
        QCOMPARE(method.methodSignature(), QByteArray("signalCilckClose()"));
    }

    void setTitleSetsTheLabel()
    {
        CCustomWidgetTitle title;
        QCOMPARE(titleLabel(title)->text(), QString());
        title.setTitle(QStringLiteral("About Us"));
        QCOMPARE(titleLabel(title)->text(), QStringLiteral("About Us"));
    }

    void doesNotDragUntilItsDialogAsks()
    {
        QWidget dialog;
        auto* title = new CCustomWidgetTitle(&dialog);
        QVERIFY(!title->isMouseDragEnabled());
        title->setEnabledMouseDrag(&dialog, true);
        QCOMPARE(title->mouseDragTarget(), &dialog);
    }

    void closingADialogThroughTheSignal()
    {
        // The owner's wiring: the signal closes the dialog while it runs modally.
        QDialog dialog;
        auto* title = new CCustomWidgetTitle(&dialog);
        connect(title, &CCustomWidgetTitle::signalCilckClose, &dialog, &QWidget::close);
        bool wasModal = false;
        QTimer::singleShot(0, &dialog, [&] {
            wasModal = QApplication::activeModalWidget() == &dialog;
            closeButton(*title)->click();
        });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QVERIFY(wasModal);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(tst_CCustomWidgetTitle)
#include "tst_ccustomwidgettitle.moc"
