// The frameless core window: construction, the frame hit test, painting, both shadow
// modes and the mouse-driven frame of platforms without a system frame. Everything runs
// on the offscreen platform in this process; start-up in a product folder and a real
// scaled screen run in the probe.
#include "probe.h"

#include <ZVCore/ZVCoreWindow>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CControlModule>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/CShadowWindowQt>
#include <ZVCore/private/CWindowMenu>
#include <ZVCore/private/RenderShadow>
#include <ZVCore/private/ZVMainWindowTitle>

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QStyle>

#include <memory>
#include <vector>

using ZVUIFramework::CShadowWindowQt;
using ZVUIFramework::ShadowSettings;

namespace {

constexpr long kNowhere = 0;
constexpr long kCaption = 2;
constexpr long kLeft = 10;
constexpr long kRight = 11;
constexpr long kTop = 12;
constexpr long kTopLeft = 13;
constexpr long kTopRight = 14;
constexpr long kBottom = 15;
constexpr long kBottomLeft = 16;
constexpr long kBottomRight = 17;

const QRect kWindowRect(100, 100, 800, 600);

QStringList titleButtons()
{
    return {QStringLiteral("btn_feedback"), QStringLiteral("btn_menu"), QStringLiteral("btn_min"),
            QStringLiteral("btn_max"), QStringLiteral("btn_close")};
}

// A host's main window: it records the bus events that reach it and can stand in for a
// screen with another device pixel ratio.
class HostWindow : public ZVCoreWindow
{
public:
    explicit HostWindow(qreal ratio = 0.0)
        : ZVCoreWindow(nullptr)
        , m_ratio(ratio)
    {
    }

    QList<int> received;

protected:
    void customEvent(QEvent* event) override
    {
        received.append(int(event->type()));
        ZVCoreWindow::customEvent(event);
    }

private:
    qreal hitTestDevicePixelRatio() const override { return m_ratio > 0.0 ? m_ratio : devicePixelRatioF(); }

    qreal m_ratio;
};

void resetApplicationProperties()
{
    for (const char* name : {"QtBasedShadow", "dlgRadius", "EnableSetDragFullWindows"})
        qApp->setProperty(name, QVariant());
}

// The window placed as a host places it: the title at the top, a central widget, at
// kWindowRect.
std::unique_ptr<HostWindow> hostWindow(qreal ratio = 0.0, bool show = true)
{
    auto window = std::make_unique<HostWindow>(ratio);
    window->setMenuWidget(window->GetTitleWidget());
    auto* central = new QLabel(QStringLiteral("central"));
    central->setObjectName(QStringLiteral("central"));
    window->setCentralWidget(central);
    window->setGeometry(kWindowRect);
    if (show) {
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            return nullptr;
    }
    return window;
}

ZVMainWindowTitle* titleOf(ZVCoreWindow* window)
{
    return qobject_cast<ZVMainWindowTitle*>(window->GetTitleWidget());
}

#ifdef Q_OS_WIN
// On Windows the layered shadow is a native window of its own class, not a Qt widget;
// it needs the "windows" platform, and the Windows build's wine-display cases check it
// there.
const char kNativeShadowOnWindows[] = "the layered shadow is a native window on Windows (the wine-display shadow and two-windows cases check it)";

// No Qt widget is ever a shadow on Windows.
QWidget* shadowOf(const QWidget*)
{
    return nullptr;
}
#else
CShadowWindowQt* shadowOf(const QWidget* window)
{
    for (QWidget* w : QApplication::topLevelWidgets()) {
        auto* shadow = qobject_cast<CShadowWindowQt*>(w);
        if (shadow && shadow->shadedWindow() == window)
            return shadow;
    }
    return nullptr;
}
#endif

// The layered shadow bitmap of a rectangular window as the window system would show it:
// top row first.
QImage expectedShadow(const QSize& size, const ShadowSettings& settings)
{
    const std::vector<std::uint32_t> bits =
        ZVUIFramework::RenderShadow(size.width(), size.height(), [](int, int) { return true; }, settings);
    const int w = size.width() + 2 * settings.size;
    const int h = size.height() + 2 * settings.size;
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x)
            line[x] = bits[std::size_t(h - 1 - y) * std::size_t(w) + std::size_t(x)];
    }
    return image;
}

ShadowSettings coreWindowShadowSettings()
{
    ShadowSettings s;
    s.size = 5;
    s.sharpness = 5;
    s.darkness = 40;
    s.xOffset = 0;
    s.yOffset = 0;
    s.color = 0;
    return s;
}

// The mouse, through the window system's path, at a global position.
QPoint local(const QWidget* window, const QPoint& global)
{
    return global - window->geometry().topLeft();
}

void mousePress(QWidget* window, const QPoint& global)
{
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, local(window, global));
}

void mouseRelease(QWidget* window, const QPoint& global)
{
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, local(window, global));
}

void mouseMove(QWidget* window, const QPoint& global)
{
    QTest::mouseMove(window->windowHandle(), local(window, global));
}

void mouseDoubleClick(QWidget* window, const QPoint& global)
{
    QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, local(window, global));
}

// A global point over the empty part of the title bar.
QPoint emptyTitlePoint(ZVCoreWindow* window)
{
    QWidget* title = window->GetTitleWidget();
    const QPoint inTitle(title->width() / 2, 2);
    return title->mapToGlobal(inTitle);
}

} // namespace

class tst_ZVCoreWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // construction
    void constructionSetsFlagsMarginsAndTranslucency();
    void constructionBuildsTheTitleBar();
    void constructionAttachesToTheBus();
    void titleSignalAttachesFurtherEvents();
    void titleSignalsDriveTheWindow();
    void titleCloseSignalClosesTheWindow();
    void startUpInAProductFolder();

    // hit test
    void hitTest_data();
    void hitTest();
    void hitTestSparesTheTitleButtons_data();
    void hitTestSparesTheTitleButtons();
    void hitTestWithoutATitle();
    void menuBarBelowTheTitle();
    void menuBarThroughQMainWindow();
    void setMenuBarAndMenuWidget();
    void menuBarMnemonicOpensTheMenu();
    void windowMenuEntriesFollowTheState();
    void windowMenuOpensFromTheTitleAndAltSpace();
    void twoWindowsOpenAndCloseInAnyOrder_data();
    void twoWindowsOpenAndCloseInAnyOrder();
    void hitTestOnAScaledScreen();

    // the public members
    void setResizeableGatesTheBorders();
    void setFixedSizeAndSetMinimumSizeForward();
    void centerWindowCentresOnThePrimaryScreen();
    void getTitleWidgetReturnsTheTitle();
    void setButtonMaximizedHideTogglesTheHintAndTheButton();

    // painting and the painted margin
    void paintsWhiteBackgroundAndFadingRings();
    void roundedCornersFollowDlgRadius();
    void repaintsMatchTheDrawingSteps_data();
    void repaintsMatchTheDrawingSteps();
    void maximisingRemovesTheMarginAndRestoringBringsItBack();
    void marginFlagIsProcessWide();
    void layeredModeLeavesTheMarginAlone();

    // layered shadow mode on this platform
    void layeredModeBuildsTheShadowWindow();
    void destructorDeletesTheLayeredShadow();
    void paintedWindowLeavesTheLayeredShadowAlone();

    // the shadow window itself
    void shadowWindowIsClickThroughTranslucentAndFrameless();
    void shadowWindowFollowsItsWindow();
    void shadowWindowImageIsTheShadowBitmap();
    void shadowWindowMoveOnlyRepositions();
    void shadowWindowShrinkingRedrawsAtOnceGrowingAtPaint();
    void shadowWindowHidesForMaximisedAndMinimised();
    void shadowWindowHidesWithItsWindow();
    void shadowWindowSettersRefuseOutOfRange_data();
    void shadowWindowSettersRefuseOutOfRange();

    // the frame driven by the mouse
    void cursorShowsTheBorder_data();
    void cursorShowsTheBorder();
    void borderPressResizesWithinLimits_data();
    void borderPressResizesWithinLimits();
    void fixedWindowIgnoresBorderPresses();
    void titleDragMovesAfterTheThresholdKeepingTheDistance();
    void doubleClickOnTheTitleMaximisesAndRestores();
    void doubleClickElsewhereChangesNothing();
    void doubleClickWithoutMaximiseAbilityChangesNothing();
    void titleButtonsKeepTheirClicks();
};

void tst_ZVCoreWindow::init()
{
    resetApplicationProperties();
}

