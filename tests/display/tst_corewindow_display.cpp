// The core window on a real desktop: Xvfb with openbox (work area 1920 x 1040, a 40-pixel
// bottom margin reserved) and, where translucency matters, xcompmgr. The window is
// zv_corewindow_host, moved and resized with xdotool as a user would; positions are read
// back from the X server and shadows from screenshots, which are kept under
// <build>/tests/display/artefacts.
#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtTest/QtTest>

#include <cmath>
#include <memory>

#include "displaysession.h"

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 600;
constexpr int kTitleHeight = 45;
// The window's own shadow margin in Qt-painted mode, and the layered shadow's reach.
constexpr int kMargin = 5;
// Where the tests grab the title: inside the bar, left of its buttons and past the logo.
const QPoint kTitleGrip(200, 20);
const QColor kContent(42, 157, 92);
const QRect kExpectedWorkArea(0, 0, DisplaySession::kScreenWidth,
                              DisplaySession::kScreenHeight - DisplaySession::kBottomMargin);

QString describe(const QRect& r)
{
    return QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

QString describe(QRgb c)
{
    return QStringLiteral("(%1,%2,%3)").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c));
}

bool within(int actual, int expected, int tolerance)
{
    return qAbs(actual - expected) <= tolerance;
}

bool closeColour(QRgb actual, QRgb expected, int tolerance)
{
    return within(qRed(actual), qRed(expected), tolerance) && within(qGreen(actual), qGreen(expected), tolerance)
           && within(qBlue(actual), qBlue(expected), tolerance);
}

QRgb grey(int v)
{
    return qRgb(v, v, v);
}

// Black at \a alpha over the test desktop's grey, as a compositor blends premultiplied
// pixels.
int darkenedDesktop(int alpha)
{
    return (DisplaySession::kDesktopGrey * (255 - alpha) + 127) / 255;
}

// What the window paints in Qt-painted mode with no corner radius set: a white rectangle
// inside the 5-pixel margin and five rings around it, one pixel further out and fainter
// each, blended over the desktop.
QImage paintedFrameOverDesktop(int w, int h)
{
    QImage frame(w, h, QImage::Format_ARGB32_Premultiplied);
    frame.fill(Qt::transparent);
    {
        QPainter painter(&frame);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath background;
        background.setFillRule(Qt::WindingFill);
        background.addRoundedRect(QRectF(5.0, 5.0, w - 10, h - 10), 0, 0, Qt::AbsoluteSize);
        painter.fillPath(background, QBrush(Qt::white, Qt::SolidPattern));
        QColor pen(0, 0, 0, 50);
        for (int i = 0; i < 5; ++i) {
            QPainterPath ring;
            ring.setFillRule(Qt::WindingFill);
            ring.addRoundedRect(QRectF(5 - i, 5 - i, w - 10 + 2 * i, h - 10 + 2 * i), 0, 0, Qt::AbsoluteSize);
            pen.setAlpha(int((std::sqrt(5.0) - std::sqrt(double(i))) * 20.0));
            painter.setPen(pen);
            painter.drawPath(ring);
        }
    }
    QImage desktop(w, h, QImage::Format_RGB32);
    desktop.fill(grey(DisplaySession::kDesktopGrey));
    QPainter painter(&desktop);
    painter.drawImage(0, 0, frame);
    return desktop;
}

} // namespace

class tst_CoreWindowDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void dragTitleMovesWindow_data();
    void dragTitleMovesWindow();
    void dragTitleButtonKeepsWindow_data();
    void dragTitleButtonKeepsWindow();
    void dragLeftBorder_data();
    void dragLeftBorder();
    void doubleClickTitleMaximisesToWorkArea_data();
    void doubleClickTitleMaximisesToWorkArea();
    void maximisedAtStartCoversWorkArea();
    void layeredShadowLiesOutsideOnly();
    void paintedShadowRingsInMargin();
    void noCompositorNoMarginAndLiveSwitch();

