#include <ZVControl/ZVStyleWidget>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleOption>

namespace {

const QPoint kWindowPos(100, 100);
const QPoint kPressAt(10, 10);
const QPoint kDelta(50, 30);

} // namespace

class tst_ZVStyleWidget : public QObject
{
    Q_OBJECT

private:
    // A shown top-level window whose upper band is a ZVStyleWidget.
    struct Host
    {
        QWidget window;
        ZVStyleWidget* bar = nullptr;

        Host()
        {
            window.resize(400, 300);
            window.move(kWindowPos);
            bar = new ZVStyleWidget(&window);
            bar->setGeometry(0, 0, 400, 50);
        }
    };

    // Sends a mouse event to the bar with an explicit global position, as the window
    // system would after resolving the receiver.
    static bool send(QWidget* receiver, QEvent::Type type, const QPoint& global,
                     Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, receiver->mapFromGlobal(global), global, button, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(receiver, &event);
        return event.isAccepted();
    }

    // Press at kPressAt, move by kDelta with the given button held, release.
    static void drag(QWidget* receiver, Qt::MouseButton button)
    {
        const QPoint start = receiver->mapToGlobal(kPressAt);
        send(receiver, QEvent::MouseButtonPress, start, button, button);
        send(receiver, QEvent::MouseMove, start + kDelta, Qt::NoButton, button);
        send(receiver, QEvent::MouseButtonRelease, start + kDelta, button, Qt::NoButton);
        QCoreApplication::processEvents();
    }

private slots:
    void disabledByDefault();
    void leftDragMovesWindow();
    void dragFollowsCursorOverSeveralMoves();
    void pressAcceptedOnlyWhenDragging();
    void moveAfterReleaseDoesNotMove();
    void rightDragDoesNotMove();
    void disabledDoesNotMove();
    void enabledThenDisabledDoesNotMove();
    void nullTargetIsHarmless();
    void deletedTargetIsHarmless();
    void childTargetMovesItsWindow();
    void transparentChildLabelDrags();
    void maximisedTargetNotMoved();
    void styleSheetBackgroundPaints();
    void paintDrawsWidgetPrimitive();
    void nullEventsAreIgnored();
};

void tst_ZVStyleWidget::disabledByDefault()
{
    ZVStyleWidget w;
    QCOMPARE(w.isMouseDragEnabled(), false);
    QCOMPARE(w.mouseDragTarget(), static_cast<QWidget*>(nullptr));
    QCOMPARE(w.metaObject()->className(), "ZVStyleWidget");
    QVERIFY(qobject_cast<QFrame*>(&w) != nullptr);

    QWidget parent;
    auto* child = new ZVStyleWidget(&parent);
    QCOMPARE(child->parentWidget(), &parent);
}

void tst_ZVStyleWidget::leftDragMovesWindow()
{
    Host host;
    host.bar->setEnabledMouseDrag(&host.window, true);
    QCOMPARE(host.bar->isMouseDragEnabled(), true);
    QCOMPARE(host.bar->mouseDragTarget(), &host.window);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before + kDelta);
}