void tst_ZVCoreWindow::cleanup()
{
    resetApplicationProperties();
    // Windows of a failed case must not leak into the next one.
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (qobject_cast<ZVCoreWindow*>(w))
            delete w;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// --- construction ------------------------------------------------------------------------

void tst_ZVCoreWindow::constructionSetsFlagsMarginsAndTranslucency()
{
    HostWindow window;
    QVERIFY(window.isWindow());
    QCOMPARE(int(window.windowFlags() & ~Qt::WindowType_Mask), 0xC800);
    QCOMPARE(window.windowFlags(), Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint
                                       | Qt::WindowMaximizeButtonHint);
    QCOMPARE(window.contentsMargins(), QMargins(5, 5, 5, 5));
    QVERIFY(window.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(!shadowOf(&window));
}

void tst_ZVCoreWindow::constructionBuildsTheTitleBar()
{
    HostWindow window;
    ZVMainWindowTitle* title = titleOf(&window);
    QVERIFY(title);
    QCOMPARE(title->parentWidget(), &window);
    QCOMPARE(ZVMainWindowTitle::mainWindow(), &window);
    for (const QString& name : titleButtons())
        QVERIFY2(title->findChild<QPushButton*>(name), qPrintable(name));
    // init() ran: the menu view exists and the maximise button carries its state.
    QVERIFY(title->menuView());
    QCOMPARE(title->findChild<QPushButton*>(QStringLiteral("btn_max"))->property("maxed"), QVariant(false));
    // The update-check module belongs to the window.
    auto* control = window.findChild<ZVUIFramework::CControlModule*>();
    QVERIFY(control);
    QCOMPARE(control->parent(), &window);
}

void tst_ZVCoreWindow::constructionAttachesToTheBus()
{
    HostWindow window;
    ZVCustomEventSendObj* bus = ZVCustomEventSendObj::GetInstance();
    QVERIFY(bus->HasReceiver(1000));
    QVERIFY(bus->HasReceiver(1002));
    bus->PostEvent(1000, 1);
    bus->PostEvent(1002, 2);
    QTRY_COMPARE(window.received, (QList<int>{1000, 1002}));
    // An id nobody announced does not reach the window.
    bus->PostEvent(4711, 3);
    QCoreApplication::processEvents();
    QCOMPARE(window.received, (QList<int>{1000, 1002}));
}

void tst_ZVCoreWindow::titleSignalAttachesFurtherEvents()
{
    HostWindow window;
    emit titleOf(&window)->signalAttachEvent(5123);
    ZVCustomEventSendObj::GetInstance()->SendEvent(5123, 1);
    QCOMPARE(window.received, (QList<int>{5123}));
}

void tst_ZVCoreWindow::titleSignalsDriveTheWindow()
{
    auto window = hostWindow();
    QVERIFY(window);
    ZVMainWindowTitle* title = titleOf(window.get());

    emit title->signalShowMaxOrNormal();
    QTRY_VERIFY(window->isMaximized());
    emit title->signalShowMaxOrNormal();
    QTRY_VERIFY(!window->isMaximized());
    QTRY_COMPARE(window->geometry(), kWindowRect);

    emit title->signalShowMinimized();
    QTRY_VERIFY(window->isMinimized());
}

void tst_ZVCoreWindow::titleCloseSignalClosesTheWindow()
{
    auto window = hostWindow();
    QVERIFY(window);
    QVERIFY(window->isVisible());
    emit titleOf(window.get())->signalCloseWindow();
    QVERIFY(!window->isVisible());
}

void tst_ZVCoreWindow::startUpInAProductFolder()
{
    ProbeFolder product;
    QVERIFY(product.isValid());
    QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), R"json({"LanguageInfoArray":[
 {"Name":"English","Show":"English","UrlFileName":"English_URL.xml","LocaleLanguage":"English","LocaleName":""},
 {"Name":"German","Show":"Deutsch","UrlFileName":"German_URL.xml","LocaleLanguage":"German","LocaleName":""}
]})json"));
    QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"),
                          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<links><menu>"
                          "<childMenu><isShow>1</isShow><menuName>About</menuName><displayName>About</displayName>"
                          "<order>1</order></childMenu>"
                          "</menu></links>\n"));
    QVERIFY(product.write(QStringLiteral("language/main/German_URL.xml"),
                          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<links><menu>"
                          "<childMenu><isShow>1</isShow><menuName>Feedback</menuName>"
                          "<displayName>Rueckmeldung</displayName><order>2</order></childMenu>"
                          "<childMenu><isShow>1</isShow><menuName>About</menuName><displayName>Info</displayName>"
                          "<order>1</order></childMenu>"
                          "</menu></links>\n"));
    QProcessEnvironment env;
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    env.insert(QStringLiteral("LANG"), QStringLiteral("de_DE.UTF-8"));
    env.insert(QStringLiteral("LANGUAGE"), QString());

    const ProbeRun run = product.run({QStringLiteral("context"), QStringLiteral("initskin:0:"),
                                      QStringLiteral("corewindow:build"), QStringLiteral("corewindow:spin"),
                                      QStringLiteral("corewindow:report")},
                                     QDir::rootPath(), env);
    QVERIFY(run.finished);
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("corewindow:report"));
    QVERIFY(r.value(QStringLiteral("hasTitle")).toBool());
    // The catalogue was read before the language manager chose.
    QCOMPARE(r.value(QStringLiteral("catalogueSize")).toInt(), 2);
    QVERIFY(run.logged(QStringLiteral("ZVCore: Auto Select Language->German")));
    QCOMPARE(r.value(QStringLiteral("language")).toString(), QStringLiteral("German"));
    // The language change reached the new window and built its title menu from the
    // German link file.
    QVERIFY(r.value(QStringLiteral("hasMenu")).toBool());
    QCOMPARE(r.value(QStringLiteral("menuName")).toString(), QStringLiteral("titleMenu"));
    QCOMPARE(r.value(QStringLiteral("keys")).toArray(), (QJsonArray{QStringLiteral("About"), QStringLiteral("Feedback")}));
    QCOMPARE(r.value(QStringLiteral("texts")).toArray(), (QJsonArray{QStringLiteral("Info"), QStringLiteral("Rueckmeldung")}));
}

// --- hit test ----------------------------------------------------------------------------

enum SizeMode { FreeSize, FixedWidth, FixedHeight, FixedBoth };

void tst_ZVCoreWindow::hitTest_data()
{
    QTest::addColumn<QRect>("windowRect");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("resizable");
    QTest::addColumn<int>("sizeMode");
    QTest::addColumn<bool>("maximised");
    QTest::addColumn<qreal>("ratio");
    QTest::addColumn<long>("expected");

    const QRect r = kWindowRect;
    auto row = [&](const char* name, QPoint pos, long expected, bool resizable = true, int mode = FreeSize,
                   bool maximised = false, qreal ratio = 0.0, QRect rect = QRect()) {
        QTest::newRow(name) << (rect.isNull() ? r : rect) << pos << resizable << mode << maximised << ratio << expected;
    };

    // Left band: 5 physical pixels from the left edge.
    row("left x=100", {100, 300}, kLeft);
    row("left x=101", {101, 300}, kLeft);
    row("left x=102", {102, 300}, kLeft);
    row("left x=103", {103, 300}, kLeft);
    row("left x=104", {104, 300}, kLeft);
    row("x=105 falls to the title test: central area", {105, 300}, kNowhere);
    row("x=105 falls to the title test: empty title", {105, 107}, kCaption);
    row("left band over the title", {104, 107}, kLeft);
    // Right band: right is exclusive.
    row("right x=895", {895, 300}, kRight);
    row("right x=896", {896, 300}, kRight);
    row("right x=897", {897, 300}, kRight);
    row("right x=898", {898, 300}, kRight);
    row("right x=899", {899, 300}, kRight);
    row("x=894 is inside", {894, 300}, kNowhere);
    row("x=900 is beyond the window", {900, 300}, kNowhere);
    // Top band.
    row("top y=100", {400, 100}, kTop);
    row("top y=102", {400, 102}, kTop);
    row("top y=104", {400, 104}, kTop);
    row("y=105 falls to the title test", {400, 105}, kCaption);
    // Bottom band.
    row("bottom y=695", {400, 695}, kBottom);
    row("bottom y=697", {400, 697}, kBottom);
    row("bottom y=699", {400, 699}, kBottom);
    row("y=694 is inside", {400, 694}, kNowhere);
    // Corners.
    row("top-left (100,100)", {100, 100}, kTopLeft);
    row("top-left (104,104)", {104, 104}, kTopLeft);
    row("top-right (899,100)", {899, 100}, kTopRight);
    row("top-right (895,104)", {895, 104}, kTopRight);
    row("bottom-left (100,699)", {100, 699}, kBottomLeft);
    row("bottom-left (104,695)", {104, 695}, kBottomLeft);
    row("bottom-right (899,699)", {899, 699}, kBottomRight);
    row("bottom-right (895,695)", {895, 695}, kBottomRight);
    // The last match wins.
    row("bottom-left over left", {102, 697}, kBottomLeft);
    row("bottom-left over bottom", {103, 699}, kBottomLeft);
    row("top-right over top and right", {897, 101}, kTopRight);
    row("right over left in a narrow rectangle", {104, 300}, kRight, true, FreeSize, false, 0.0,
        QRect(100, 100, 8, 600));
    row("top over bottom in a short rectangle", {400, 104}, kTop, true, FreeSize, false, 0.0,
        QRect(100, 100, 800, 8));
    // Fixed width: no left, right or corner codes; top and bottom stay.
    row("fixed width, left", {100, 300}, kNowhere, true, FixedWidth);
    row("fixed width, right", {899, 300}, kNowhere, true, FixedWidth);
    row("fixed width, top", {400, 100}, kTop, true, FixedWidth);
    row("fixed width, bottom", {400, 699}, kBottom, true, FixedWidth);
    row("fixed width, top-left corner is top", {100, 100}, kTop, true, FixedWidth);
    row("fixed width, bottom-right corner is bottom", {899, 699}, kBottom, true, FixedWidth);
    // Fixed height: the other way round.
    row("fixed height, top", {400, 100}, kNowhere, true, FixedHeight);
    row("fixed height, bottom", {400, 699}, kNowhere, true, FixedHeight);
    row("fixed height, left", {100, 300}, kLeft, true, FixedHeight);
    row("fixed height, left x=104", {104, 300}, kLeft, true, FixedHeight);
    row("fixed height, right", {899, 300}, kRight, true, FixedHeight);
    row("fixed height, top-left corner is left", {100, 100}, kLeft, true, FixedHeight);
    row("fixed height, bottom-right corner is right", {899, 699}, kRight, true, FixedHeight);
    // Fixed both ways.
    row("fixed size, corner", {899, 699}, kNowhere, true, FixedBoth);
    row("fixed size, left", {100, 300}, kNowhere, true, FixedBoth);
    row("fixed size, title", {400, 107}, kCaption, true, FixedBoth);
    // Not resizable: only the title test.
    row("not resizable, left", {100, 300}, kNowhere, false);
    row("not resizable, corner", {100, 100}, kNowhere, false);
    row("not resizable, bottom-right", {899, 699}, kNowhere, false);
    row("not resizable, empty title", {400, 107}, kCaption, false);
    row("not resizable, central area", {400, 300}, kNowhere, false);
    // Maximised: only the title or nothing (points relative to the maximised window).
    row("maximised, left", {100, 300}, kNowhere, true, FreeSize, true);
    row("maximised, top-left is the title", {100, 100}, kCaption, true, FreeSize, true);
    row("maximised, bottom-left", {100, 699}, kNowhere, true, FreeSize, true);
    row("maximised, bottom-right", {899, 699}, kNowhere, true, FreeSize, true);
    row("maximised, empty title", {400, 110}, kCaption, true, FreeSize, true);
    row("maximised, central area", {400, 300}, kNowhere, true, FreeSize, true);
    // Device pixel ratio 1.5: bands stay 5 physical pixels, the title test divides.
    const QRect p(150, 150, 1200, 900);
    row("ratio 1.5, left x=150", {150, 600}, kLeft, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, left x=154", {154, 600}, kLeft, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, x=155 is inside", {155, 600}, kNowhere, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, right x=1345", {1345, 600}, kRight, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, right x=1349", {1349, 600}, kRight, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, x=1344 is inside", {1344, 600}, kNowhere, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, top y=154", {600, 154}, kTop, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, bottom y=1049", {600, 1049}, kBottom, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, top-left", {150, 150}, kTopLeft, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, bottom-right", {1349, 1049}, kBottomRight, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, empty title at (400,110)", {600, 165}, kCaption, true, FreeSize, false, 1.5, p);
    row("ratio 1, same physical point is central", {600, 165}, kNowhere, true, FreeSize, false, 1.0, p);
    // 157 / 1.5 = 104.67 truncates to 104, the margin left of the title; 158 gives 105.
    row("ratio 1.5, truncation stays left of the title", {157, 160}, kNowhere, true, FreeSize, false, 1.5, p);
    row("ratio 1.5, truncation reaches the title", {158, 160}, kCaption, true, FreeSize, false, 1.5, p);
}