private:
    bool startDesktop(DisplaySession::Compositor compositor, const QStringList& hostArguments);
    QString artefact(const QString& name) const;
    QImage screenshot(const QString& name) const;
    QPoint titleGripOk() const;
    bool qtAgreesWithServer(const QRect& server);

    std::unique_ptr<DisplaySession> m_session;
    std::unique_ptr<DisplayProgram> m_host;
    QString m_failure;
};

void tst_CoreWindowDisplay::initTestCase()
{
    const QStringList missing = DisplaySession::missingTools();
    if (!missing.isEmpty())
        QSKIP(qPrintable(QStringLiteral("not installed: ") + missing.join(QLatin1Char(' '))
                         + QStringLiteral(" (Debian: xvfb openbox xcompmgr xdotool x11-utils imagemagick x11-xserver-utils)")));
    // Only this run's screenshots, so that a stale "failed" picture misleads nobody.
    QDir artefacts(QStringLiteral(ZV_DISPLAY_ARTEFACTS));
    artefacts.removeRecursively();
    artefacts.mkpath(QStringLiteral("."));
}

void tst_CoreWindowDisplay::cleanup()
{
    if (QTest::currentTestFailed() && m_session && !m_session->display().isEmpty())
        screenshot(QStringLiteral("failed"));
    if (m_host) {
        if (QTest::currentTestFailed())
            qWarning().noquote() << "host output:\n" << m_host->output();
        m_host.reset();
    }
    m_session.reset();
}

QString tst_CoreWindowDisplay::artefact(const QString& name) const
{
    QString tag = QString::fromLatin1(QTest::currentDataTag());
    tag.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9_-]")), QStringLiteral("_"));
    QString file = QString::fromLatin1(QTest::currentTestFunction());
    if (!tag.isEmpty())
        file += QLatin1Char('-') + tag;
    return QStringLiteral(ZV_DISPLAY_ARTEFACTS) + QLatin1Char('/') + file + QLatin1Char('-') + name
           + QStringLiteral(".png");
}

QImage tst_CoreWindowDisplay::screenshot(const QString& name) const
{
    return m_session->screenshot(artefact(name));
}

bool tst_CoreWindowDisplay::startDesktop(DisplaySession::Compositor compositor, const QStringList& hostArguments)
{
    m_failure.clear();
    QElapsedTimer timer;
    timer.start();
    m_session.reset(new DisplaySession);
    if (!m_session->start(compositor)) {
        m_failure = QStringLiteral("desktop: ") + m_session->error();
        return false;
    }
    const qint64 desktopMs = timer.elapsed();
    m_host.reset(new DisplayProgram(QStringLiteral(ZV_COREWINDOW_HOST_PATH)));
    if (!m_host->start(*m_session, hostArguments)) {
        m_failure = QStringLiteral("host: ") + m_host->error();
        return false;
    }
    qInfo().noquote() << QStringLiteral("desktop %1 up in %2 ms, window shown after %3 ms")
                             .arg(m_session->display())
                             .arg(desktopMs)
                             .arg(timer.elapsed());
    return true;
}

// The grip point lies inside the title bar and on none of its children, as the host
// laid them out; otherwise a test of dragging would test something else.
QPoint tst_CoreWindowDisplay::titleGripOk() const
{
    const QRect title = m_host->widgetRect(QStringLiteral("title"));
    if (!title.contains(kTitleGrip))
        return QPoint(-1, -1);
    for (const QString& name : m_host->widgetNames()) {
        if (name == QLatin1String("title") || name == QLatin1String("central"))
            continue;
        if (m_host->widgetRect(name).contains(kTitleGrip))
            return QPoint(-1, -1);
    }
    return kTitleGrip;
}

// The frame's hit test works on the geometry Qt keeps for the window. Where that
// disagrees with the X server (Qt asks the server for the position right after the
// manager reparents the window, and the manager may not have placed its frame yet), the
// window answers presses as if it were elsewhere; say so rather than blame the drag.
bool tst_CoreWindowDisplay::qtAgreesWithServer(const QRect& server)
{
    QElapsedTimer timer;
    timer.start();
    QRect qt = m_host->qtGeometry();
    while (qt != server && timer.elapsed() < 2000) {
        QThread::msleep(100);
        qt = m_host->qtGeometry();
    }
    if (qt == server)
        return true;
    m_failure = QStringLiteral("Qt believes the window is at %1 while the X server has it at %2")
                    .arg(describe(qt), describe(server));
    return false;
}

