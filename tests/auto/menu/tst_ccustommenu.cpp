#include <ZVCore/private/CCustomMenu>

#include <ZVControl/ZVMenu>

#include <QtGui/QCursor>
#include <QtGui/QImage>
#include <QtTest/QtTest>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6
#include <QtWidgets/QApplication>

// The menu as a style sheet sets it up: its own panel transparent, so that what shows
// is what the menu paints itself.
static const char kTransparentPanel[] = "CCustomMenu { background: transparent; border: none; }";

class tst_CCustomMenu : public QObject
{
    Q_OBJECT

private:
    // The menu rendered the way it would reach the screen, alpha not premultiplied.
    static QImage paintedMenu(CCustomMenu& menu, const QSize& size)
    {
        menu.resize(size);
        return menu.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    }

private slots:
    void initTestCase();
    void init();
    // Runs first: the flag belongs to the process.
    void classShadowRemovedOnFirstNativeWindow();
    void constructors_data();
    void constructors();
    void defaultProperties();
    void propertiesFromStyleSheet();
    void propertySetters();
    void background_data();
    void background();
    void shadowBand_data();
    void shadowBand();
    void corners_data();
    void corners();
    void keyboardStillTriggers();
    void mouseStillTriggers();
    void genericMenuEventHandlingBypassed();
};

void tst_CCustomMenu::initTestCase()
{
    // Nothing has created a native window for a menu yet.
    QCOMPARE(CCustomMenu::classShadowRemoved(), false);
}

void tst_CCustomMenu::init()
{
    // QMenu opens at the cursor when it is right next to the requested position.
    QCursor::setPos(QPoint(1, 1));
}

void tst_CCustomMenu::classShadowRemovedOnFirstNativeWindow()
{
    // Other menus do not count.
    {
        ZVMenu plain;
        plain.addAction(QStringLiteral("Plain"));
        plain.popup(QPoint(200, 200));
        QVERIFY(QTest::qWaitForWindowExposed(&plain));
        plain.close();
    }
    QCOMPARE(CCustomMenu::classShadowRemoved(), false);

    CCustomMenu first;
    first.addAction(QStringLiteral("One"));
    QCOMPARE(CCustomMenu::classShadowRemoved(), false); // no native window yet
    first.popup(QPoint(200, 200));
    QVERIFY(QTest::qWaitForWindowExposed(&first));
    QCOMPARE(CCustomMenu::classShadowRemoved(), true);
    first.close();

    // A second menu finds the work done and leaves it so.
    CCustomMenu second;
    second.addAction(QStringLiteral("Two"));
    second.popup(QPoint(220, 220));
    QVERIFY(QTest::qWaitForWindowExposed(&second));
    QCOMPARE(CCustomMenu::classShadowRemoved(), true);
    second.close();
    QCOMPARE(CCustomMenu::classShadowRemoved(), true);
}

void tst_CCustomMenu::constructors_data()
{
    QTest::addColumn<bool>("titled");
    QTest::addColumn<bool>("parented");

    QTest::newRow("parent only, none") << false << false;
    QTest::newRow("parent only, widget") << false << true;
    QTest::newRow("title, no parent") << true << false;
    QTest::newRow("title and parent") << true << true;
}