void tst_ZVCoreWindow::hitTest()
{
    QFETCH(QRect, windowRect);
    QFETCH(QPoint, pos);
    QFETCH(bool, resizable);
    QFETCH(int, sizeMode);
    QFETCH(bool, maximised);
    QFETCH(qreal, ratio);
    QFETCH(long, expected);

    auto window = hostWindow(ratio);
    QVERIFY(window);
    window->SetResizeable(resizable);
    switch (sizeMode) {
    case FixedWidth:
        window->setMinimumWidth(800);
        window->setMaximumWidth(800);
        break;
    case FixedHeight:
        window->setMinimumHeight(600);
        window->setMaximumHeight(600);
        break;
    case FixedBoth:
        window->setFixedSize(800, 600);
        break;
    default:
        break;
    }
    QCOMPARE(window->geometry(), kWindowRect);

    if (maximised) {
#ifdef Q_OS_WIN
        QSKIP("on Windows the margin of a maximised window follows WM_SIZE, which the offscreen platform never sends "
              "(the wine-display case maximize drives the maximised hit test)");
#endif
        window->showMaximized();
        QTRY_VERIFY(window->isMaximized());
        QTRY_COMPARE(window->frameGeometry(), window->screen()->availableGeometry());
        QTRY_COMPARE(window->contentsMargins(), QMargins());
        // Once the layout has followed the margins, the title sits at the very top.
        QTRY_COMPARE(window->GetTitleWidget()->geometry().topLeft(), QPoint(0, 0));
        // The same spots of the maximised window.
        const QPoint shift = window->frameGeometry().topLeft() - kWindowRect.topLeft();
        pos += shift;
        windowRect = window->frameGeometry();
    }

    if (expected == kCaption) {
        // The point has to be over an empty part of the title for the case to mean
        // anything.
        const qreal r = ratio > 0.0 ? ratio : 1.0;
        QWidget* title = window->GetTitleWidget();
        const QPoint inTitle = title->mapFromGlobal(QPoint(int(pos.x() / r), int(pos.y() / r)));
        QVERIFY(title->rect().contains(inTitle));
        QVERIFY(!title->childAt(inTitle));
    }

    QCOMPARE(window->HitTest(windowRect, pos), expected);
}

void tst_ZVCoreWindow::hitTestSparesTheTitleButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<qreal>("ratio");
    for (const QString& name : titleButtons()) {
        QTest::newRow(qPrintable(name)) << name << 1.0;
        QTest::newRow(qPrintable(name + QStringLiteral(", ratio 1.5"))) << name << 1.5;
    }
    QTest::newRow("separator") << QStringLiteral("separator_line") << 1.0;
}

void tst_ZVCoreWindow::hitTestSparesTheTitleButtons()
{
    QFETCH(QString, button);
    QFETCH(qreal, ratio);
    auto window = hostWindow(ratio);
    QVERIFY(window);
    window->SetResizeable(true);
    QWidget* child = window->GetTitleWidget()->findChild<QWidget*>(button);
    QVERIFY(child);
    QVERIFY(child->isVisible());
    const QPoint centre = child->mapToGlobal(child->rect().center());
    const QPoint physical(qCeil(centre.x() * ratio), qCeil(centre.y() * ratio));
    const QRect rect(qRound(100 * ratio), qRound(100 * ratio), qRound(800 * ratio), qRound(600 * ratio));
    QCOMPARE(window->HitTest(rect, physical), kNowhere);
    // The title next to it is a caption: only the child keeps its clicks.
    const QPoint above(centre.x(), window->GetTitleWidget()->mapToGlobal(QPoint(0, 1)).y());
    QCOMPARE(window->HitTest(rect, QPoint(qCeil(above.x() * ratio), qCeil(above.y() * ratio))), kCaption);
}

void tst_ZVCoreWindow::hitTestWithoutATitle()
{
    auto window = hostWindow();
    QVERIFY(window);
    const QPoint titlePoint = emptyTitlePoint(window.get());
    QCOMPARE(window->HitTest(kWindowRect, titlePoint), kCaption);
    // Another menu widget goes below the title, which stays and is still dragged by.
    window->setMenuWidget(new QWidget);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(window->GetTitleWidget());
    QTRY_COMPARE(window->HitTest(kWindowRect, titlePoint), kCaption);
    // A window whose title is gone loses title dragging, nothing else.
    delete window->GetTitleWidget();
    QVERIFY(!window->GetTitleWidget());
    window->SetResizeable(true);
    QCOMPARE(window->HitTest(kWindowRect, titlePoint), kNowhere);
    QCOMPARE(window->HitTest(kWindowRect, QPoint(100, 300)), kLeft);
}

namespace {

// The top of a widget in the window's coordinates.
int topIn(const QWidget* widget, const QWidget* window)
{
    return widget->mapTo(window, QPoint(0, 0)).y();
}

int bottomIn(const QWidget* widget, const QWidget* window)
{
    return topIn(widget, window) + widget->height();
}

} // namespace

void tst_ZVCoreWindow::menuBarBelowTheTitle()
{
    // As an ordinary Qt program builds its main window, in the host's constructor.
    HostWindow window;
    QMenuBar* bar = window.menuBar();
    QVERIFY(bar);
    QCOMPARE(window.menuBar(), bar);
    QMenu* file = bar->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&Quit"));
    QToolBar* tools = window.addToolBar(QStringLiteral("Tools"));
    tools->addAction(QStringLiteral("Tool"));
    window.statusBar()->showMessage(QStringLiteral("ready"));
    auto* central = new QLabel(QStringLiteral("central"));
    window.setCentralWidget(central);
    window.setGeometry(kWindowRect);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QWidget* title = window.GetTitleWidget();
    QVERIFY(title);
    QCOMPARE(window.menuWidget(), static_cast<QWidget*>(bar));
    // Title, menu bar, tool bar and central widget, each directly below the one before,
    // inside the 5-pixel shadow margin.
    QTRY_COMPARE(topIn(title, &window), 5);
    QCOMPARE(title->mapTo(&window, QPoint(0, 0)).x(), 5);
    QCOMPARE(title->width(), kWindowRect.width() - 10);
    QCOMPARE(topIn(bar, &window), bottomIn(title, &window));
    QCOMPARE(bar->width(), title->width());
    // A child of the window, as QMainWindow keeps its menu bar: its geometry is in the
    // window's coordinates.
    QCOMPARE(bar->parentWidget(), static_cast<QWidget*>(&window));
    QCOMPARE(bar->geometry().top(), title->geometry().bottom() + 1);
    QCOMPARE(tools->geometry().top(), bar->geometry().bottom() + 1);
    QVERIFY(bar->isVisible());
    QVERIFY(bar->height() > 0);
    QCOMPARE(topIn(tools, &window), bottomIn(bar, &window));
    QVERIFY(topIn(central, &window) >= bottomIn(tools, &window));
    QCOMPARE(window.contentsMargins(), QMargins(5, 5, 5, 5));
    // The empty title is still dragged by; the menu bar is not.
    QCOMPARE(window.HitTest(kWindowRect, emptyTitlePoint(&window)), kCaption);
    const QPoint onBar = bar->mapToGlobal(QPoint(bar->width() - 20, bar->height() / 2));
    QCOMPARE(window.HitTest(kWindowRect, onBar), kNowhere);
}