void tst_ZVStyleWidget::dragFollowsCursorOverSeveralMoves()
{
    Host host;
    host.bar->setEnabledMouseDrag(&host.window, true);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    const QPoint start = host.bar->mapToGlobal(kPressAt);
    send(host.bar, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
    send(host.bar, QEvent::MouseMove, start + QPoint(5, 5), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before + QPoint(5, 5));
    send(host.bar, QEvent::MouseMove, start + QPoint(-20, 40), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before + QPoint(-20, 40));
    send(host.bar, QEvent::MouseButtonRelease, start + QPoint(-20, 40), Qt::LeftButton,
         Qt::NoButton);
    QCOMPARE(host.window.pos(), before + QPoint(-20, 40));
}

void tst_ZVStyleWidget::pressAcceptedOnlyWhenDragging()
{
    Host host;
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));
    const QPoint start = host.bar->mapToGlobal(kPressAt);

    // As a plain QFrame: the press is left for the parent.
    QCOMPARE(send(host.bar, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton),
             false);
    send(host.bar, QEvent::MouseButtonRelease, start, Qt::LeftButton, Qt::NoButton);

    host.bar->setEnabledMouseDrag(&host.window, true);
    QCOMPARE(send(host.bar, QEvent::MouseButtonPress, start, Qt::RightButton, Qt::RightButton),
             false);
    send(host.bar, QEvent::MouseButtonRelease, start, Qt::RightButton, Qt::NoButton);
    QCOMPARE(send(host.bar, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton),
             true);
    QCOMPARE(send(host.bar, QEvent::MouseMove, start + kDelta, Qt::NoButton, Qt::LeftButton),
             false);
    QCOMPARE(send(host.bar, QEvent::MouseButtonRelease, start + kDelta, Qt::LeftButton,
                  Qt::NoButton),
             false);
}

void tst_ZVStyleWidget::moveAfterReleaseDoesNotMove()
{
    Host host;
    host.bar->setEnabledMouseDrag(&host.window, true);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    drag(host.bar, Qt::LeftButton);
    const QPoint afterDrag = host.window.pos();
    const QPoint cursor = host.bar->mapToGlobal(kPressAt);
    send(host.bar, QEvent::MouseMove, cursor + QPoint(70, 70), Qt::NoButton, Qt::NoButton);
    QCoreApplication::processEvents();
    QCOMPARE(host.window.pos(), afterDrag);
}

void tst_ZVStyleWidget::rightDragDoesNotMove()
{
    Host host;
    host.bar->setEnabledMouseDrag(&host.window, true);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::RightButton);
    QCOMPARE(host.window.pos(), before);
    drag(host.bar, Qt::MiddleButton);
    QCOMPARE(host.window.pos(), before);
}

void tst_ZVStyleWidget::disabledDoesNotMove()
{
    Host host;
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before);
}

void tst_ZVStyleWidget::enabledThenDisabledDoesNotMove()
{
    Host host;
    host.bar->setEnabledMouseDrag(&host.window, true);
    host.bar->setEnabledMouseDrag(&host.window, false);
    QCOMPARE(host.bar->isMouseDragEnabled(), false);
    QCOMPARE(host.bar->mouseDragTarget(), static_cast<QWidget*>(nullptr));
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before);
}

void tst_ZVStyleWidget::nullTargetIsHarmless()
{
    Host host;
    host.bar->setEnabledMouseDrag(nullptr, true);
    QCOMPARE(host.bar->isMouseDragEnabled(), false);
    QCOMPARE(host.bar->mouseDragTarget(), static_cast<QWidget*>(nullptr));
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before);
}

void tst_ZVStyleWidget::deletedTargetIsHarmless()
{
    Host host;
    auto* other = new QWidget;
    other->move(300, 300);
    host.bar->setEnabledMouseDrag(other, true);
    QCOMPARE(host.bar->mouseDragTarget(), other);
    delete other;
    QCOMPARE(host.bar->isMouseDragEnabled(), false);
    QCOMPARE(host.bar->mouseDragTarget(), static_cast<QWidget*>(nullptr));
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before);

    // Deleted in the middle of a drag.
    auto* third = new QWidget;
    third->resize(100, 100);
    third->move(200, 200);
    third->show();
    QVERIFY(QTest::qWaitForWindowExposed(third));
    host.bar->setEnabledMouseDrag(third, true);
    const QPoint start = host.bar->mapToGlobal(kPressAt);
    send(host.bar, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
    delete third;
    send(host.bar, QEvent::MouseMove, start + kDelta, Qt::NoButton, Qt::LeftButton);
    send(host.bar, QEvent::MouseButtonRelease, start + kDelta, Qt::LeftButton, Qt::NoButton);
    QCOMPARE(host.window.pos(), before);
    QCOMPARE(host.bar->mouseDragTarget(), static_cast<QWidget*>(nullptr));
}