// --- moving ---------------------------------------------------------------------------

void tst_CoreWindowDisplay::dragTitleMovesWindow_data()
{
    QTest::addColumn<QString>("shadow");
    QTest::newRow("qt-painted shadow") << QStringLiteral("unset");
    QTest::newRow("layered shadow") << QStringLiteral("layered");
}

void tst_CoreWindowDisplay::dragTitleMovesWindow()
{
    QFETCH(QString, shadow);
    QVERIFY2(startDesktop(DisplaySession::WithCompositor, {QStringLiteral("--shadow"), shadow}), qPrintable(m_failure));
    QCOMPARE(titleGripOk(), kTitleGrip);
    const unsigned long window = m_host->windowId();

    const QRect before = m_session->settledGeometry(window);
    QCOMPARE(before.size(), QSize(kWidth, kHeight));
    QVERIFY2(qtAgreesWithServer(before), qPrintable(m_failure));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_session->drag(before.topLeft() + kTitleGrip, QPoint(150, 80)));
    const QRect after = m_session->waitForGeometry(window, [&](const QRect& r) { return r.topLeft() != before.topLeft(); });
    screenshot(QStringLiteral("after"));
    qInfo().noquote() << "before" << describe(before) << "after" << describe(after) << "moved by"
                      << (after.x() - before.x()) << (after.y() - before.y()) << "in" << timer.elapsed() << "ms";

    QVERIFY2(within(after.x() - before.x(), 150, 2) && within(after.y() - before.y(), 80, 2),
             qPrintable(QStringLiteral("moved from %1 to %2, expected +150,+80").arg(describe(before), describe(after))));
    QCOMPARE(after.size(), before.size());
}

void tst_CoreWindowDisplay::dragTitleButtonKeepsWindow_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("btn_feedback") << QStringLiteral("btn_feedback");
    QTest::newRow("btn_menu") << QStringLiteral("btn_menu");
}

void tst_CoreWindowDisplay::dragTitleButtonKeepsWindow()
{
    QFETCH(QString, button);
    QVERIFY2(startDesktop(DisplaySession::WithoutCompositor, {}), qPrintable(m_failure));
    const unsigned long window = m_host->windowId();
    const QRect buttonRect = m_host->widgetRect(button);
    const QRect title = m_host->widgetRect(QStringLiteral("title"));
    // The title's buttons are 20 x 20, inside the bar.
    QCOMPARE(buttonRect.size(), QSize(20, 20));
    QVERIFY2(title.contains(buttonRect), qPrintable(describe(buttonRect)));

    const QRect before = m_session->settledGeometry(window);
    QCOMPARE(before.size(), QSize(kWidth, kHeight));
    QVERIFY2(qtAgreesWithServer(before), qPrintable(m_failure));
    // Released far from the button, so it is not clicked either.
    QVERIFY(m_session->drag(before.topLeft() + buttonRect.center(), QPoint(150, 80)));
    const QRect after = m_session->settledGeometry(window, 1000);
    screenshot(QStringLiteral("after"));
    qInfo().noquote() << button << "at" << describe(buttonRect.translated(before.topLeft())) << "before"
                      << describe(before) << "after" << describe(after);
    QCOMPARE(after, before);
}

// --- resizing -------------------------------------------------------------------------

void tst_CoreWindowDisplay::dragLeftBorder_data()
{
    QTest::addColumn<QString>("shadow");
    QTest::addColumn<bool>("resizable");
    QTest::newRow("qt-painted, resizable") << QStringLiteral("unset") << true;
    QTest::newRow("qt-painted, fixed") << QStringLiteral("unset") << false;
    QTest::newRow("layered, resizable") << QStringLiteral("layered") << true;
    QTest::newRow("layered, fixed") << QStringLiteral("layered") << false;
}