void tst_ZVCoreWindow::menuBarThroughQMainWindow()
{
    // QMainWindow's own functions, reached through a QMainWindow*: no crash, and the
    // title stays on top.
    HostWindow window;
    QMainWindow* plain = &window;
    QMenuBar* bar = plain->menuBar();
    QVERIFY(bar);
    bar->addMenu(QStringLiteral("&Edit"));
    QCOMPARE(plain->menuBar(), bar);
    window.setCentralWidget(new QLabel(QStringLiteral("central")));
    window.setGeometry(kWindowRect);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QWidget* title = window.GetTitleWidget();
    QVERIFY(title);
    QTRY_COMPARE(topIn(bar, &window), bottomIn(title, &window));
    QCOMPARE(topIn(title, &window), 5);
    QCOMPARE(window.menuBar(), bar);
    QCOMPARE(bar->actions().size(), 1);

    // A menu widget set through the QMainWindow* replaces the menu bar, below the title.
    QPointer<QMenuBar> replaced = bar;
    auto* widget = new QLabel(QStringLiteral("menu widget"));
    plain->setMenuWidget(widget);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_COMPARE(window.menuWidget(), static_cast<QWidget*>(widget));
    QTRY_VERIFY(!replaced);
    QCOMPARE(window.GetTitleWidget(), title);
    QTRY_COMPARE(topIn(widget, &window), bottomIn(title, &window));
    QVERIFY(title->isVisible());
    QCOMPARE(window.HitTest(kWindowRect, emptyTitlePoint(&window)), kCaption);
}

void tst_ZVCoreWindow::setMenuBarAndMenuWidget()
{
    auto window = hostWindow();
    QVERIFY(window);
    QWidget* title = window->GetTitleWidget();
    // Without a menu bar the title is the menu widget, as it always was.
    QCOMPARE(window->menuWidget(), title);
    window->setMenuWidget(title);
    QCOMPARE(window->GetTitleWidget(), title);
    QCOMPARE(window->menuWidget(), title);

    auto* first = new QMenuBar;
    window->setMenuBar(first);
    QCOMPARE(window->menuBar(), first);
    QCOMPARE(window->menuWidget(), static_cast<QWidget*>(first));
    QTRY_COMPARE(topIn(first, window.get()), bottomIn(title, window.get()));

    // A second one replaces the first, which is deleted, as QMainWindow does.
    QPointer<QMenuBar> old = first;
    auto* second = new QMenuBar;
    window->setMenuBar(second);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!old);
    QCOMPARE(window->menuBar(), second);
    QTRY_COMPARE(topIn(second, window.get()), bottomIn(title, window.get()));

    // None at all: the title alone again.
    window->setMenuWidget(nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(window->menuWidget(), title);
    QCOMPARE(window->GetTitleWidget(), title);
}

void tst_ZVCoreWindow::menuBarMnemonicOpensTheMenu()
{
    HostWindow window;
    QMenu* file = window.menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&Open"));
    window.menuBar()->addMenu(QStringLiteral("&Help"))->addAction(QStringLiteral("&About"));
    window.setCentralWidget(new QLabel(QStringLiteral("central")));
    window.setGeometry(kWindowRect);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
    QTRY_COMPARE(QApplication::activePopupWidget(), static_cast<QWidget*>(file));
    // Keyboard navigation along the bar: Right goes on to Help.
    QTest::keyClick(file, Qt::Key_Right);
    QTRY_VERIFY(QApplication::activePopupWidget() && QApplication::activePopupWidget() != file);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
}

void tst_ZVCoreWindow::windowMenuEntriesFollowTheState()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the window menu is the system menu; the frame builds its own only for X11 and Wayland");
#endif
    using ZVUIFramework::CWindowMenu;
    auto window = hostWindow();
    QVERIFY(window);
    window->SetResizeable(true);
    int moves = 0;
    int sizes = 0;
    const auto menuFor = [&](bool withHooks) {
        return std::make_unique<CWindowMenu>(window.get(), withHooks ? std::function<void()>([&] { ++moves; }) : nullptr,
                                             withHooks ? std::function<void()>([&] { ++sizes; }) : nullptr);
    };
    const auto enabled = [](const CWindowMenu& menu) {
        QString states;
        for (int e = 0; e < CWindowMenu::EntryCount; ++e)
            states += menu.action(CWindowMenu::Entry(e))->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
        return states;
    };
    {
        auto menu = menuFor(true);
        QStringList texts;
        for (int e = 0; e < CWindowMenu::EntryCount; ++e)
            texts << menu->action(CWindowMenu::Entry(e))->text();
        QCOMPARE(texts, (QStringList{QStringLiteral("&Restore"), QStringLiteral("&Move"), QStringLiteral("&Size"),
                                     QStringLiteral("Mi&nimise"), QStringLiteral("Ma&ximise"), QStringLiteral("&Close")}));
        // Normal: everything but Restore. Restore, Move, Size, Minimise, Maximise, Close.
        QCOMPARE(enabled(*menu), QStringLiteral("011111"));
        menu->action(CWindowMenu::Move)->trigger();
        menu->action(CWindowMenu::Size)->trigger();
        QCOMPARE(moves, 1);
        QCOMPARE(sizes, 1);
    }
    // Where the window system takes no keyboard move or resize, neither is offered.
    QCOMPARE(enabled(*menuFor(false)), QStringLiteral("000111"));

    window->showMaximized();
    QTRY_VERIFY(window->isMaximized());
    QCOMPARE(enabled(*menuFor(true)), QStringLiteral("100101"));
    menuFor(true)->action(CWindowMenu::Restore)->trigger();
    QTRY_VERIFY(!window->isMaximized());

    // A window of one size cannot be sized or maximised.
    window->setFixedSize(kWindowRect.size());
    QCOMPARE(enabled(*menuFor(true)), QStringLiteral("010101"));
    // Nor one whose maximise button is hidden.
    window->setMinimumSize(100, 100);
    window->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    window->SetButtonMaximizedHide(true);
    QCOMPARE(enabled(*menuFor(true)), QStringLiteral("011101"));

    menuFor(true)->action(CWindowMenu::Minimise)->trigger();
    QTRY_VERIFY(window->isMinimized());
    window->showNormal();
    QTRY_VERIFY(!window->isMinimized());
    QPointer<HostWindow> guard = window.get();
    menuFor(true)->action(CWindowMenu::Close)->trigger();
    QTRY_VERIFY(!window->isVisible());
}

void tst_ZVCoreWindow::windowMenuOpensFromTheTitleAndAltSpace()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the window menu is the system menu; the frame builds its own only for X11 and Wayland");
#endif
    using ZVUIFramework::CWindowMenu;
    auto window = hostWindow();
    QVERIFY(window);
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QWidget* title = window->GetTitleWidget();
    const QPoint empty = title->mapFromGlobal(emptyTitlePoint(window.get()));

    // Alt+Space, below the title's left end.
    QTest::keyClick(window.get(), Qt::Key_Space, Qt::AltModifier);
    QTRY_VERIFY(qobject_cast<CWindowMenu*>(QApplication::activePopupWidget()));
    QWidget* popup = QApplication::activePopupWidget();
    QCOMPARE(popup->pos(), title->mapToGlobal(QPoint(0, title->height())));
    QTest::keyClick(popup, Qt::Key_Escape);
    QTRY_VERIFY(!QApplication::activePopupWidget());

    // A right click on the empty title.
    QTest::mousePress(title, Qt::RightButton, Qt::NoModifier, empty);
    QTRY_VERIFY(qobject_cast<CWindowMenu*>(QApplication::activePopupWidget()));
    popup = QApplication::activePopupWidget();
    QCOMPARE(popup->pos(), title->mapToGlobal(empty));
    QTest::keyClick(popup, Qt::Key_Escape);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QTest::mouseRelease(title, Qt::RightButton, Qt::NoModifier, empty);

    // Not on a title button: that keeps its own clicks.
    auto* close = title->findChild<QPushButton*>(QStringLiteral("btn_close"));
    QTest::mousePress(close, Qt::RightButton);
    QCoreApplication::processEvents();
    QVERIFY(!QApplication::activePopupWidget());
    QTest::mouseRelease(close, Qt::RightButton);

    // Keyboard all the way: the mnemonic of Minimise.
    QTest::mousePress(title, Qt::RightButton, Qt::NoModifier, empty);
    QTRY_VERIFY(qobject_cast<CWindowMenu*>(QApplication::activePopupWidget()));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_N); // Mi&nimise
    QTRY_VERIFY(window->isMinimized());
}

#ifndef Q_OS_WIN
int shadowWindowCount()
{
    int count = 0;
    for (QWidget* w : QApplication::topLevelWidgets())
        count += qobject_cast<CShadowWindowQt*>(w) ? 1 : 0;
    return count;
}
#endif

