#include <ZVControl/ZVMenu>

#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

Q_DECLARE_METATYPE(Qt::LayoutDirection)

class tst_ZVMenu : public QObject
{
    Q_OBJECT

private:
    // What the timer saw of the menu while it was open.
    struct Seen
    {
        QWidget* popup = nullptr;
        QPoint pos;
        QPoint expected;
    };

private slots:
    void init();
    void constructors();
    void menuPosition_data();
    void menuPosition();
    void execMenuAtWidget_data();
    void execMenuAtWidget();
    void execMenuAtWidgetEscape();
    void execMenuAtWidgetNull();
};

void tst_ZVMenu::init()
{
    // QMenu snaps to the cursor when asked to open right next to it; keep the cursor out
    // of the way so the position under test is the one the menu gets.
    QCursor::setPos(QPoint(1, 1));
}

void tst_ZVMenu::constructors()
{
    ZVMenu plain;
    QCOMPARE(plain.title(), QString());
    QCOMPARE(plain.parentWidget(), static_cast<QWidget*>(nullptr));
    QCOMPARE(plain.metaObject()->className(), "ZVMenu");
    QVERIFY(qobject_cast<QMenu*>(&plain) != nullptr);

    QWidget parent;
    auto* child = new ZVMenu(&parent);
    QCOMPARE(child->parentWidget(), &parent);
    QCOMPARE(child->title(), QString());

    ZVMenu titled(QStringLiteral("File"));
    QCOMPARE(titled.title(), QStringLiteral("File"));
    QCOMPARE(titled.parentWidget(), static_cast<QWidget*>(nullptr));

    auto* titledChild = new ZVMenu(QStringLiteral("Edit"), &parent);
    QCOMPARE(titledChild->title(), QStringLiteral("Edit"));
    QCOMPARE(titledChild->parentWidget(), &parent);
}

void tst_ZVMenu::menuPosition_data()
{
    QTest::addColumn<QRect>("widget");
    QTest::addColumn<QSize>("menu");
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QPoint>("expected");

    const QRect screen(0, 0, 800, 600);
    const QRect inset(100, 50, 700, 500); // right 799, bottom 549
    const QSize menu(120, 200);
    const auto ltr = Qt::LeftToRight;
    const auto rtl = Qt::RightToLeft;

    QTest::newRow("below") << QRect(100, 100, 80, 30) << menu << screen << QPoint() << ltr
                           << QPoint(100, 130);
    QTest::newRow("offset") << QRect(100, 100, 80, 30) << menu << screen << QPoint(5, -3)
                            << ltr << QPoint(105, 127);
    QTest::newRow("right edge") << QRect(750, 100, 40, 30) << menu << screen << QPoint() << ltr
                                << QPoint(680, 130);
    QTest::newRow("right edge by offset") << QRect(600, 100, 40, 30) << menu << screen
                                          << QPoint(100, 0) << ltr << QPoint(680, 130);
    QTest::newRow("exactly fits right") << QRect(680, 100, 40, 30) << menu << screen
                                        << QPoint() << ltr << QPoint(680, 130);
    QTest::newRow("bottom edge") << QRect(100, 500, 80, 30) << menu << screen << QPoint() << ltr
                                 << QPoint(100, 400);
    QTest::newRow("bottom edge by offset") << QRect(100, 100, 80, 30) << menu << screen
                                           << QPoint(0, 300) << ltr << QPoint(100, 400);
    QTest::newRow("exactly fits bottom") << QRect(100, 370, 80, 30) << menu << screen
                                         << QPoint() << ltr << QPoint(100, 400);
    QTest::newRow("bottom-right corner") << QRect(780, 590, 20, 10) << menu << screen
                                         << QPoint() << ltr << QPoint(680, 400);
    QTest::newRow("left edge") << QRect(110, 100, 80, 30) << menu << inset << QPoint(-50, 0)
                               << ltr << QPoint(100, 130);
    QTest::newRow("top edge") << QRect(150, 0, 80, 20) << menu << inset << QPoint() << ltr
                              << QPoint(150, 50);
    QTest::newRow("inset bottom") << QRect(150, 500, 80, 20) << menu << inset << QPoint()
                                  << ltr << QPoint(150, 350);
    QTest::newRow("rtl") << QRect(300, 100, 80, 30) << menu << screen << QPoint() << rtl
                         << QPoint(260, 130);
    QTest::newRow("rtl offset") << QRect(300, 100, 80, 30) << menu << screen << QPoint(10, 5)
                                << rtl << QPoint(270, 135);
    QTest::newRow("rtl left edge") << QRect(10, 100, 80, 30) << menu << screen << QPoint()
                                   << rtl << QPoint(0, 130);
    QTest::newRow("rtl wide widget") << QRect(100, 100, 300, 30) << menu << screen << QPoint()
                                     << rtl << QPoint(280, 130);
    QTest::newRow("larger than area") << QRect(100, 100, 80, 30) << QSize(900, 700) << screen
                                      << QPoint() << ltr << QPoint(0, 0);
    QTest::newRow("larger than inset") << QRect(300, 300, 80, 30) << QSize(900, 700) << inset
                                       << QPoint() << rtl << QPoint(100, 50);
    QTest::newRow("screen left of primary")
        << QRect(-100, 200, 80, 30) << menu << QRect(-1280, 0, 1280, 1024) << QPoint() << ltr
        << QPoint(-120, 230);
    QTest::newRow("no area") << QRect(750, 580, 40, 30) << menu << QRect() << QPoint(1, 1)
                             << ltr << QPoint(751, 611);
}