void tst_CoreWindowDisplay::dragLeftBorder()
{
    QFETCH(QString, shadow);
    QFETCH(bool, resizable);
    QStringList args{QStringLiteral("--shadow"), shadow};
    if (resizable)
        args << QStringLiteral("--resizable");
    QVERIFY2(startDesktop(DisplaySession::WithCompositor, args), qPrintable(m_failure));
    const unsigned long window = m_host->windowId();

    const QRect before = m_session->settledGeometry(window);
    QCOMPARE(before.size(), QSize(kWidth, kHeight));
    QVERIFY2(qtAgreesWithServer(before), qPrintable(m_failure));
    // Two pixels in from the left edge: inside the 5-pixel band, below the title.
    const QPoint grip(before.left() + 2, before.top() + kHeight / 2);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_session->drag(grip, QPoint(-100, 0)));
    const QRect after = resizable
                            ? m_session->waitForGeometry(window, [&](const QRect& r) { return r.width() != before.width(); })
                            : m_session->settledGeometry(window, 1000);
    screenshot(QStringLiteral("after"));
    qInfo().noquote() << "before" << describe(before) << "after" << describe(after) << "in" << timer.elapsed() << "ms";

    if (!resizable) {
        QCOMPARE(after, before);
        return;
    }
    QVERIFY2(within(after.width() - before.width(), 100, 2),
             qPrintable(QStringLiteral("width %1 -> %2, expected +100").arg(before.width()).arg(after.width())));
    QVERIFY2(within(after.left() - before.left(), -100, 2),
             qPrintable(QStringLiteral("left %1 -> %2, expected -100").arg(before.left()).arg(after.left())));
    // The right edge stays where it was, and nothing happens vertically.
    QVERIFY2(within(after.right(), before.right(), 2), qPrintable(describe(after)));
    QCOMPARE(after.top(), before.top());
    QCOMPARE(after.height(), before.height());
}

// --- maximising -----------------------------------------------------------------------

void tst_CoreWindowDisplay::doubleClickTitleMaximisesToWorkArea_data()
{
    QTest::addColumn<QString>("shadow");
    QTest::newRow("qt-painted shadow") << QStringLiteral("unset");
    QTest::newRow("layered shadow") << QStringLiteral("layered");
}

void tst_CoreWindowDisplay::doubleClickTitleMaximisesToWorkArea()
{
    QFETCH(QString, shadow);
    const bool painted = shadow != QLatin1String("layered");
    QVERIFY2(startDesktop(DisplaySession::WithCompositor, {QStringLiteral("--shadow"), shadow, QStringLiteral("--resizable")}),
             qPrintable(m_failure));
    QCOMPARE(titleGripOk(), kTitleGrip);
    const unsigned long window = m_host->windowId();
    const QRect workArea = m_session->workArea();
    QCOMPARE(workArea, kExpectedWorkArea);

    const QRect before = m_session->settledGeometry(window);
    QCOMPARE(before.size(), QSize(kWidth, kHeight));
    QVERIFY2(qtAgreesWithServer(before), qPrintable(m_failure));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_session->doubleClick(before.topLeft() + kTitleGrip));
    const QRect maximised = m_session->waitForGeometry(window, [&](const QRect& r) { return r == workArea; });
    const qint64 maximiseMs = timer.elapsed();
    const QImage shotMax = screenshot(QStringLiteral("maximised"));
    qInfo().noquote() << "before" << describe(before) << "maximised" << describe(maximised) << "work area"
                      << describe(workArea) << "frame extents" << m_session->frameExtents(window) << "in" << maximiseMs
                      << "ms";
    QCOMPARE(maximised, workArea);
    QVERIFY(!shotMax.isNull());
    if (!painted) {
        // A maximised window has no shadow: the reserved strip under it stays bare.
        const QRgb below = shotMax.pixel(workArea.center().x(), workArea.bottom() + 1);
        QCOMPARE(below, grey(DisplaySession::kDesktopGrey));
    }
    if (painted) {
        // Maximised, the window has no shadow margin: its content reaches the screen edge.
        QVERIFY(!shotMax.isNull());
        const QRgb edge = shotMax.pixel(workArea.left(), workArea.center().y());
        QVERIFY2(edge == kContent.rgb(), qPrintable(describe(edge)));
    }

    timer.restart();
    QVERIFY(m_session->doubleClick(maximised.topLeft() + kTitleGrip));
    const QRect restored = m_session->waitForGeometry(window, [&](const QRect& r) { return r == before; });
    const QImage shotRestored = screenshot(QStringLiteral("restored"));
    qInfo().noquote() << "restored" << describe(restored) << "in" << timer.elapsed() << "ms";
    QCOMPARE(restored, before);
    QVERIFY(!shotRestored.isNull());
    if (!painted) {
        // Restoring is a size change, and brings the shadow back: 33 of 255 next to the
        // window.
        const QRgb beside = shotRestored.pixel(restored.left() - 1, restored.center().y());
        QVERIFY2(closeColour(beside, grey(darkenedDesktop(33)), 2), qPrintable(describe(beside)));
    }
    if (painted) {
        // The margin is back: the content starts 5 pixels in, the edge is translucent.
        QVERIFY(!shotRestored.isNull());
        const int y = restored.center().y();
        const QRgb inside = shotRestored.pixel(restored.left() + kMargin, y);
        const QRgb margin = shotRestored.pixel(restored.left(), y);
        QVERIFY2(inside == kContent.rgb(), qPrintable(describe(inside)));
        QVERIFY2(margin != kContent.rgb(), qPrintable(describe(margin)));
    }
}