void tst_ZVCoreWindow::twoWindowsOpenAndCloseInAnyOrder_data()
{
    QTest::addColumn<bool>("firstLayered");
    QTest::addColumn<bool>("secondLayered");
    QTest::addColumn<bool>("firstGoesFirst");
    for (bool a : {true, false}) {
        for (bool b : {true, false}) {
            for (bool firstGoesFirst : {true, false}) {
                const QString name = QStringLiteral("%1 + %2, %3 closes first")
                                         .arg(a ? QStringLiteral("layered") : QStringLiteral("painted"),
                                              b ? QStringLiteral("layered") : QStringLiteral("painted"),
                                              firstGoesFirst ? QStringLiteral("first") : QStringLiteral("second"));
                QTest::newRow(qPrintable(name)) << a << b << firstGoesFirst;
            }
        }
    }
}

void tst_ZVCoreWindow::twoWindowsOpenAndCloseInAnyOrder()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    // Each window keeps its own layered shadow; the one that stays goes on moving,
    // resizing and maximising with its shadow after the other has gone (the address
    // sanitizer lane sees any use of a deleted shadow).
    QFETCH(bool, firstLayered);
    QFETCH(bool, secondLayered);
    QFETCH(bool, firstGoesFirst);
    QCOMPARE(shadowWindowCount(), 0);
    qApp->setProperty("QtBasedShadow", !firstLayered);
    auto first = hostWindow();
    qApp->setProperty("QtBasedShadow", !secondLayered);
    auto second = hostWindow();
    QVERIFY(first && second);
    QCOMPARE(shadowWindowCount(), int(firstLayered) + int(secondLayered));
    QCOMPARE(shadowOf(first.get()) != nullptr, firstLayered);
    QCOMPARE(shadowOf(second.get()) != nullptr, secondLayered);

    std::unique_ptr<HostWindow>& leaving = firstGoesFirst ? first : second;
    std::unique_ptr<HostWindow>& staying = firstGoesFirst ? second : first;
    const bool stayingLayered = firstGoesFirst ? secondLayered : firstLayered;
    leaving.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(shadowWindowCount(), int(stayingLayered));
    CShadowWindowQt* shadow = shadowOf(staying.get());
    QCOMPARE(shadow != nullptr, stayingLayered);
    staying->setGeometry(kWindowRect.translated(40, 30).adjusted(0, 0, 60, 20));
    staying->showMaximized();
    QTRY_VERIFY(staying->isMaximized());
    staying->showNormal();
    QTRY_VERIFY(!staying->isMaximized());
    QCOMPARE(shadowOf(staying.get()), shadow);
    staying.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(shadowWindowCount(), 0);
#endif
}

void tst_ZVCoreWindow::hitTestOnAScaledScreen()
{
    ProbeFolder product;
    QVERIFY(product.isValid());
    QProcessEnvironment env;
    env.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("1.5"));
    // Logical (100,100) 800x600 is physical (150,150) 1200x900. The title starts at
    // logical (105,105); physical 158 / 1.5 = 105.3 is on it, 157 / 1.5 = 104.7 is not.
    const QString rect = QStringLiteral("150,150,1200,900,");
    const ProbeRun run = product.run({QStringLiteral("corewindow:build"), QStringLiteral("corewindow:show:100,100,800,600"),
                                      QStringLiteral("corewindow:hittest:") + rect + QStringLiteral("158,160"),
                                      QStringLiteral("corewindow:hittest:") + rect + QStringLiteral("157,160"),
                                      QStringLiteral("corewindow:hittest:") + rect + QStringLiteral("600,165"),
                                      QStringLiteral("corewindow:hittest:") + rect + QStringLiteral("600,1000")},
                                     QDir::rootPath(), env);
    QVERIFY(run.finished);
    QCOMPARE(run.exitCode, 0);
    QList<QJsonObject> answers;
    for (const QJsonObject& r : run.reports) {
        if (r.value(QStringLiteral("cmd")).toString() == QLatin1String("corewindow:hittest"))
            answers.append(r);
    }
    QCOMPARE(answers.size(), 4);
    QCOMPARE(answers.at(0).value(QStringLiteral("dpr")).toDouble(), 1.5);
    QCOMPARE(answers.at(0).value(QStringLiteral("code")).toInt(), int(kCaption));
    QCOMPARE(answers.at(1).value(QStringLiteral("code")).toInt(), int(kNowhere));
    QCOMPARE(answers.at(2).value(QStringLiteral("code")).toInt(), int(kCaption));
    QCOMPARE(answers.at(3).value(QStringLiteral("code")).toInt(), int(kNowhere));
}

// --- public members ----------------------------------------------------------------------

void tst_ZVCoreWindow::setResizeableGatesTheBorders()
{
    auto window = hostWindow();
    QVERIFY(window);
    QCOMPARE(window->HitTest(kWindowRect, QPoint(899, 699)), kNowhere);
    window->SetResizeable(true);
    QCOMPARE(window->HitTest(kWindowRect, QPoint(899, 699)), kBottomRight);
    window->SetResizeable(false);
    QCOMPARE(window->HitTest(kWindowRect, QPoint(899, 699)), kNowhere);
    // The drag-full-windows switch has nothing to act on here; the flag alone counts.
    qApp->setProperty("EnableSetDragFullWindows", true);
    window->SetResizeable(true);
    QCOMPARE(window->HitTest(kWindowRect, QPoint(100, 300)), kLeft);
}