void tst_ZVMenu::menuPosition()
{
    QFETCH(QRect, widget);
    QFETCH(QSize, menu);
    QFETCH(QRect, area);
    QFETCH(QPoint, offset);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(QPoint, expected);

    QCOMPARE(ZVMenu::menuPosition(widget, menu, area, offset, direction), expected);
}

void tst_ZVMenu::execMenuAtWidget_data()
{
    QTest::addColumn<QPoint>("windowPos");
    QTest::addColumn<QRect>("buttonGeometry");
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<bool>("clamped");

    QTest::newRow("below") << QPoint(100, 100) << QRect(20, 20, 80, 24) << QPoint() << Qt::LeftToRight
                           << false;
    QTest::newRow("offset") << QPoint(100, 100) << QRect(20, 20, 80, 24) << QPoint(7, 3)
                            << Qt::LeftToRight << false;
    QTest::newRow("rtl") << QPoint(200, 100) << QRect(100, 20, 80, 24) << QPoint()
                         << Qt::RightToLeft << false;
    QTest::newRow("clamped") << QPoint(600, 480) << QRect(100, 60, 80, 24) << QPoint()
                             << Qt::LeftToRight << true;
    // The offset alone takes the anchor below the screen; the menu still hugs the bottom.
    QTest::newRow("offset past bottom") << QPoint(600, 480) << QRect(100, 60, 80, 24)
                                        << QPoint(30, 120) << Qt::LeftToRight << true;
}

void tst_ZVMenu::execMenuAtWidget()
{
    QFETCH(QPoint, windowPos);
    QFETCH(QRect, buttonGeometry);
    QFETCH(QPoint, offset);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(bool, clamped);

    // The clamped rows are written for an 800×600 screen, Qt 5's offscreen one; they keep
    // their distance from its bottom right corner on a screen of another size (Qt 6's
    // offscreen screen is 800×800).
    if (clamped) {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        windowPos += screen.bottomRight() + QPoint(1, 1) - QPoint(800, 600);
    }
    QWidget window;
    window.resize(200, 100);
    window.move(windowPos);
    auto* button = new QPushButton(QStringLiteral("Menu"), &window);
    button->setGeometry(buttonGeometry);
    button->setLayoutDirection(direction);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    ZVMenu menu;
    menu.addAction(QStringLiteral("First"));
    QAction* second = menu.addAction(QStringLiteral("Second"));
    for (int i = 0; i < 6; ++i)
        menu.addAction(QStringLiteral("Filler %1").arg(i));
    QSignalSpy triggered(&menu, &QMenu::triggered);

    Seen seen;
    QTimer::singleShot(0, &menu, [&] {
        seen.popup = QApplication::activePopupWidget();
        if (!seen.popup)
            return;
        seen.pos = seen.popup->pos();
        const QRect widgetRect(button->mapToGlobal(QPoint(0, 0)), button->size());
        seen.expected = ZVMenu::menuPosition(widgetRect, menu.sizeHint(),
                                             button->screen()->availableGeometry(), offset,
                                             direction);
        menu.setActiveAction(second);
        QTest::keyClick(seen.popup, Qt::Key_Return);
    });
    QAction* chosen = menu.execMenuAtWidget(button, offset);

    QCOMPARE(seen.popup, &menu);
    QCOMPARE(chosen, second);
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(triggered.at(0).at(0).value<QAction*>(), second);
    QCOMPARE(seen.pos, seen.expected);
    QCOMPARE(menu.isVisible(), false);

    // Cross-check against the placement rule stated directly.
    const QPoint bottomLeft = button->mapToGlobal(QPoint(0, button->height()));
    const QSize size = menu.sizeHint();
    QPoint unclamped = bottomLeft + offset;
    if (direction == Qt::RightToLeft)
        unclamped.rx() += button->width() - size.width();
    if (clamped) {
        QVERIFY(seen.pos != unclamped);
        const QRect area = button->screen()->availableGeometry();
        QVERIFY(area.contains(QRect(seen.pos, size)));
        QCOMPARE(seen.pos.y(), area.bottom() - size.height() + 1);
    } else {
        QCOMPARE(seen.pos, unclamped);
    }
}

void tst_ZVMenu::execMenuAtWidgetEscape()
{
    QWidget window;
    window.resize(200, 100);
    window.move(100, 100);
    auto* button = new QPushButton(QStringLiteral("Menu"), &window);
    button->setGeometry(20, 20, 80, 24);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    ZVMenu menu;
    menu.addAction(QStringLiteral("First"));
    QSignalSpy triggered(&menu, &QMenu::triggered);
    QWidget* popup = nullptr;
    QTimer::singleShot(0, &menu, [&popup] {
        popup = QApplication::activePopupWidget();
        if (popup)
            QTest::keyClick(popup, Qt::Key_Escape);
    });
    QCOMPARE(menu.execMenuAtWidget(button, QPoint()), static_cast<QAction*>(nullptr));
    QCOMPARE(popup, &menu);
    QCOMPARE(triggered.count(), 0);
    QCOMPARE(menu.isVisible(), false);
}

void tst_ZVMenu::execMenuAtWidgetNull()
{
    ZVMenu menu;
    menu.addAction(QStringLiteral("First"));
    QWidget* popup = nullptr;
    QTimer::singleShot(0, &menu, [&popup] {
        popup = QApplication::activePopupWidget();
        if (popup)
            popup->close();
    });
    QCOMPARE(menu.execMenuAtWidget(nullptr, QPoint(3, 3)), static_cast<QAction*>(nullptr));
    QCOMPARE(menu.isVisible(), false);
    QCoreApplication::processEvents();
    QCOMPARE(popup, static_cast<QWidget*>(nullptr));
}

QTEST_MAIN(tst_ZVMenu)
#include "tst_zvmenu.moc"