void tst_ZVStyleWidget::childTargetMovesItsWindow()
{
    Host host;
    auto* content = new QWidget(&host.window);
    content->setGeometry(0, 50, 400, 250);
    host.bar->setEnabledMouseDrag(content, true);
    QCOMPARE(host.bar->mouseDragTarget(), content);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before + kDelta);
    QCOMPARE(content->pos(), QPoint(0, 50));
}

void tst_ZVStyleWidget::transparentChildLabelDrags()
{
    Host host;
    auto* label = new QLabel(QStringLiteral("Title"), host.bar);
    label->setGeometry(0, 0, 200, 50);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    host.bar->setEnabledMouseDrag(&host.window, true);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));
    QWindow* handle = host.window.windowHandle();
    QVERIFY(handle != nullptr);

    // Through the window, so that Qt itself picks the receiver under the cursor.
    const QPoint before = host.window.pos();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, kPressAt);
    QTest::mouseMove(handle, kPressAt + kDelta);
    // The window followed the cursor, so the cursor is over the pressed point again.
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, kPressAt);
    QCoreApplication::processEvents();
    QCOMPARE(host.window.pos(), before + kDelta);
}

void tst_ZVStyleWidget::maximisedTargetNotMoved()
{
    Host host;
    host.bar->setEnabledMouseDrag(&host.window, true);
    host.window.showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(&host.window));
    QTRY_VERIFY(host.window.isMaximized());

    const QPoint before = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), before);
    QVERIFY(host.window.isMaximized());

    host.window.showFullScreen();
    QTRY_VERIFY(host.window.isFullScreen());
    const QPoint fullScreenPos = host.window.pos();
    drag(host.bar, Qt::LeftButton);
    QCOMPARE(host.window.pos(), fullScreenPos);
}

void tst_ZVStyleWidget::styleSheetBackgroundPaints()
{
    ZVStyleWidget w;
    w.setStyleSheet(QStringLiteral("ZVStyleWidget { background: rgb(255,0,0); }"));
    w.resize(60, 40);
    const QImage image = w.grab().toImage();
    QCOMPARE(image.pixelColor(30, 20), QColor(255, 0, 0));
    QCOMPARE(image.pixelColor(1, 1), QColor(255, 0, 0));
}

void tst_ZVStyleWidget::paintDrawsWidgetPrimitive()
{
    // Styles other than the style-sheet one draw backgrounds through PE_Widget too.
    struct RecordingStyle : QProxyStyle
    {
        const QWidget* painted = nullptr;
        void drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                           QPainter* painter, const QWidget* widget) const override
        {
            if (element == PE_Widget) {
                const_cast<RecordingStyle*>(this)->painted = widget;
                painter->fillRect(option->rect, QColor(0, 255, 0));
                return;
            }
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    };
    RecordingStyle style;
    ZVStyleWidget w;
    w.setStyle(&style);
    w.resize(60, 40);
    const QImage image = w.grab().toImage();
    QCOMPARE(style.painted, &w);
    QCOMPARE(image.pixelColor(30, 20), QColor(0, 255, 0));
    w.setStyle(nullptr);
}

void tst_ZVStyleWidget::nullEventsAreIgnored()
{
    // Handlers reachable by subclasses must survive a null event.
    struct Probe : ZVStyleWidget
    {
        void feedNulls()
        {
            mousePressEvent(nullptr);
            mouseMoveEvent(nullptr);
            mouseReleaseEvent(nullptr);
            paintEvent(nullptr);
        }
    };
    QWidget window;
    Probe probe;
    probe.setEnabledMouseDrag(&window, true);
    probe.feedNulls();
    QCOMPARE(probe.isMouseDragEnabled(), true);
}

QTEST_MAIN(tst_ZVStyleWidget)
#include "tst_zvstylewidget.moc"