void tst_CCustomMenu::constructors()
{
    QFETCH(bool, titled);
    QFETCH(bool, parented);

    QWidget parent;
    QWidget* const expectedParent = parented ? &parent : nullptr;
    CCustomMenu* menu = titled ? new CCustomMenu(QStringLiteral("Help"), expectedParent)
                               : new CCustomMenu(expectedParent);
    QScopedPointer<CCustomMenu> owner(parented ? nullptr : menu);

    QCOMPARE(menu->parentWidget(), expectedParent);
    QCOMPARE(menu->title(), titled ? QStringLiteral("Help") : QString());
    QVERIFY(qobject_cast<ZVMenu*>(menu) != nullptr);
    QCOMPARE(menu->metaObject()->className(), "CCustomMenu");

    QCOMPARE(menu->windowType(), Qt::Popup);
    QVERIFY(menu->windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(menu->windowFlags() & ~Qt::WindowType_Mask, Qt::WindowFlags(Qt::FramelessWindowHint));
    QVERIFY(menu->testAttribute(Qt::WA_TranslucentBackground));
}

void tst_CCustomMenu::defaultProperties()
{
    CCustomMenu menu;
    const QVariant radius = menu.property("menuRadius");
    const QVariant color = menu.property("menuBackgroundColor");
    QCOMPARE(radius.userType(), int(QMetaType::Int));
    QCOMPARE(radius.toInt(), 0);
    QCOMPARE(color.userType(), int(QMetaType::QString));
    QCOMPARE(color.toString(), QString());
    QCOMPARE(menu.menuRadius(), 0);
    QCOMPARE(menu.menuBackgroundColor(), QString());
}

void tst_CCustomMenu::propertiesFromStyleSheet()
{
    CCustomMenu menu;
    menu.setStyleSheet(QStringLiteral("CCustomMenu { qproperty-menuRadius: 6; qproperty-menuBackgroundColor: \"#102030\"; }"));
    menu.ensurePolished();
    QCOMPARE(menu.property("menuRadius").toInt(), 6);
    QCOMPARE(menu.property("menuBackgroundColor").toString(), QStringLiteral("#102030"));

    // Through the application's style sheet as well, the way the skin applies it.
    qApp->setStyleSheet(QStringLiteral("CCustomMenu { qproperty-menuRadius: 9; qproperty-menuBackgroundColor: red; }"));
    CCustomMenu other;
    other.ensurePolished();
    qApp->setStyleSheet(QString());
    QCOMPARE(other.menuRadius(), 9);
    QCOMPARE(other.menuBackgroundColor(), QStringLiteral("red"));
}

void tst_CCustomMenu::propertySetters()
{
    CCustomMenu menu;
    QVERIFY(menu.setProperty("menuRadius", 12));
    QVERIFY(menu.setProperty("menuBackgroundColor", QStringLiteral("#abcdef")));
    QCOMPARE(menu.menuRadius(), 12);
    QCOMPARE(menu.menuBackgroundColor(), QStringLiteral("#abcdef"));
    menu.setMenuRadius(-3);
    menu.setMenuBackgroundColor(QString());
    QCOMPARE(menu.property("menuRadius").toInt(), -3);
    QCOMPARE(menu.property("menuBackgroundColor").toString(), QString());
}

void tst_CCustomMenu::background_data()
{
    QTest::addColumn<QString>("colorName");
    QTest::addColumn<int>("radius");
    QTest::addColumn<QRgb>("expected");

    QTest::newRow("empty is white") << QString() << 0 << qRgba(255, 255, 255, 255);
    QTest::newRow("empty is white, rounded") << QString() << 8 << qRgba(255, 255, 255, 255);
    QTest::newRow("hex") << QStringLiteral("#102030") << 6 << qRgba(0x10, 0x20, 0x30, 255);
    QTest::newRow("svg name") << QStringLiteral("darkorange") << 0 << qRgba(255, 140, 0, 255);
}

void tst_CCustomMenu::background()
{
    QFETCH(QString, colorName);
    QFETCH(int, radius);
    QFETCH(QRgb, expected);

    CCustomMenu menu;
    menu.setStyleSheet(QLatin1String(kTransparentPanel));
    menu.setMenuRadius(radius);
    menu.setMenuBackgroundColor(colorName);
    const QImage image = paintedMenu(menu, QSize(200, 120));
    QCOMPARE(image.size(), QSize(200, 120));

    // The empty middle of the menu and points well inside the rounded rectangle.
    QCOMPARE(image.pixel(100, 60), expected);
    QCOMPARE(image.pixel(5 + radius + 4, 60), expected);
    QCOMPARE(image.pixel(100, 45), expected);
    QCOMPARE(image.pixel(194 - radius - 4, 114 - radius - 4), expected);
    // Just inside the band: x 6 is the background's second column.
    QCOMPARE(image.pixel(6, 60), expected);
    QCOMPARE(image.pixel(193, 60), expected);
    QCOMPARE(image.pixel(100, 6), expected);
    QCOMPARE(image.pixel(100, 113), expected);
}

void tst_CCustomMenu::shadowBand_data()
{
    QTest::addColumn<QString>("colorName");
    QTest::addColumn<int>("radius");
    QTest::addColumn<QSize>("size");

    QTest::newRow("white, square") << QString() << 0 << QSize(200, 120);
    QTest::newRow("white, rounded") << QString() << 6 << QSize(200, 120);
    QTest::newRow("dark, rounded") << QStringLiteral("#102030") << 6 << QSize(160, 90);
    QTest::newRow("dark, large radius") << QStringLiteral("#102030") << 20 << QSize(240, 160);
}

void tst_CCustomMenu::shadowBand()
{
    QFETCH(QString, colorName);
    QFETCH(int, radius);
    QFETCH(QSize, size);

    CCustomMenu menu;
    menu.setStyleSheet(QLatin1String(kTransparentPanel));
    menu.setMenuRadius(radius);
    menu.setMenuBackgroundColor(colorName);
    const QImage image = paintedMenu(menu, size);
    const QRgb background = image.pixel(size.width() / 2, size.height() / 2);
    QCOMPARE(qAlpha(background), 255);

    const int w = size.width();
    const int h = size.height();
    // Four walks from the outer edge inwards across the band, at the middle of each side,
    // where the rings are straight.
    struct Walk { const char* side; QPoint start; QPoint step; };
    const Walk walks[] = {
        {"left", QPoint(0, h / 2), QPoint(1, 0)},
        {"right", QPoint(w - 1, h / 2), QPoint(-1, 0)},
        {"top", QPoint(w / 2, 0), QPoint(0, 1)},
        {"bottom", QPoint(w / 2, h - 1), QPoint(0, -1)},
    };
    for (const Walk& walk : walks) {
        int outer = 0;
        for (int k = 0; k < 5; ++k) {
            const QPoint p = walk.start + walk.step * k;
            const QRgb pixel = image.pixel(p);
            const QByteArray where = QByteArray(walk.side) + " band pixel " + QByteArray::number(k);
            QVERIFY2(pixel != background, where.constData());
            // Black rings: no colour, only coverage.
            QVERIFY2(qRed(pixel) == 0 && qGreen(pixel) == 0 && qBlue(pixel) == 0, where.constData());
            QVERIFY2(qAlpha(pixel) > 0, where.constData());
            // Fading outwards: each pixel further in is darker than the one outside it,
            // and all of them stay well below the innermost ring's alpha of 44 doubled.
            QVERIFY2(qAlpha(pixel) > outer, where.constData());
            QVERIFY2(qAlpha(pixel) < 88, where.constData());
            outer = qAlpha(pixel);
        }
    }

    // The outermost ring (alpha 4) lies on x 1, so column 0 gets at most its half.
    QVERIFY(qAlpha(image.pixel(0, h / 2)) <= 4);
}

void tst_CCustomMenu::corners_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<bool>("square");

    QTest::newRow("radius 0") << 0 << true;
    QTest::newRow("radius 10") << 10 << false;
    QTest::newRow("radius 20") << 20 << false;
}