void tst_ZVCoreWindow::setFixedSizeAndSetMinimumSizeForward()
{
    HostWindow window;
    window.setFixedSize(640, 480);
    QCOMPARE(window.minimumSize(), QSize(640, 480));
    QCOMPARE(window.maximumSize(), QSize(640, 480));
    QCOMPARE(window.size(), QSize(640, 480));

    HostWindow other;
    other.setMinimumSize(700, 500);
    QCOMPARE(other.minimumSize(), QSize(700, 500));
    QCOMPARE(other.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void tst_ZVCoreWindow::centerWindowCentresOnThePrimaryScreen()
{
    HostWindow window;
    window.setGeometry(3, 7, 401, 301);
    window.CenterWindow();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QCOMPARE(window.size(), QSize(401, 301));
    QCOMPARE(window.geometry(), QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(401, 301), available));
    // Centred to the pixel, whatever the rounding of the odd sizes.
    QVERIFY(qAbs(window.geometry().center().x() - available.center().x()) <= 1);
    QVERIFY(qAbs(window.geometry().center().y() - available.center().y()) <= 1);
}

void tst_ZVCoreWindow::getTitleWidgetReturnsTheTitle()
{
    HostWindow window;
    QWidget* title = window.GetTitleWidget();
    QVERIFY(title);
    QCOMPARE(title, window.findChild<ZVMainWindowTitle*>());
}

void tst_ZVCoreWindow::setButtonMaximizedHideTogglesTheHintAndTheButton()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the maximise box is a style bit of the native window, which the offscreen platform has none of");
#endif
    auto window = hostWindow();
    QVERIFY(window);
    auto* max = window->GetTitleWidget()->findChild<QPushButton*>(QStringLiteral("btn_max"));
    QVERIFY(max);
    QVERIFY(max->isVisible());

    window->SetButtonMaximizedHide(true);
    QVERIFY(!window->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    QVERIFY(window->windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
    QVERIFY(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(window->windowHandle()->flags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(!window->windowHandle()->flags().testFlag(Qt::WindowMaximizeButtonHint));
    QVERIFY(max->isHidden());
    QVERIFY(max->isEnabled());
    // Like a style bit of the native window, it does not hide the window.
    QVERIFY(window->isVisible());

    window->SetButtonMaximizedHide(false);
    QVERIFY(window->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    QVERIFY(window->windowHandle()->flags().testFlag(Qt::WindowMaximizeButtonHint));
    QVERIFY(!max->isHidden());
    QVERIFY(window->isVisible());

    // Before the native window exists, too.
    HostWindow hidden;
    hidden.SetButtonMaximizedHide(true);
    QVERIFY(!hidden.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    QVERIFY(hidden.GetTitleWidget()->findChild<QPushButton*>(QStringLiteral("btn_max"))->isHidden());
}

// --- painting ----------------------------------------------------------------------------

void tst_ZVCoreWindow::paintsWhiteBackgroundAndFadingRings()
{
    HostWindow window;
    // The title is a child at the top-left corner; the paint under it is not its business.
    window.GetTitleWidget()->hide();
    window.resize(200, 150);
    const QImage image = window.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(200, 150));

    QCOMPARE(image.pixel(100, 75), qRgba(255, 255, 255, 255));
    QCOMPARE(qAlpha(image.pixel(5, 75)), 255);
    QCOMPARE(qAlpha(image.pixel(194, 75)), 255);

    // Across the 5-pixel band, on every side, black fading outward.
    const QList<QPoint> steps{{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
    const QList<QPoint> starts{{4, 75}, {195, 75}, {100, 4}, {100, 145}};
    for (int side = 0; side < 4; ++side) {
        int previous = 255;
        for (int i = 0; i < 5; ++i) {
            const QPoint at = starts.at(side) - steps.at(side) * i;
            const QRgb pixel = image.pixel(at);
            QVERIFY2(qAlpha(pixel) > 0 && qAlpha(pixel) < previous,
                     qPrintable(QStringLiteral("(%1,%2) alpha %3").arg(at.x()).arg(at.y()).arg(qAlpha(pixel))));
            QCOMPARE(qRed(pixel) + qGreen(pixel) + qBlue(pixel), 0);
            previous = qAlpha(pixel);
        }
    }
    // Square corners without "dlgRadius": the background's corner pixels are filled.
    QCOMPARE(qAlpha(image.pixel(5, 5)), 255);
    QCOMPARE(qAlpha(image.pixel(194, 144)), 255);
    QCOMPARE(qAlpha(image.pixel(5, 144)), 255);
}

void tst_ZVCoreWindow::roundedCornersFollowDlgRadius()
{
    qApp->setProperty("dlgRadius", 10);
    HostWindow window;
    window.GetTitleWidget()->hide();
    window.resize(200, 150);
    const QImage image = window.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(qAlpha(image.pixel(5, 5)), 0);
    // The other corners are left to the faint rings: no background there.
    for (const QPoint& corner : {QPoint(194, 5), QPoint(5, 144), QPoint(194, 144)}) {
        QVERIFY(qAlpha(image.pixel(corner)) < 16);
        QCOMPARE(qRed(image.pixel(corner)), 0);
    }
    QCOMPARE(image.pixel(100, 75), qRgba(255, 255, 255, 255));
    // The straight parts of the edges are still filled.
    QCOMPARE(qAlpha(image.pixel(100, 5)), 255);
    QCOMPARE(qAlpha(image.pixel(5, 75)), 255);
}

void tst_ZVCoreWindow::repaintsMatchTheDrawingSteps_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<QSize>("size");
    QTest::newRow("square corners") << 0 << QSize(200, 150);
    QTest::newRow("radius 8") << 8 << QSize(331, 217);
    QTest::newRow("radius 13") << 13 << QSize(640, 480);
    QTest::newRow("too small to keep bands") << 30 << QSize(70, 60);
}

void tst_ZVCoreWindow::repaintsMatchTheDrawingSteps()
{
    // The background and the rings exactly as the frame describes them, on transparent
    // pixels.
    QFETCH(int, radius);
    QFETCH(QSize, size);
    QImage expected(size, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    {
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::Antialiasing, true);
        const int w = size.width();
        const int h = size.height();
        QPainterPath background;
        background.setFillRule(Qt::WindingFill);
        background.addRoundedRect(QRectF(5.0, 5.0, w - 10, h - 10), radius, radius, Qt::AbsoluteSize);
        painter.fillPath(background, QBrush(Qt::white, Qt::SolidPattern));
        const int alphas[] = {44, 24, 16, 10, 4};
        for (int i = 0; i < 5; ++i) {
            QPainterPath ring;
            ring.setFillRule(Qt::WindingFill);
            ring.addRoundedRect(QRectF(5 - i, 5 - i, w - 10 + 2 * i, h - 10 + 2 * i), radius, radius, Qt::AbsoluteSize);
            painter.setPen(QColor(0, 0, 0, alphas[i]));
            painter.drawPath(ring);
        }
    }

    qApp->setProperty("dlgRadius", radius);
    HostWindow window;
    window.GetTitleWidget()->hide();
    window.resize(size);
    // The first paint of a size, the second, and the ones after it all look the same.
    for (int paint = 0; paint < 3; ++paint) {
        const QImage image = window.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(image.size(), size);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                if (image.pixel(x, y) != expected.pixel(x, y))
                    QFAIL(qPrintable(QStringLiteral("paint %1: pixel (%2,%3) is %4 instead of %5")
                                         .arg(paint).arg(x).arg(y)
                                         .arg(image.pixel(x, y), 8, 16)
                                         .arg(expected.pixel(x, y), 8, 16)));
            }
        }
    }
    // A new size is painted right at once.
    window.resize(size + QSize(17, 9));
    const QImage grown = window.grab().toImage();
    QCOMPARE(grown.size(), size + QSize(17, 9));
    QCOMPARE(grown.pixel(size.width() / 2, size.height() / 2), qRgba(255, 255, 255, 255));
}

void tst_ZVCoreWindow::maximisingRemovesTheMarginAndRestoringBringsItBack()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the margin follows WM_SIZE, which the offscreen platform never sends (the wine-display case shadow-qt checks it)");
#endif
    auto window = hostWindow();
    QVERIFY(window);
    QCOMPARE(window->contentsMargins(), QMargins(5, 5, 5, 5));
    window->showMaximized();
    QTRY_VERIFY(window->isMaximized());
    QCOMPARE(window->contentsMargins(), QMargins(0, 0, 0, 0));
    window->showNormal();
    QTRY_VERIFY(!window->isMaximized());
    QCOMPARE(window->contentsMargins(), QMargins(5, 5, 5, 5));

    // A second restore-type change without a maximise in between changes nothing.
    window->setContentsMargins(1, 1, 1, 1);
    QWindowStateChangeEvent change(Qt::WindowMaximized);
    QCoreApplication::sendEvent(window.get(), &change);
    QCOMPARE(window->contentsMargins(), QMargins(1, 1, 1, 1));
}

void tst_ZVCoreWindow::marginFlagIsProcessWide()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the margin follows WM_SIZE, which the offscreen platform never sends (the wine-display case shadow-qt checks it)");
#endif
    auto first = hostWindow();
    QVERIFY(first);
    HostWindow second;
    second.setContentsMargins(2, 2, 2, 2);

    first->showMaximized();
    QTRY_VERIFY(first->isMaximized());
    QCOMPARE(first->contentsMargins(), QMargins());
    // The flag the first window set is taken by the next restore-type change anywhere.
    QWindowStateChangeEvent change(Qt::WindowNoState);
    QCoreApplication::sendEvent(&second, &change);
    QCOMPARE(second.contentsMargins(), QMargins(5, 5, 5, 5));
    first->showNormal();
    QTRY_VERIFY(!first->isMaximized());
    QCOMPARE(first->contentsMargins(), QMargins());
}

void tst_ZVCoreWindow::layeredModeLeavesTheMarginAlone()
{
    qApp->setProperty("QtBasedShadow", false);
    auto window = hostWindow();
    QVERIFY(window);
    QCOMPARE(window->contentsMargins(), QMargins());
    QVERIFY(!window->testAttribute(Qt::WA_TranslucentBackground));
    window->setContentsMargins(2, 2, 2, 2);
    window->showMaximized();
    QTRY_VERIFY(window->isMaximized());
    QCOMPARE(window->contentsMargins(), QMargins(2, 2, 2, 2));
    window->showNormal();
    QTRY_VERIFY(!window->isMaximized());
    QCOMPARE(window->contentsMargins(), QMargins(2, 2, 2, 2));
}

// --- layered mode ------------------------------------------------------------------------

void tst_ZVCoreWindow::layeredModeBuildsTheShadowWindow()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    qApp->setProperty("QtBasedShadow", false);
    auto window = hostWindow();
    QVERIFY(window);
    CShadowWindowQt* shadow = shadowOf(window.get());
    QVERIFY(shadow);
    const ShadowSettings s = shadow->settings();
    QCOMPARE(s.size, 5);
    QCOMPARE(s.xOffset, 0);
    QCOMPARE(s.yOffset, 0);
    QCOMPARE(s.darkness, 40u);
    QCOMPARE(s.sharpness, 5u);
    QCOMPARE(s.color, 0u);
    QTRY_VERIFY(shadow->isVisible());
    QTRY_COMPARE(shadow->geometry(), kWindowRect.adjusted(-5, -5, 5, 5));
    QCOMPARE(shadow->windowHandle()->transientParent(), window->windowHandle());
    QTRY_COMPARE(shadow->shadowImage(), expectedShadow(QSize(800, 600), coreWindowShadowSettings()));
#endif
}

void tst_ZVCoreWindow::destructorDeletesTheLayeredShadow()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    qApp->setProperty("QtBasedShadow", false);
    auto window = std::make_unique<HostWindow>();
    QPointer<CShadowWindowQt> shadow = shadowOf(window.get());
    QVERIFY(shadow);
    window.reset();
    QVERIFY(shadow.isNull());
#endif
}

void tst_ZVCoreWindow::paintedWindowLeavesTheLayeredShadowAlone()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    qApp->setProperty("QtBasedShadow", false);
    auto layered = std::make_unique<HostWindow>();
    QPointer<CShadowWindowQt> shadow = shadowOf(layered.get());
    QVERIFY(shadow);
    qApp->setProperty("QtBasedShadow", true);
    auto painted = std::make_unique<HostWindow>();
    // A window deletes the shadow it built and no other: the layered window keeps its own
    // until it goes itself.
    painted.reset();
    QVERIFY(!shadow.isNull());
    QCOMPARE(shadowOf(layered.get()), shadow.data());
    layered.reset();
    QVERIFY(shadow.isNull());
#endif
}

// --- the shadow window -------------------------------------------------------------------

#ifndef Q_OS_WIN
namespace {

struct ShadedWindow
{
    ShadedWindow()
    {
        window.setWindowFlags(Qt::FramelessWindowHint);
        window.setGeometry(kWindowRect);
        shadow.SetSize(5);
        shadow.SetPosition(0, 0);
        shadow.SetDarkness(40);
    }
    bool showBoth()
    {
        window.show();
        if (!QTest::qWaitForWindowExposed(&window))
            return false;
        shadow.Create(&window);
        return true;
    }
    QWidget window;
    CShadowWindowQt shadow;
};

} // namespace
#endif