void tst_CoreWindowDisplay::maximisedAtStartCoversWorkArea()
{
    QVERIFY2(startDesktop(DisplaySession::WithoutCompositor, {QStringLiteral("--maximize")}), qPrintable(m_failure));
    const QRect workArea = m_session->workArea();
    QCOMPARE(workArea, kExpectedWorkArea);
    const QRect geometry =
        m_session->waitForGeometry(m_host->windowId(), [&](const QRect& r) { return r == workArea; });
    screenshot(QStringLiteral("maximised"));
    qInfo().noquote() << "maximised" << describe(geometry) << "work area" << describe(workArea);
    QCOMPARE(geometry, workArea);
}

// --- shadows --------------------------------------------------------------------------

void tst_CoreWindowDisplay::layeredShadowLiesOutsideOnly()
{
    QVERIFY2(startDesktop(DisplaySession::WithCompositor, {QStringLiteral("--shadow"), QStringLiteral("layered")}),
             qPrintable(m_failure));
    QCOMPARE(titleGripOk(), kTitleGrip);
    const unsigned long window = m_host->windowId();
    const QRect central = m_host->widgetRect(QStringLiteral("central"));
    // No margin in this mode: title and content fill the window.
    QCOMPARE(central, QRect(0, kTitleHeight, kWidth, kHeight - kTitleHeight));
    // The shadow is placed from Qt's idea of the window's geometry.
    QVERIFY2(qtAgreesWithServer(m_session->settledGeometry(window)), qPrintable(m_failure));

    // The shadow of size 5, sharpness 5 and darkness 40 is a ramp of alphas from 33 next
    // to the window down to 6 five pixels out, and nothing beyond.
    const int expectedAlpha[kMargin + 1] = {0, 33, 26, 20, 13, 6};
    const auto check = [&](const QString& name) {
        QThread::msleep(500); // the compositor repaints on its own time
        const QRect g = m_session->settledGeometry(window);
        const QImage shot = screenshot(name);
        QVERIFY(!shot.isNull());
        QCOMPARE(g.size(), QSize(kWidth, kHeight));
        QCOMPARE(shot.pixel(1900, 20), grey(DisplaySession::kDesktopGrey));

        const int cx = g.center().x();
        const int cy = g.top() + central.center().y();
        struct Side
        {
            const char* name;
            QPoint edge; // the window's outermost pixel on this side
            QPoint out;  // one pixel step away from the window
        };
        const Side sides[] = {{"left", QPoint(g.left(), cy), QPoint(-1, 0)},
                              {"right", QPoint(g.right(), cy), QPoint(1, 0)},
                              {"top", QPoint(cx, g.top()), QPoint(0, -1)},
                              {"bottom", QPoint(cx, g.bottom()), QPoint(0, 1)}};
        QStringList measured;
        for (const Side& side : sides) {
            QStringList ramp;
            for (int d = 1; d <= kMargin + 1; ++d) {
                const QPoint p = side.edge + side.out * d;
                const QRgb actual = shot.pixel(p);
                ramp << QString::number(qRed(actual));
                const QRgb expected = grey(d <= kMargin ? darkenedDesktop(expectedAlpha[d]) : DisplaySession::kDesktopGrey);
                // Beyond the shadow the desktop is untouched.
                const int tolerance = d <= kMargin ? 2 : 0;
                QVERIFY2(closeColour(actual, expected, tolerance),
                         qPrintable(QStringLiteral("%1 side, %2 px out: %3, expected %4")
                                        .arg(QLatin1String(side.name))
                                        .arg(d)
                                        .arg(describe(actual), describe(expected))));
            }
            measured << QStringLiteral("%1 %2").arg(QLatin1String(side.name), ramp.join(QLatin1Char(' ')));
        }
        // Under the window nothing is darkened: its edge pixels are the content's own.
        const QRect c = central.translated(g.topLeft());
        for (const QPoint& p : {QPoint(c.left(), cy), QPoint(c.right(), cy), QPoint(cx, c.bottom()), QPoint(cx, c.top()),
                                QPoint(c.left(), c.bottom()), QPoint(c.right(), c.bottom())}) {
            const QRgb actual = shot.pixel(p);
            QVERIFY2(actual == kContent.rgb(), qPrintable(QStringLiteral("at %1,%2: %3")
                                                              .arg(p.x())
                                                              .arg(p.y())
                                                              .arg(describe(actual))));
        }
        qInfo().noquote() << name << describe(g) << "desktop 1..6 px out:" << measured.join(QStringLiteral("; "));
    };

    check(QStringLiteral("shown"));
    if (QTest::currentTestFailed())
        return;

    // The shadow is a top-level window of its own, 5 pixels larger than the window on
    // every side, stacked under the window it shades.
    const QRect shaded = m_session->settledGeometry(window);
    unsigned long shadow = 0;
    for (unsigned long candidate : m_session->windowsOfProcess(m_host->pid())) {
        if (candidate != window && m_session->isViewable(candidate)
            && m_session->clientGeometry(candidate) == shaded.adjusted(-kMargin, -kMargin, kMargin, kMargin))
            shadow = candidate;
    }
    QVERIFY2(shadow != 0, "no window of the program covers the window's rectangle grown by 5 pixels");
    const QList<unsigned long> stacking = m_session->stackingTopFirst();
    const int windowLevel = stacking.indexOf(m_session->topLevelOf(window));
    const int shadowLevel = stacking.indexOf(m_session->topLevelOf(shadow));
    qInfo() << "stacking from the top: window at" << windowLevel << "shadow at" << shadowLevel;
    QVERIFY(windowLevel >= 0 && shadowLevel >= 0);
    QVERIFY2(shadowLevel > windowLevel, "the shadow window is stacked above the window it shades");

    // The shadow follows the window and leaves nothing behind.
    const QRect before = m_session->settledGeometry(window);
    QVERIFY(m_session->drag(before.topLeft() + kTitleGrip, QPoint(150, 80)));
    const QRect after = m_session->waitForGeometry(window, [&](const QRect& r) { return r.topLeft() != before.topLeft(); });
    // How far exactly is dragTitleMovesWindow's business; here the window only has to
    // have gone far enough for its old place to be clear of the new shadow.
    QVERIFY2(after.x() - before.x() >= 100 && after.y() - before.y() >= 50, qPrintable(describe(after)));
    check(QStringLiteral("moved"));
    if (QTest::currentTestFailed())
        return;
    const QImage shot = screenshot(QStringLiteral("moved-old-place"));
    QCOMPARE(shot.pixel(before.left() - 1, before.center().y()), grey(DisplaySession::kDesktopGrey));
    QCOMPARE(shot.pixel(before.center().x(), before.top() - 1), grey(DisplaySession::kDesktopGrey));
}