void tst_CCustomMenu::corners()
{
    QFETCH(int, radius);
    QFETCH(bool, square);

    CCustomMenu menu;
    menu.setStyleSheet(QLatin1String(kTransparentPanel));
    menu.setMenuRadius(radius);
    menu.setMenuBackgroundColor(QStringLiteral("#102030"));
    const QSize size(200, 120);
    const QImage image = paintedMenu(menu, size);
    const QRgb background = qRgba(0x10, 0x20, 0x30, 255);

    // The background's corner pixels, one in from its edge, where ring 0 does not reach,
    // and the outermost ring's corner pixels.
    const QPoint backgroundCorners[] = {QPoint(6, 6), QPoint(193, 6), QPoint(6, 113), QPoint(193, 113)};
    const QPoint ringCorners[] = {QPoint(1, 1), QPoint(198, 1), QPoint(1, 118), QPoint(198, 118)};
    for (const QPoint& p : backgroundCorners) {
        if (square)
            QCOMPARE(image.pixel(p), background);
        else
            QVERIFY(image.pixel(p) != background);
    }
    for (const QPoint& p : ringCorners) {
        if (square)
            QVERIFY(qAlpha(image.pixel(p)) > 0);
        else
            QCOMPARE(qAlpha(image.pixel(p)), 0);
    }
    // The image corner itself is outside every rounded ring.
    if (!square)
        QCOMPARE(image.pixel(0, 0), qRgba(0, 0, 0, 0));
}