void tst_ZVCoreWindow::shadowWindowIsClickThroughTranslucentAndFrameless()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    CShadowWindowQt shadow;
    const Qt::WindowFlags flags = shadow.windowFlags();
    QCOMPARE(shadow.windowType(), Qt::Tool);
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QVERIFY(flags.testFlag(Qt::WindowTransparentForInput));
    QVERIFY(flags.testFlag(Qt::WindowDoesNotAcceptFocus));
    QVERIFY(shadow.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(shadow.testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(!shadow.parentWidget());
    QCOMPARE(shadow.status(), 0);
    const ShadowSettings s = shadow.settings();
    QCOMPARE(s.size, 0);
    QCOMPARE(s.sharpness, 5u);
    QCOMPARE(s.darkness, 150u);
    QCOMPARE(s.xOffset, 5);
    QCOMPARE(s.yOffset, 5);
#endif
}

void tst_ZVCoreWindow::shadowWindowFollowsItsWindow()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    ShadedWindow s;
    // Created for a hidden window, it waits for the window to show.
    s.shadow.Create(&s.window);
    QCOMPARE(s.shadow.status(), int(CShadowWindowQt::Enabled));
    QVERIFY(!s.shadow.isVisible());

    s.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&s.window));
    QTRY_COMPARE(s.shadow.status(),
                 int(CShadowWindowQt::Enabled | CShadowWindowQt::Visible | CShadowWindowQt::ParentVisible));
    QVERIFY(s.shadow.isVisible());
    QCOMPARE(s.shadow.windowHandle()->transientParent(), s.window.windowHandle());
    QTRY_COMPARE(s.shadow.geometry(), s.window.frameGeometry().adjusted(-5, -5, 5, 5));
    QTRY_VERIFY(!s.shadow.updatePending());
    QVERIFY(s.shadow.updateCount() >= 1);
#endif
}

void tst_ZVCoreWindow::shadowWindowImageIsTheShadowBitmap()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    ShadedWindow s;
    QVERIFY(s.showBoth());
    const QImage expected = expectedShadow(QSize(800, 600), coreWindowShadowSettings());
    QTRY_COMPARE(s.shadow.shadowImage(), expected);
    QCOMPARE(s.shadow.geometry(), QRect(95, 95, 810, 610));
    // What the window paints is that image.
    const QImage painted = s.shadow.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(painted, expected);
    // Under the window it is fully transparent; nowhere darker than the darkness.
    QCOMPARE(qAlpha(expected.pixel(405, 305)), 0);
    QCOMPARE(qAlpha(expected.pixel(5, 5)), 0);
    int darkest = 0;
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x)
            darkest = qMax(darkest, qAlpha(expected.pixel(x, y)));
    }
    QVERIFY(darkest > 0);
    QVERIFY(darkest <= 40);
#endif
}

void tst_ZVCoreWindow::shadowWindowMoveOnlyRepositions()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    ShadedWindow s;
    QVERIFY(s.showBoth());
    QTRY_VERIFY(!s.shadow.updatePending());
    const int before = s.shadow.updateCount();
    const QImage image = s.shadow.shadowImage();

    s.window.move(130, 120);
    QTRY_COMPARE(s.shadow.geometry(), QRect(125, 115, 810, 610));
    QCoreApplication::processEvents();
    QCOMPARE(s.shadow.updateCount(), before);
    QCOMPARE(s.shadow.shadowImage(), image);
#endif
}

void tst_ZVCoreWindow::shadowWindowShrinkingRedrawsAtOnceGrowingAtPaint()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    ShadedWindow s;
    QVERIFY(s.showBoth());
    QTRY_VERIFY(!s.shadow.updatePending());
    // The first size change of a new shadow always counts as growing.
    s.window.resize(790, 590);
    QTRY_COMPARE(s.shadow.geometry(), QRect(95, 95, 800, 600));
    const int settled = s.shadow.updateCount();

    // Shrinking: recomputed with the size change itself.
    s.window.setUpdatesEnabled(false);
    s.window.resize(700, 500);
    QTRY_COMPARE(s.shadow.updateCount(), settled + 1);
    QCOMPARE(s.shadow.geometry(), QRect(95, 95, 710, 510));
    QCOMPARE(s.shadow.shadowImage(), expectedShadow(QSize(700, 500), coreWindowShadowSettings()));

    // Growing: pending until the window paints.
    s.window.resize(750, 560);
    QTRY_VERIFY(s.shadow.updatePending());
    QCOMPARE(s.shadow.updateCount(), settled + 1);
    QCOMPARE(s.shadow.geometry(), QRect(95, 95, 710, 510));
    s.window.setUpdatesEnabled(true);
    s.window.update();
    QTRY_VERIFY(!s.shadow.updatePending());
    QCOMPARE(s.shadow.updateCount(), settled + 2);
    QCOMPARE(s.shadow.geometry(), QRect(95, 95, 760, 570));
    QCOMPARE(s.shadow.shadowImage(), expectedShadow(QSize(750, 560), coreWindowShadowSettings()));
#endif
}

void tst_ZVCoreWindow::shadowWindowHidesForMaximisedAndMinimised()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    ShadedWindow s;
    QVERIFY(s.showBoth());
    QTRY_VERIFY(s.shadow.isVisible());

    s.window.showMaximized();
    QTRY_VERIFY(s.window.isMaximized());
    QTRY_VERIFY(!s.shadow.isVisible());
    QVERIFY(!(s.shadow.status() & CShadowWindowQt::Visible));

    s.window.showNormal();
    QTRY_VERIFY(!s.window.isMaximized());
    QTRY_VERIFY(s.shadow.isVisible());
    QTRY_COMPARE(s.shadow.geometry(), s.window.frameGeometry().adjusted(-5, -5, 5, 5));

    s.window.showMinimized();
    QTRY_VERIFY(s.window.isMinimized());
    QTRY_VERIFY(!s.shadow.isVisible());

    s.window.showNormal();
    QTRY_VERIFY(s.shadow.isVisible());
#endif
}

void tst_ZVCoreWindow::shadowWindowHidesWithItsWindow()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    ShadedWindow s;
    QVERIFY(s.showBoth());
    QTRY_VERIFY(s.shadow.isVisible());
    s.window.hide();
    QVERIFY(!s.shadow.isVisible());
    QCOMPARE(s.shadow.status(), int(CShadowWindowQt::Enabled));
    s.window.show();
    QTRY_VERIFY(s.shadow.isVisible());
    QCOMPARE(s.shadow.status(),
             int(CShadowWindowQt::Enabled | CShadowWindowQt::Visible | CShadowWindowQt::ParentVisible));
#endif
}

void tst_ZVCoreWindow::shadowWindowSettersRefuseOutOfRange_data()
{
    QTest::addColumn<QString>("setter");
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("size 21") << "size" << 21 << 0 << false;
    QTest::newRow("size -21") << "size" << -21 << 0 << false;
    QTest::newRow("size 20") << "size" << 20 << 0 << true;
    QTest::newRow("size -20") << "size" << -20 << 0 << true;
    QTest::newRow("sharpness 21") << "sharpness" << 21 << 0 << false;
    QTest::newRow("sharpness 20") << "sharpness" << 20 << 0 << true;
    QTest::newRow("darkness 256") << "darkness" << 256 << 0 << false;
    QTest::newRow("darkness 255") << "darkness" << 255 << 0 << true;
    QTest::newRow("position (0,-21)") << "position" << 0 << -21 << false;
    QTest::newRow("position (21,0)") << "position" << 21 << 0 << false;
    QTest::newRow("position (-20,20)") << "position" << -20 << 20 << true;
}

void tst_ZVCoreWindow::shadowWindowSettersRefuseOutOfRange()
{
#ifdef Q_OS_WIN
    QSKIP(kNativeShadowOnWindows);
#else
    QFETCH(QString, setter);
    QFETCH(int, a);
    QFETCH(int, b);
    QFETCH(bool, accepted);
    ShadedWindow s;
    QVERIFY(s.showBoth());
    QTRY_VERIFY(!s.shadow.updatePending());
    const ShadowSettings before = s.shadow.settings();
    const int count = s.shadow.updateCount();
    bool result = false;
    if (setter == QLatin1String("size"))
        result = s.shadow.SetSize(a);
    else if (setter == QLatin1String("sharpness"))
        result = s.shadow.SetSharpness(unsigned(a));
    else if (setter == QLatin1String("darkness"))
        result = s.shadow.SetDarkness(unsigned(a));
    else
        result = s.shadow.SetPosition(a, b);
    QCOMPARE(result, accepted);
    const ShadowSettings after = s.shadow.settings();
    if (!accepted) {
        QCOMPARE(after.size, before.size);
        QCOMPARE(after.sharpness, before.sharpness);
        QCOMPARE(after.darkness, before.darkness);
        QCOMPARE(after.xOffset, before.xOffset);
        QCOMPARE(after.yOffset, before.yOffset);
        QCOMPARE(s.shadow.updateCount(), count);
    } else {
        // A visible shadow is redrawn with the new value at once.
        QCOMPARE(s.shadow.updateCount(), count + 1);
        QCOMPARE(s.shadow.shadowImage(), expectedShadow(QSize(800, 600), after));
    }
#endif
}

// --- the frame driven by the mouse -------------------------------------------------------