void tst_CoreWindowDisplay::paintedShadowRingsInMargin()
{
    QVERIFY2(startDesktop(DisplaySession::WithCompositor, {}), qPrintable(m_failure));
    const unsigned long window = m_host->windowId();
    const QRect central = m_host->widgetRect(QStringLiteral("central"));
    const QRect title = m_host->widgetRect(QStringLiteral("title"));
    // The content sits inside the 5-pixel margin.
    QCOMPARE(title, QRect(kMargin, kMargin, kWidth - 2 * kMargin, kTitleHeight));
    QCOMPARE(central, QRect(kMargin, kMargin + kTitleHeight, kWidth - 2 * kMargin, kHeight - 2 * kMargin - kTitleHeight));

    QThread::msleep(500);
    const QRect g = m_session->settledGeometry(window);
    QCOMPARE(g.size(), QSize(kWidth, kHeight));
    const QImage shot = screenshot(QStringLiteral("shown"));
    QVERIFY(!shot.isNull());
    QCOMPARE(shot.pixel(1900, 20), grey(DisplaySession::kDesktopGrey));

    const QImage expected = paintedFrameOverDesktop(kWidth, kHeight);
    const int cx = kWidth / 2;
    const int cy = central.center().y();
    struct Side
    {
        const char* name;
        QPoint firstWhite; // window coordinates of the white area's outermost pixel
        QPoint out;
    };
    const Side sides[] = {{"left", QPoint(kMargin, cy), QPoint(-1, 0)},
                          {"right", QPoint(kWidth - 1 - kMargin, cy), QPoint(1, 0)},
                          {"top", QPoint(cx, kMargin), QPoint(0, -1)},
                          {"bottom", QPoint(cx, kHeight - 1 - kMargin), QPoint(0, 1)}};
    QStringList measured;
    for (const Side& side : sides) {
        QStringList ramp;
        for (int d = 1; d <= kMargin; ++d) {
            const QPoint local = side.firstWhite + side.out * d;
            const QRgb actual = shot.pixel(g.topLeft() + local);
            const QRgb want = expected.pixel(local);
            ramp << QStringLiteral("%1/%2").arg(qRed(actual)).arg(qRed(want));
            QVERIFY2(closeColour(actual, want, 2), qPrintable(QStringLiteral("%1 side, %2 px outside the white area: %3, expected %4")
                                                                   .arg(QLatin1String(side.name))
                                                                   .arg(d)
                                                                   .arg(describe(actual), describe(want))));
        }
        // Right outside the white area the rings are plainly darker than the desktop.
        const QRgb next = shot.pixel(g.topLeft() + side.firstWhite + side.out);
        QVERIFY2(qRed(next) <= DisplaySession::kDesktopGrey - 10, qPrintable(describe(next)));
        // Past the window the desktop is untouched.
        const QRgb beyond = shot.pixel(g.topLeft() + side.firstWhite + side.out * (kMargin + 1));
        QCOMPARE(beyond, grey(DisplaySession::kDesktopGrey));
        measured << QStringLiteral("%1 %2").arg(QLatin1String(side.name), ramp.join(QLatin1Char(' ')));
    }
    const QRect c = central.translated(g.topLeft());
    for (const QPoint& p : {QPoint(c.left(), g.top() + cy), QPoint(c.right(), g.top() + cy), QPoint(g.left() + cx, c.bottom())}) {
        const QRgb actual = shot.pixel(p);
        QVERIFY2(actual == kContent.rgb(), qPrintable(QStringLiteral("at %1,%2: %3").arg(p.x()).arg(p.y()).arg(describe(actual))));
    }
    qInfo().noquote() << describe(g) << "margin, measured/expected from the white area outwards:"
                      << measured.join(QStringLiteral("; "));
}