void tst_CCustomMenu::keyboardStillTriggers()
{
    CCustomMenu menu;
    QAction* first = menu.addAction(QStringLiteral("First"));
    QAction* second = menu.addAction(QStringLiteral("Second"));
    QSignalSpy firstSpy(first, &QAction::triggered);
    QSignalSpy secondSpy(second, &QAction::triggered);
    QSignalSpy menuSpy(&menu, &QMenu::triggered);

    QWidget* seen = nullptr;
    QTimer::singleShot(0, &menu, [&] {
        seen = QApplication::activePopupWidget();
        if (!seen)
            return;
        QTest::keyClick(seen, Qt::Key_Down);
        QTest::keyClick(seen, Qt::Key_Down);
        QTest::keyClick(seen, Qt::Key_Return);
    });
    QAction* chosen = menu.exec(QPoint(200, 200));

    QCOMPARE(seen, &menu);
    QCOMPARE(chosen, second);
    QCOMPARE(firstSpy.count(), 0);
    QCOMPARE(secondSpy.count(), 1);
    QCOMPARE(menuSpy.count(), 1);
    QCOMPARE(menuSpy.at(0).at(0).value<QAction*>(), second);
    QVERIFY(!menu.isVisible());
}

void tst_CCustomMenu::mouseStillTriggers()
{
    CCustomMenu menu;
    QAction* first = menu.addAction(QStringLiteral("First"));
    QAction* second = menu.addAction(QStringLiteral("Second"));
    QAction* third = menu.addAction(QStringLiteral("Third"));
    QSignalSpy firstSpy(first, &QAction::triggered);
    QSignalSpy secondSpy(second, &QAction::triggered);
    QSignalSpy thirdSpy(third, &QAction::triggered);

    QWidget* seen = nullptr;
    QTimer::singleShot(0, &menu, [&] {
        seen = QApplication::activePopupWidget();
        if (!seen)
            return;
        const QPoint centre = menu.actionGeometry(third).center();
        QTest::mouseMove(seen, centre);
        QTest::mouseClick(seen, Qt::LeftButton, Qt::NoModifier, centre);
    });
    QAction* chosen = menu.exec(QPoint(200, 200));

    QCOMPARE(seen, &menu);
    QCOMPARE(chosen, third);
    QCOMPARE(firstSpy.count(), 0);
    QCOMPARE(secondSpy.count(), 0);
    QCOMPARE(thirdSpy.count(), 1);
    QVERIFY(!menu.isVisible());
}

void tst_CCustomMenu::genericMenuEventHandlingBypassed()
{
    // QMenu claims arrow keys as shortcut overrides in its event(); a menu that goes
    // straight to QWidget::event leaves them for the shortcut system.
    ZVMenu plain;
    CCustomMenu custom;
    QKeyEvent forPlain(QEvent::ShortcutOverride, Qt::Key_Down, Qt::NoModifier);
    forPlain.ignore();
    QCoreApplication::sendEvent(&plain, &forPlain);
    QKeyEvent forCustom(QEvent::ShortcutOverride, Qt::Key_Down, Qt::NoModifier);
    forCustom.ignore();
    QCoreApplication::sendEvent(&custom, &forCustom);
    QCOMPARE(forPlain.isAccepted(), true);
    QCOMPARE(forCustom.isAccepted(), false);
}

QTEST_MAIN(tst_CCustomMenu)
#include "tst_ccustommenu.moc"