void tst_ZVCoreWindow::cursorShowsTheBorder_data()
{
    QTest::addColumn<bool>("layered");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<int>("shape");
    for (bool layered : {false, true}) {
        const QByteArray mode = layered ? " (layered, over the children)" : " (painted margin)";
        QTest::newRow("left" + mode) << layered << QPoint(102, 300) << int(Qt::SizeHorCursor);
        QTest::newRow("right" + mode) << layered << QPoint(897, 300) << int(Qt::SizeHorCursor);
        QTest::newRow("top" + mode) << layered << QPoint(400, 101) << int(Qt::SizeVerCursor);
        QTest::newRow("bottom" + mode) << layered << QPoint(400, 698) << int(Qt::SizeVerCursor);
        QTest::newRow("top-left" + mode) << layered << QPoint(101, 101) << int(Qt::SizeFDiagCursor);
        QTest::newRow("bottom-right" + mode) << layered << QPoint(898, 698) << int(Qt::SizeFDiagCursor);
        QTest::newRow("top-right" + mode) << layered << QPoint(898, 101) << int(Qt::SizeBDiagCursor);
        QTest::newRow("bottom-left" + mode) << layered << QPoint(101, 698) << int(Qt::SizeBDiagCursor);
        QTest::newRow("left over the title" + mode) << layered << QPoint(102, 110) << int(Qt::SizeHorCursor);
        QTest::newRow("central" + mode) << layered << QPoint(400, 300) << int(Qt::ArrowCursor);
        QTest::newRow("title" + mode) << layered << QPoint(400, 110) << int(Qt::ArrowCursor);
    }
}

void tst_ZVCoreWindow::cursorShowsTheBorder()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the system shows the border cursors from the hit-test answers");
#endif
    QFETCH(bool, layered);
    QFETCH(QPoint, pos);
    QFETCH(int, shape);
    qApp->setProperty("QtBasedShadow", !layered);
    auto window = hostWindow();
    QVERIFY(window);
    window->SetResizeable(true);

    // From a border, so that returning to the arrow is seen too.
    mouseMove(window.get(), QPoint(100, 300));
    QCOMPARE(window->cursor().shape(), Qt::SizeHorCursor);
    mouseMove(window.get(), pos);
    QCOMPARE(int(window->cursor().shape()), shape);
    // Which widget is under the point does not matter: the window's cursor is the one
    // shown wherever a child has none of its own.
    QWidget* under = window->childAt(window->mapFromGlobal(pos));
    if (under)
        QCOMPARE(int(under->cursor().shape()), shape);

    // A maximised window has no borders.
    window->showMaximized();
    QTRY_VERIFY(window->isMaximized());
    mouseMove(window.get(), window->frameGeometry().topLeft() + QPoint(1, 300));
    QCOMPARE(window->cursor().shape(), Qt::ArrowCursor);
}

void tst_ZVCoreWindow::borderPressResizesWithinLimits_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("expected");
    // The window is 800x600 at (100,100); limits 400x300 to 1000x700.
    QTest::newRow("left, wider") << QPoint(102, 300) << QPoint(52, 320) << QRect(50, 100, 850, 600);
    QTest::newRow("left, narrower") << QPoint(102, 300) << QPoint(202, 300) << QRect(200, 100, 700, 600);
    QTest::newRow("left, down to the minimum") << QPoint(102, 300) << QPoint(802, 300) << QRect(500, 100, 400, 600);
    QTest::newRow("left, up to the maximum") << QPoint(102, 300) << QPoint(-198, 300) << QRect(-100, 100, 1000, 600);
    QTest::newRow("right") << QPoint(897, 300) << QPoint(947, 250) << QRect(100, 100, 850, 600);
    QTest::newRow("right, up to the maximum") << QPoint(897, 300) << QPoint(1197, 300) << QRect(100, 100, 1000, 600);
    QTest::newRow("top") << QPoint(400, 102) << QPoint(420, 72) << QRect(100, 70, 800, 630);
    QTest::newRow("top, down to the minimum") << QPoint(400, 102) << QPoint(400, 602) << QRect(100, 400, 800, 300);
    QTest::newRow("bottom") << QPoint(400, 697) << QPoint(400, 647) << QRect(100, 100, 800, 550);
    QTest::newRow("bottom, up to the maximum") << QPoint(400, 697) << QPoint(400, 897) << QRect(100, 100, 800, 700);
    QTest::newRow("top-left") << QPoint(101, 101) << QPoint(151, 131) << QRect(150, 130, 750, 570);
    QTest::newRow("top-right") << QPoint(898, 101) << QPoint(948, 131) << QRect(100, 130, 850, 570);
    QTest::newRow("bottom-left") << QPoint(101, 698) << QPoint(51, 648) << QRect(50, 100, 850, 550);
    QTest::newRow("bottom-right") << QPoint(898, 698) << QPoint(798, 598) << QRect(100, 100, 700, 500);
}

void tst_ZVCoreWindow::borderPressResizesWithinLimits()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the system resizes from the hit-test answers (the wine-display resize case drives it)");
#endif
    QFETCH(QPoint, press);
    QFETCH(QPoint, to);
    QFETCH(QRect, expected);
    auto window = hostWindow();
    QVERIFY(window);
    window->SetResizeable(true);
    window->setMinimumSize(400, 300);
    window->setMaximumSize(1000, 700);

    mousePress(window.get(), press);
    // The window system refuses a system resize here, so the window follows the mouse.
    mouseMove(window.get(), to);
    QTRY_COMPARE(window->geometry(), expected);
    mouseRelease(window.get(), to);
    // Once released, moving the mouse changes nothing.
    mouseMove(window.get(), to + QPoint(7, 9));
    QCOMPARE(window->geometry(), expected);
}

void tst_ZVCoreWindow::fixedWindowIgnoresBorderPresses()
{
    auto window = hostWindow();
    QVERIFY(window);
    window->SetResizeable(true);
    window->setFixedSize(800, 600);
    mousePress(window.get(), QPoint(102, 300));
    mouseMove(window.get(), QPoint(60, 300));
    mouseRelease(window.get(), QPoint(60, 300));
    QCOMPARE(window->geometry(), kWindowRect);

    // Not resizable: the same.
    window->setMinimumSize(0, 0);
    window->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    window->SetResizeable(false);
    mousePress(window.get(), QPoint(102, 300));
    mouseMove(window.get(), QPoint(60, 300));
    mouseRelease(window.get(), QPoint(60, 300));
    QCOMPARE(window->geometry(), kWindowRect);
}

void tst_ZVCoreWindow::titleDragMovesAfterTheThresholdKeepingTheDistance()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the system moves the window from the caption hit-test answer (the wine-display drag cases drive it)");
#endif
    auto window = hostWindow();
    QVERIFY(window);
    const QPoint grip = emptyTitlePoint(window.get());
    const int threshold = QApplication::startDragDistance();

    mousePress(window.get(), grip);
    // Within the threshold the window stays.
    mouseMove(window.get(), grip + QPoint(threshold - 1, 0));
    QCOMPARE(window->geometry(), kWindowRect);
    // Beyond it, the window catches up with the whole distance.
    mouseMove(window.get(), grip + QPoint(30, 20));
    QTRY_COMPARE(window->geometry(), kWindowRect.translated(30, 20));
    mouseMove(window.get(), grip + QPoint(-40, 55));
    QTRY_COMPARE(window->geometry(), kWindowRect.translated(-40, 55));
    mouseRelease(window.get(), grip + QPoint(-40, 55));
    mouseMove(window.get(), grip + QPoint(10, 10));
    QCOMPARE(window->geometry(), kWindowRect.translated(-40, 55));
    QVERIFY(!window->isMaximized());
}

void tst_ZVCoreWindow::doubleClickOnTheTitleMaximisesAndRestores()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the system maximises on a double click on the caption (the wine-display maximize case drives it)");
#endif
    auto window = hostWindow();
    QVERIFY(window);
    mouseDoubleClick(window.get(), emptyTitlePoint(window.get()));
    QTRY_VERIFY(window->isMaximized());
    mouseDoubleClick(window.get(), emptyTitlePoint(window.get()));
    QTRY_VERIFY(!window->isMaximized());
    QTRY_COMPARE(window->geometry(), kWindowRect);
}

void tst_ZVCoreWindow::doubleClickElsewhereChangesNothing()
{
    auto window = hostWindow();
    QVERIFY(window);
    window->SetResizeable(true);
    mouseDoubleClick(window.get(), QPoint(400, 300));
    mouseDoubleClick(window.get(), QPoint(102, 300));
    const QWidget* separator = window->GetTitleWidget()->findChild<QWidget*>(QStringLiteral("separator_line"));
    mouseDoubleClick(window.get(), separator->mapToGlobal(separator->rect().center()));
    QCoreApplication::processEvents();
    QVERIFY(!window->isMaximized());
    QCOMPARE(window->geometry(), kWindowRect);
}

void tst_ZVCoreWindow::doubleClickWithoutMaximiseAbilityChangesNothing()
{
    auto window = hostWindow();
    QVERIFY(window);
    window->SetButtonMaximizedHide(true);
    mouseDoubleClick(window.get(), emptyTitlePoint(window.get()));
    QCoreApplication::processEvents();
    QVERIFY(!window->isMaximized());
}

void tst_ZVCoreWindow::titleButtonsKeepTheirClicks()
{
    auto window = hostWindow();
    QVERIFY(window);
    window->SetResizeable(true);
    const QWidget* max = window->GetTitleWidget()->findChild<QPushButton*>(QStringLiteral("btn_max"));
    const QPoint centre = max->mapToGlobal(max->rect().center());
    mousePress(window.get(), centre);
    mouseRelease(window.get(), centre);
    QTRY_VERIFY(window->isMaximized());
    QCOMPARE(max->property("maxed"), QVariant(true));
}

QTEST_MAIN(tst_ZVCoreWindow)
#include "tst_zvcorewindow.moc"