// Without a compositing manager nothing blends the painted shadow's translucent pixels,
// which would show black: the window has no margin and is opaque. A compositor that
// starts or stops while the window is open brings the margin and its shadow, or takes
// them away, within a second, around content that stays where it is.
void tst_CoreWindowDisplay::noCompositorNoMarginAndLiveSwitch()
{
    QVERIFY2(startDesktop(DisplaySession::WithoutCompositor, {}), qPrintable(m_failure));
    const unsigned long window = m_host->windowId();
    QCOMPARE(m_host->widgetRect(QStringLiteral("title")), QRect(0, 0, kWidth, kTitleHeight));
    QCOMPARE(m_host->widgetRect(QStringLiteral("central")), QRect(0, kTitleHeight, kWidth, kHeight - kTitleHeight));
    const QRect content = m_session->settledGeometry(window);
    QCOMPARE(content.size(), QSize(kWidth, kHeight));
    const int cy = content.top() + kTitleHeight + (kHeight - kTitleHeight) / 2;

    // The rows and columns of pixels 2 pixels outside the content, sampled along each side.
    const auto outside = [&](const QImage& shot) {
        QList<QRgb> pixels;
        for (int x = content.left(); x <= content.right(); x += 40) {
            pixels << shot.pixel(x, content.top() - 2) << shot.pixel(x, content.bottom() + 2);
        }
        for (int y = content.top(); y <= content.bottom(); y += 40) {
            pixels << shot.pixel(content.left() - 2, y) << shot.pixel(content.right() + 2, y);
        }
        return pixels;
    };
    const auto allDesktop = [&](const QImage& shot, QString* why) {
        for (const QRgb p : outside(shot)) {
            if (!closeColour(p, grey(DisplaySession::kDesktopGrey), 2)) {
                *why = describe(p);
                return false;
            }
        }
        return true;
    };
    QThread::msleep(300);
    QImage shot = screenshot(QStringLiteral("no-compositor"));
    QVERIFY(!shot.isNull());
    QString why;
    QVERIFY2(allDesktop(shot, &why), qPrintable(QStringLiteral("outside the content: ") + why));
    // The content reaches the window's edge, opaque.
    QVERIFY2(closeColour(shot.pixel(content.left(), cy), kContent.rgb(), 2), qPrintable(describe(shot.pixel(content.left(), cy))));

    // A compositor starts: the window grows by the margin on every side, within a second.
    QVERIFY2(m_session->startCompositor(), qPrintable(m_session->error()));
    QElapsedTimer timer;
    timer.start();
    const QRect withMargin = content.adjusted(-kMargin, -kMargin, kMargin, kMargin);
    while (m_session->clientGeometry(window) != withMargin && timer.elapsed() < 3000)
        QThread::msleep(20);
    const qint64 growMs = timer.elapsed();
    QCOMPARE(m_session->settledGeometry(window), withMargin);
    qInfo().noquote() << "margin back" << growMs << "ms after the compositor took the screen";
    QVERIFY2(growMs < 1000, qPrintable(QString::number(growMs)));
    QThread::msleep(500); // the compositor repaints on its own time
    shot = screenshot(QStringLiteral("compositor-started"));
    // The content has not moved; right outside it the shadow darkens the desktop.
    QVERIFY2(closeColour(shot.pixel(content.left() + 1, cy), kContent.rgb(), 2), qPrintable(describe(shot.pixel(content.left() + 1, cy))));
    const QRgb ring = shot.pixel(content.left() - 1, cy);
    QVERIFY2(qRed(ring) <= DisplaySession::kDesktopGrey - 10, qPrintable(describe(ring)));

    // It stops: the margin goes again, within a second, and nothing black is left.
    m_session->stopCompositor();
    timer.restart();
    while (m_session->clientGeometry(window) != content && timer.elapsed() < 3000)
        QThread::msleep(20);
    const qint64 shrinkMs = timer.elapsed();
    QCOMPARE(m_session->settledGeometry(window), content);
    qInfo().noquote() << "margin gone" << shrinkMs << "ms after the compositor stopped";
    QVERIFY2(shrinkMs < 1000, qPrintable(QString::number(shrinkMs)));
    QThread::msleep(300);
    shot = screenshot(QStringLiteral("compositor-stopped"));
    QVERIFY2(allDesktop(shot, &why), qPrintable(QStringLiteral("outside the content: ") + why));
    QVERIFY2(closeColour(shot.pixel(content.left(), cy), kContent.rgb(), 2), qPrintable(describe(shot.pixel(content.left(), cy))));
}

QTEST_MAIN(tst_CoreWindowDisplay)
#include "tst_corewindow_display.moc"
