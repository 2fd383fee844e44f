// The main window's title bar. Most cases run in this process on a bare top-level
// window standing in for the core window; the title text, the first show and the
// feedback program need a product folder of their own and run in the probe.
#include "probe.h"

#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/LanguageSelectDialog>
#include <ZVCore/private/ZVAboutDialog>
#include <ZVCore/private/ZVMainWindowTitle>

#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QAccessible>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <memory>

#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 33))
#include <malloc.h>
#define ZV_HAVE_MALLINFO2 1
#endif

using ZVUIFramework::ZVApplicationInfo;

namespace {

constexpr int kMainWindowEvent = 1000;
constexpr int kButtonReleased = 1003;

QStringList buttonNames()
{
    return {QStringLiteral("btn_feedback"), QStringLiteral("btn_menu"), QStringLiteral("btn_min"),
            QStringLiteral("btn_max"), QStringLiteral("btn_close")};
}

struct Posted
{
    int type = 0;
    int value = -1;
    QString source;
    QString name;
    int triggerType = 0;
};

class BusReceiver : public QObject
{
public:
    QList<Posted> events;

protected:
    void customEvent(QEvent* event) override
    {
        const auto* e = static_cast<ZVCustomEvent*>(event);
        events.append({int(e->type()), e->value, e->source, e->name, e->triggerType});
    }
};

// Records, for every event of one type reaching the watched objects, whether it came
// from the window system.
class EventRecorder : public QObject
{
public:
    explicit EventRecorder(QEvent::Type type)
        : m_type(type)
    {
    }
    QList<bool> spontaneous;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        Q_UNUSED(watched)
        if (event->type() == m_type)
            spontaneous.append(event->spontaneous());
        return false;
    }

private:
    QEvent::Type m_type;
};

// A catalogue holding one message: "Feedback" in \a context.
class OneMessageTranslator : public QTranslator
{
public:
    OneMessageTranslator(const QString& context, const QString& translation)
        : m_context(context)
        , m_translation(translation)
    {
    }
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* disambiguation, int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        if (m_context == QLatin1String(context) && qstrcmp(sourceText, "Feedback") == 0)
            return m_translation;
        return QString();
    }

private:
    QString m_context;
    QString m_translation;
};

// A bare top-level window with a title bar on it, as the core window builds it.
class Frame
{
public:
    explicit Frame(bool initialise = true)
    {
        window = new QWidget;
        window->resize(800, 600);
        auto* layout = new QVBoxLayout(window);
        layout->setContentsMargins(0, 0, 0, 0);
        title = new ZVMainWindowTitle(window);
        layout->addWidget(title);
        layout->addStretch(1);
        if (initialise)
            title->init();
    }
    ~Frame() { delete window; }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    bool show()
    {
        window->show();
        return QTest::qWaitForWindowExposed(window);
    }
    QPushButton* button(const QString& name) const { return title->findChild<QPushButton*>(name); }
    QPushButton* maxButton() const { return button(QStringLiteral("btn_max")); }
    QVariant maxed() const { return maxButton()->property("maxed"); }

    QWidget* window = nullptr;
    ZVMainWindowTitle* title = nullptr;
};

ZVCustomEventSendObj* bus()
{
    return ZVCustomEventSendObj::GetInstance();
}

QString appPath(const ProbeFolder& product)
{
    return QFileInfo(product.file(QStringLiteral("zvprobe") + ProbeFolder::exeSuffix())).canonicalFilePath();
}

QList<QJsonObject> titleReports(const ProbeRun& run)
{
    QList<QJsonObject> found;
    for (const QJsonObject& r : run.reports) {
        if (r.value(QStringLiteral("cmd")).toString() == QLatin1String("titlebar"))
            found.append(r);
    }
    return found;
}

} // namespace

class tst_ZVMainWindowTitle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    // form
    void childWidgets_data();
    void childWidgets();
    void outerLayout();
    void leftGroup();
    void rightGroup_data();
    void rightGroup();
    void styleSheet_data();
    void styleSheet();
    void labelsLetMouseEventsThrough_data();
    void labelsLetMouseEventsThrough();
    void whiteFilledBackgroundAndFixedHeight_data();
    void whiteFilledBackgroundAndFixedHeight();
    void crashMailFromApplicationProperty_data();
    void crashMailFromApplicationProperty();
    void mainWindowIsTheLatestParent();

    // init
    void initSetsMaxedFalseAndTheTitleText();
    void initCreatesTheHiddenMenuView();
    void initAttachesToEvent1000WhichHasNoEffect();

    // signals
    void buttonsAndMenuViewRelayToSignals_data();
    void buttonsAndMenuViewRelayToSignals();
    void attachEventCarriesTheId_data();
    void attachEventCarriesTheId();
    void menuButtonOpensTheMenuView();
    void dialogsAreModalChildrenOfTheMainWindow_data();
    void dialogsAreModalChildrenOfTheMainWindow();

    // maximise button
    void maxedFollowsTheWindowStateSetByAnyMeans_data();
    void maxedFollowsTheWindowStateSetByAnyMeans();
    void maxClickEmitsBeforeUpdating();
    void maxClickShowsASynchronousStateChangeAtOnce_data();
    void maxClickShowsASynchronousStateChangeAtOnce();
    void disabledMaxButtonKeepsItsValue_data();
    void disabledMaxButtonKeepsItsValue();
    void hiddenMaxButtonStaysEnabledAndCurrent_data();
    void hiddenMaxButtonStaysEnabledAndCurrent();
    void maximisingDropsTheHoverWithASyntheticLeave_data();
    void maximisingDropsTheHoverWithASyntheticLeave();
    void maxedRulesOfTheStyleSheetFollow();
    void noMainWindowMeansNotMaximised();
    void firstShowIsRecorded();

    // bus event 1003
    void releaseOnAButtonPostsOneEvent_data();
    void releaseOnAButtonPostsOneEvent();
    void clickPostsExactlyOneEvent_data();
    void clickPostsExactlyOneEvent();
    void releaseElsewherePostsNothing_data();
    void releaseElsewherePostsNothing();
    void releaseWithoutReceiverDoesNotLeak();

    // language change
    void feedbackToolTipOnlyAfterALanguageChange();
    void feedbackToolTipTranslatedInItsOwnContext_data();
    void feedbackToolTipTranslatedInItsOwnContext();
    void languageChangeLeavesEverythingElse();
    void buttonsHaveAccessibleNames();
    void changeEventLeavesTheBaseClassOut();

    // in a product folder of its own
    void titleTextFromTheProduct_data();
    void titleTextFromTheProduct();
    void firstShowOfTheMainWindow_data();
    void firstShowOfTheMainWindow();
    void feedbackProgramStarted_data();
    void feedbackProgramStarted();

private:
    QString m_savedLanguagePath;
    bool m_savedLanguageExisted = true;
    std::unique_ptr<BusReceiver> m_receiver;
};

void tst_ZVMainWindowTitle::initTestCase()
{
    // The language manager, built with the first title bar, saves its choice beside
    // this program; a forced language keeps the locale out of it.
    qApp->setProperty("ForceLanguage", QStringLiteral("English"));
    m_savedLanguagePath = ZVUIFramework::CLanguageStore::GetInstance()->GetSavedLanguagePath();
    m_savedLanguageExisted = QFileInfo::exists(m_savedLanguagePath);

    // Let the language change that comes with the first title bar pass, so that no
    // test sees it later.
    {
        Frame first;
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
}

void tst_ZVMainWindowTitle::cleanupTestCase()
{
    if (!m_savedLanguageExisted)
        QFile::remove(m_savedLanguagePath);
}

void tst_ZVMainWindowTitle::init()
{
    bus()->Detach(kButtonReleased);
    m_receiver.reset(new BusReceiver);
}

void tst_ZVMainWindowTitle::cleanup()
{
    bus()->Detach(kButtonReleased);
    m_receiver.reset();
    for (const char* name : {"dlgRadius", "WatchDogReceiveEmailAccount"})
        qApp->setProperty(name, QVariant());
    QCoreApplication::processEvents();
}

// --- form ------------------------------------------------------------------------------

void tst_ZVMainWindowTitle::childWidgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QSize>("fixedSize"); // invalid: not fixed

    QTest::newRow("logo") << "label_logo" << "QLabel" << QSize(30, 30);
    QTest::newRow("title text") << "label_title" << "QLabel" << QSize();
    QTest::newRow("separator") << "separator_line" << "QLabel" << QSize(1, 23);
    QTest::newRow("feedback") << "btn_feedback" << "QPushButton" << QSize(20, 20);
    QTest::newRow("menu") << "btn_menu" << "QPushButton" << QSize(20, 20);
    QTest::newRow("minimise") << "btn_min" << "QPushButton" << QSize(20, 20);
    QTest::newRow("maximise") << "btn_max" << "QPushButton" << QSize(20, 20);
    QTest::newRow("close") << "btn_close" << "QPushButton" << QSize(20, 20);
}

void tst_ZVMainWindowTitle::childWidgets()
{
    QFETCH(QString, name);
    QFETCH(QString, className);
    QFETCH(QSize, fixedSize);

    Frame frame;
    const QList<QWidget*> found = frame.title->findChildren<QWidget*>(name);
    QCOMPARE(found.size(), 1);
    QWidget* w = found.first();
    QCOMPARE(QString::fromLatin1(w->metaObject()->className()), className);
    if (fixedSize.isValid()) {
        QCOMPARE(w->minimumSize(), fixedSize);
        QCOMPARE(w->maximumSize(), fixedSize);
    } else {
        QCOMPARE(w->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    }
}

void tst_ZVMainWindowTitle::outerLayout()
{
    Frame frame;
    auto* outer = qobject_cast<QVBoxLayout*>(frame.title->layout());
    QVERIFY(outer);
    QCOMPARE(outer->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(outer->spacing(), 0);
    QCOMPARE(outer->count(), 3);
    QVERIFY(outer->itemAt(0)->spacerItem());
    QCOMPARE(outer->stretch(0), 1);
    QVERIFY(outer->itemAt(2)->spacerItem());
    QCOMPARE(outer->stretch(2), 1);

    auto* row = qobject_cast<QHBoxLayout*>(outer->itemAt(1)->layout());
    QVERIFY(row);
    QCOMPARE(row->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(row->count(), 2);
    QCOMPARE(row->itemAt(0)->layout(), frame.title->findChild<QHBoxLayout*>(QStringLiteral("title_hlayout1")));
    QCOMPARE(row->itemAt(1)->layout(), frame.title->findChild<QHBoxLayout*>(QStringLiteral("title_hlayout2")));
    QVERIFY(row->itemAt(0)->layout());
    QVERIFY(row->itemAt(1)->layout());
}

void tst_ZVMainWindowTitle::leftGroup()
{
    Frame frame;
    auto* left = frame.title->findChild<QHBoxLayout*>(QStringLiteral("title_hlayout1"));
    QVERIFY(left);
    QCOMPARE(left->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(left->spacing(), 0);
    QCOMPARE(left->count(), 2);

    QSpacerItem* gap = left->itemAt(0)->spacerItem();
    QVERIFY(gap);
    QCOMPARE(gap->sizeHint().width(), 15);
    QCOMPARE(gap->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);

    QWidget* container = left->itemAt(1)->widget();
    QVERIFY(container);
    QCOMPARE(left->itemAt(1)->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(QString::fromLatin1(container->metaObject()->className()), QStringLiteral("QWidget"));

    auto* inner = qobject_cast<QHBoxLayout*>(container->layout());
    QVERIFY(inner);
    QCOMPARE(inner->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(inner->spacing(), 10);
    QCOMPARE(inner->count(), 2);
    QCOMPARE(inner->itemAt(0)->widget()->objectName(), QStringLiteral("label_logo"));
    QCOMPARE(inner->itemAt(1)->widget()->objectName(), QStringLiteral("label_title"));
}

void tst_ZVMainWindowTitle::rightGroup_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("widget"); // empty: a fixed gap
    QTest::addColumn<int>("gap");

    QTest::newRow("leading gap") << 0 << "" << 16;
    QTest::newRow("separator") << 1 << "separator_line" << 0;
    QTest::newRow("feedback") << 2 << "btn_feedback" << 0;
    QTest::newRow("menu") << 3 << "btn_menu" << 0;
    QTest::newRow("minimise") << 4 << "btn_min" << 0;
    QTest::newRow("maximise") << 5 << "btn_max" << 0;
    QTest::newRow("close") << 6 << "btn_close" << 0;
    QTest::newRow("trailing gap") << 7 << "" << 20;
}

void tst_ZVMainWindowTitle::rightGroup()
{
    QFETCH(int, index);
    QFETCH(QString, widget);
    QFETCH(int, gap);

    Frame frame;
    auto* right = frame.title->findChild<QHBoxLayout*>(QStringLiteral("title_hlayout2"));
    QVERIFY(right);
    QCOMPARE(right->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(right->spacing(), 15);
    QCOMPARE(right->count(), 8);

    QLayoutItem* item = right->itemAt(index);
    if (widget.isEmpty()) {
        QVERIFY(item->spacerItem());
        QCOMPARE(item->spacerItem()->sizeHint().width(), gap);
        QCOMPARE(item->spacerItem()->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    } else {
        QVERIFY(item->widget());
        QCOMPARE(item->widget()->objectName(), widget);
    }
}

void tst_ZVMainWindowTitle::styleSheet_data()
{
    QTest::addColumn<QVariant>("radius");
    QTest::addColumn<QString>("expected");

    QTest::newRow("radius 7") << QVariant(7)
                              << "ZVMainWindowTitle { border-top-left-radius: 7px;border-top-right-radius: 7px; }";
    QTest::newRow("radius 12 as text") << QVariant(QStringLiteral("12"))
                                       << "ZVMainWindowTitle { border-top-left-radius: 12px;border-top-right-radius: 12px; }";
    QTest::newRow("missing") << QVariant()
                             << "ZVMainWindowTitle { border-top-left-radius: 0px;border-top-right-radius: 0px; }";
    QTest::newRow("not a number") << QVariant(QStringLiteral("round"))
                                  << "ZVMainWindowTitle { border-top-left-radius: 0px;border-top-right-radius: 0px; }";
}

void tst_ZVMainWindowTitle::styleSheet()
{
    QFETCH(QVariant, radius);
    QFETCH(QString, expected);

    qApp->setProperty("dlgRadius", radius);
    Frame frame;
    QCOMPARE(frame.title->styleSheet(), expected);
}

void tst_ZVMainWindowTitle::labelsLetMouseEventsThrough_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("logo") << "label_logo";
    QTest::newRow("title text") << "label_title";
}

void tst_ZVMainWindowTitle::labelsLetMouseEventsThrough()
{
    QFETCH(QString, name);
    Frame frame;
    auto* label = frame.title->findChild<QLabel*>(name);
    QVERIFY(label);
    QVERIFY(label->testAttribute(Qt::WA_TransparentForMouseEvents));
}

void tst_ZVMainWindowTitle::whiteFilledBackgroundAndFixedHeight_data()
{
    QTest::addColumn<int>("group");
    QTest::newRow("active") << int(QPalette::Active);
    QTest::newRow("inactive") << int(QPalette::Inactive);
    QTest::newRow("disabled") << int(QPalette::Disabled);
}

void tst_ZVMainWindowTitle::whiteFilledBackgroundAndFixedHeight()
{
    QFETCH(int, group);
    Frame frame;
    const QBrush brush = frame.title->palette().brush(QPalette::ColorGroup(group), QPalette::Window);
    QCOMPARE(brush.style(), Qt::SolidPattern);
    QCOMPARE(brush.color(), QColor(Qt::white));
    QVERIFY(frame.title->autoFillBackground());
    QCOMPARE(frame.title->minimumHeight(), 45);
    QCOMPARE(frame.title->maximumHeight(), 45);
}

void tst_ZVMainWindowTitle::crashMailFromApplicationProperty_data()
{
    QTest::addColumn<QVariant>("property");
    QTest::addColumn<QString>("expected");
    QTest::newRow("set") << QVariant(QStringLiteral("watchdog@example.com")) << "watchdog@example.com";
    QTest::newRow("empty") << QVariant(QString()) << "before@example.com";
    QTest::newRow("missing") << QVariant() << "before@example.com";
}

void tst_ZVMainWindowTitle::crashMailFromApplicationProperty()
{
    QFETCH(QVariant, property);
    QFETCH(QString, expected);

    ZVApplicationInfo::GetInstance()->SetReceiveEmailOnCrash(QStringLiteral("before@example.com"));
    qApp->setProperty("WatchDogReceiveEmailAccount", property);
    Frame frame(false);
    QCOMPARE(ZVApplicationInfo::GetInstance()->GetReceiveEmailOnCrash(), expected);
}

void tst_ZVMainWindowTitle::mainWindowIsTheLatestParent()
{
    Frame first;
    QCOMPARE(ZVMainWindowTitle::mainWindow(), first.window);
    Frame second;
    QCOMPARE(ZVMainWindowTitle::mainWindow(), second.window);
}

// --- init ------------------------------------------------------------------------------

void tst_ZVMainWindowTitle::initSetsMaxedFalseAndTheTitleText()
{
    Frame frame(false);
    QVERIFY(!frame.maxed().isValid());
    auto* label = frame.title->findChild<QLabel*>(QStringLiteral("label_title"));
    QVERIFY(label->text().isEmpty());

    frame.title->init();
    QCOMPARE(frame.maxed(), QVariant(false));
    ZVApplicationInfo* info = ZVApplicationInfo::GetInstance();
    QCOMPARE(label->text(), info->GetBrandName() + QLatin1Char(' ') + info->GetAppName());
}

void tst_ZVMainWindowTitle::initCreatesTheHiddenMenuView()
{
    Frame frame(false);
    QVERIFY(!frame.title->menuView());
    QVERIFY(!frame.title->findChild<CMenuView*>());

    frame.title->init();
    QVERIFY(frame.show());
    CMenuView* view = frame.title->menuView();
    QVERIFY(view);
    QCOMPARE(view->parentWidget(), static_cast<QWidget*>(frame.title));
    QVERIFY(view->isHidden());
    QCOMPARE(frame.title->findChildren<CMenuView*>().size(), 1);
}

void tst_ZVMainWindowTitle::initAttachesToEvent1000WhichHasNoEffect()
{
    bus()->Detach(kMainWindowEvent);
    Frame frame(false);
    QVERIFY(!bus()->HasReceiver(kMainWindowEvent));
    frame.title->init();
    QVERIFY(bus()->HasReceiver(kMainWindowEvent));

    QVERIFY(frame.show());
    QCoreApplication::processEvents();
    auto* label = frame.title->findChild<QLabel*>(QStringLiteral("label_title"));
    const QString text = label->text();
    const QString tip = frame.button(QStringLiteral("btn_feedback"))->toolTip();
    QSignalSpy close(frame.title, &ZVMainWindowTitle::signalCloseWindow);
    QSignalSpy minimise(frame.title, &ZVMainWindowTitle::signalShowMinimized);
    QSignalSpy maximise(frame.title, &ZVMainWindowTitle::signalShowMaxOrNormal);
    QSignalSpy attach(frame.title, &ZVMainWindowTitle::signalAttachEvent);
    QSignalSpy inited(frame.title, &ZVMainWindowTitle::signalMenuInited);

    bus()->PostEvent(kMainWindowEvent, 1);
    ZVCustomEvent sent(QEvent::Type(kMainWindowEvent), 2);
    bus()->SendEvent(&sent);
    QCoreApplication::processEvents();

    for (QSignalSpy* spy : {&close, &minimise, &maximise, &attach, &inited})
        QCOMPARE(spy->count(), 0);
    QCOMPARE(label->text(), text);
    QCOMPARE(frame.button(QStringLiteral("btn_feedback"))->toolTip(), tip);
    QCOMPARE(frame.maxed(), QVariant(false));
    QVERIFY(frame.window->isVisible());
    bus()->Detach(kMainWindowEvent);
}

// --- signals ---------------------------------------------------------------------------

void tst_ZVMainWindowTitle::buttonsAndMenuViewRelayToSignals_data()
{
    QTest::addColumn<QString>("trigger");
    // signalCloseWindow, signalShowMinimized, signalShowMaxOrNormal, signalAttachEvent,
    // signalMenuInited
    QTest::addColumn<QList<int>>("counts");

    QTest::newRow("close button") << "btn_close" << QList<int>{1, 0, 0, 0, 0};
    QTest::newRow("minimise button") << "btn_min" << QList<int>{0, 1, 0, 0, 0};
    QTest::newRow("maximise button") << "btn_max" << QList<int>{0, 0, 1, 0, 0};
    QTest::newRow("menu exit") << "signalExit" << QList<int>{1, 0, 0, 0, 0};
    QTest::newRow("menu event") << "signalAttachEvent" << QList<int>{0, 0, 0, 1, 0};
    QTest::newRow("menu filled") << "signalMenuItemInited" << QList<int>{0, 0, 0, 0, 1};
}

void tst_ZVMainWindowTitle::buttonsAndMenuViewRelayToSignals()
{
    QFETCH(QString, trigger);
    QFETCH(QList<int>, counts);

    Frame frame;
    QVERIFY(frame.show());
    QSignalSpy close(frame.title, &ZVMainWindowTitle::signalCloseWindow);
    QSignalSpy minimise(frame.title, &ZVMainWindowTitle::signalShowMinimized);
    QSignalSpy maximise(frame.title, &ZVMainWindowTitle::signalShowMaxOrNormal);
    QSignalSpy attach(frame.title, &ZVMainWindowTitle::signalAttachEvent);
    QSignalSpy inited(frame.title, &ZVMainWindowTitle::signalMenuInited);

    CMenuView* view = frame.title->menuView();
    QVERIFY(view);
    if (trigger.startsWith(QLatin1String("btn_")))
        QTest::mouseClick(frame.button(trigger), Qt::LeftButton);
    else if (trigger == QLatin1String("signalExit"))
        emit view->signalExit();
    else if (trigger == QLatin1String("signalAttachEvent"))
        emit view->signalAttachEvent(60001);
    else if (trigger == QLatin1String("signalMenuItemInited"))
        emit view->signalMenuItemInited();

    const QList<int> seen{close.count(), minimise.count(), maximise.count(), attach.count(), inited.count()};
    QCOMPARE(seen, counts);
}

void tst_ZVMainWindowTitle::attachEventCarriesTheId_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("default entry event") << 60001;
    QTest::newRow("host event") << 4242;
}

void tst_ZVMainWindowTitle::attachEventCarriesTheId()
{
    QFETCH(int, id);
    Frame frame;
    QSignalSpy attach(frame.title, &ZVMainWindowTitle::signalAttachEvent);
    emit frame.title->menuView()->signalAttachEvent(id);
    QCOMPARE(attach.count(), 1);
    QCOMPARE(attach.first().first().toInt(), id);
}

void tst_ZVMainWindowTitle::menuButtonOpensTheMenuView()
{
    Frame frame;
    // The connection itself: disconnecting succeeds only for a connection that exists.
    QVERIFY(QObject::disconnect(frame.button(QStringLiteral("btn_menu")), &QPushButton::clicked,
                                frame.title->menuView(), &CMenuView::slotShowMenu));
    QVERIFY(!QObject::disconnect(frame.button(QStringLiteral("btn_menu")), &QPushButton::clicked,
                                 frame.title->menuView(), &CMenuView::slotShowMenu));
}

void tst_ZVMainWindowTitle::dialogsAreModalChildrenOfTheMainWindow_data()
{
    QTest::addColumn<QString>("trigger");
    QTest::addColumn<QString>("dialogClass");

    QTest::newRow("About from the menu") << "signalShowAboutDlg" << "ZVAboutDialog";
    QTest::newRow("About slot") << "slotShowAboutDlg" << "ZVAboutDialog";
    QTest::newRow("language from the menu") << "signalShowLanguagePopDlg" << "LanguageSelectDialog";
    QTest::newRow("language slot") << "slotShowLanguageSelectDlg" << "LanguageSelectDialog";
}

void tst_ZVMainWindowTitle::dialogsAreModalChildrenOfTheMainWindow()
{
    QFETCH(QString, trigger);
    QFETCH(QString, dialogClass);

    Frame frame;
    QVERIFY(frame.show());

    QString seenClass;
    QWidget* seenParent = nullptr;
    bool seenModal = false;
    QTimer poll;
    poll.setInterval(10);
    connect(&poll, &QTimer::timeout, &poll, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        seenClass = QString::fromLatin1(dialog->metaObject()->className());
        seenParent = dialog->parentWidget();
        seenModal = dialog->isModal() || dialog->windowModality() != Qt::NonModal;
        dialog->reject();
    });
    poll.start();

    CMenuView* view = frame.title->menuView();
    if (trigger == QLatin1String("signalShowAboutDlg"))
        emit view->signalShowAboutDlg();
    else if (trigger == QLatin1String("slotShowAboutDlg"))
        frame.title->slotShowAboutDlg();
    else if (trigger == QLatin1String("signalShowLanguagePopDlg"))
        emit view->signalShowLanguagePopDlg();
    else
        frame.title->slotShowLanguageSelectDlg();
    poll.stop();

    QCOMPARE(seenClass, dialogClass);
    QCOMPARE(seenParent, frame.window);
    QVERIFY(seenModal);
    // Destroyed once the modal loop has returned.
    QVERIFY(frame.window->findChildren<QDialog*>().isEmpty());
}

// --- maximise button -------------------------------------------------------------------

void tst_ZVMainWindowTitle::maxedFollowsTheWindowStateSetByAnyMeans_data()
{
    QTest::addColumn<QList<int>>("states"); // applied in turn with setWindowState
    QTest::addColumn<bool>("maxed");

    QTest::newRow("maximised") << QList<int>{Qt::WindowMaximized} << true;
    QTest::newRow("maximised, then restored") << QList<int>{Qt::WindowMaximized, Qt::WindowNoState} << false;
    QTest::newRow("full screen") << QList<int>{Qt::WindowFullScreen} << false;
    QTest::newRow("maximised and full screen") << QList<int>{Qt::WindowMaximized | Qt::WindowFullScreen} << true;
    QTest::newRow("minimised from maximised") << QList<int>{Qt::WindowMaximized, Qt::WindowMaximized | Qt::WindowMinimized}
                                              << true;
    QTest::newRow("minimised from normal") << QList<int>{Qt::WindowMinimized} << false;
}

void tst_ZVMainWindowTitle::maxedFollowsTheWindowStateSetByAnyMeans()
{
    QFETCH(QList<int>, states);
    QFETCH(bool, maxed);

    Frame frame;
    QVERIFY(frame.show());
    QSignalSpy maximise(frame.title, &ZVMainWindowTitle::signalShowMaxOrNormal);
    for (int state : states)
        frame.window->setWindowState(Qt::WindowStates(state));
    QCOMPARE(frame.maxed(), QVariant(maxed)); // at once, from the state change itself
    QCoreApplication::processEvents();
    QCOMPARE(frame.maxed(), QVariant(maxed));
    QCOMPARE(maximise.count(), 0);
}

void tst_ZVMainWindowTitle::maxClickEmitsBeforeUpdating()
{
    Frame frame;
    QVERIFY(frame.show());
    QPushButton* max = frame.maxButton();

    // Maximised while the button could not follow: it still shows the normal state.
    max->setEnabled(false);
    frame.window->showMaximized();
    QCOMPARE(frame.maxed(), QVariant(false));
    max->setEnabled(true);

    QVariant duringSignal;
    connect(frame.title, &ZVMainWindowTitle::signalShowMaxOrNormal, this,
            [&] { duringSignal = max->property("maxed"); });
    QSignalSpy maximise(frame.title, &ZVMainWindowTitle::signalShowMaxOrNormal);
    QTest::mouseClick(max, Qt::LeftButton);

    QCOMPARE(maximise.count(), 1);
    QCOMPARE(duringSignal, QVariant(false));
    QCOMPARE(frame.maxed(), QVariant(true));
}

void tst_ZVMainWindowTitle::maxClickShowsASynchronousStateChangeAtOnce_data()
{
    QTest::addColumn<bool>("startMaximised");
    QTest::newRow("normal to maximised") << false;
    QTest::newRow("maximised to normal") << true;
}

void tst_ZVMainWindowTitle::maxClickShowsASynchronousStateChangeAtOnce()
{
    QFETCH(bool, startMaximised);

    Frame frame;
    QVERIFY(frame.show());
    if (startMaximised)
        frame.window->showMaximized();
    QCOMPARE(frame.maxed(), QVariant(startMaximised));

    // What the core window does with the signal.
    QWidget* window = frame.window;
    connect(frame.title, &ZVMainWindowTitle::signalShowMaxOrNormal, window, [window] {
        if (window->isMaximized())
            window->showNormal();
        else
            window->showMaximized();
    });
    QTest::mouseClick(frame.maxButton(), Qt::LeftButton);
    QCOMPARE(frame.maxed(), QVariant(!startMaximised));
}

void tst_ZVMainWindowTitle::disabledMaxButtonKeepsItsValue_data()
{
    QTest::addColumn<bool>("startMaximised");
    QTest::newRow("normal, then maximised") << false;
    QTest::newRow("maximised, then normal") << true;
}

void tst_ZVMainWindowTitle::disabledMaxButtonKeepsItsValue()
{
    QFETCH(bool, startMaximised);

    Frame frame;
    QVERIFY(frame.show());
    frame.window->setWindowState(startMaximised ? Qt::WindowMaximized : Qt::WindowNoState);
    QCOMPARE(frame.maxed(), QVariant(startMaximised));

    frame.maxButton()->setEnabled(false);
    frame.window->setWindowState(startMaximised ? Qt::WindowNoState : Qt::WindowMaximized);
    QCOMPARE(frame.maxed(), QVariant(startMaximised));
    frame.title->updateMaxButton();
    QCOMPARE(frame.maxed(), QVariant(startMaximised));

    frame.maxButton()->setEnabled(true);
    frame.title->updateMaxButton();
    QCOMPARE(frame.maxed(), QVariant(!startMaximised));
}

void tst_ZVMainWindowTitle::hiddenMaxButtonStaysEnabledAndCurrent_data()
{
    QTest::addColumn<bool>("hide");
    QTest::newRow("hidden") << true;
    QTest::newRow("shown") << false;
}

void tst_ZVMainWindowTitle::hiddenMaxButtonStaysEnabledAndCurrent()
{
    QFETCH(bool, hide);

    Frame frame;
    QVERIFY(frame.show());
    frame.title->setMaxButtonHidden(!hide);
    frame.title->setMaxButtonHidden(hide);
    QCOMPARE(frame.maxButton()->isHidden(), hide);
    QCOMPARE(frame.maxButton()->isVisible(), !hide);
    QVERIFY(frame.maxButton()->isEnabled());

    frame.window->showMaximized();
    QCOMPARE(frame.maxed(), QVariant(true));
    frame.window->showNormal();
    QCOMPARE(frame.maxed(), QVariant(false));
}

void tst_ZVMainWindowTitle::maximisingDropsTheHoverWithASyntheticLeave_data()
{
    QTest::addColumn<bool>("maximised");
    QTest::newRow("maximised") << true;
    QTest::newRow("normal") << false;
}

void tst_ZVMainWindowTitle::maximisingDropsTheHoverWithASyntheticLeave()
{
    QFETCH(bool, maximised);

    Frame frame;
    QVERIFY(frame.show());
    if (maximised)
        frame.window->showMaximized();
    QCoreApplication::processEvents();

    EventRecorder leaves(QEvent::Leave);
    frame.maxButton()->installEventFilter(&leaves);
    frame.title->updateMaxButton();
    frame.maxButton()->removeEventFilter(&leaves);

    QCOMPARE(leaves.spontaneous, maximised ? QList<bool>{false} : QList<bool>{});
}

void tst_ZVMainWindowTitle::maxedRulesOfTheStyleSheetFollow()
{
    Frame frame;
    frame.window->setStyleSheet(QStringLiteral("QPushButton#btn_max[maxed=\"true\"] { color: rgb(1, 2, 3); }"
                                               "QPushButton#btn_max[maxed=\"false\"] { color: rgb(4, 5, 6); }"));
    QVERIFY(frame.show());
    const auto colour = [&frame] { return frame.maxButton()->palette().color(QPalette::ButtonText); };
    QCOMPARE(colour(), QColor(4, 5, 6));
    frame.window->showMaximized();
    QCOMPARE(colour(), QColor(1, 2, 3));
    frame.window->showNormal();
    QCOMPARE(colour(), QColor(4, 5, 6));
}

void tst_ZVMainWindowTitle::noMainWindowMeansNotMaximised()
{
    Frame frame;
    QVERIFY(frame.show());
    frame.window->showMaximized();
    QCOMPARE(frame.maxed(), QVariant(true));

    // A title bar without a parent replaces the main window with none.
    std::unique_ptr<ZVMainWindowTitle> orphan(new ZVMainWindowTitle(nullptr));
    orphan->init();
    QCOMPARE(ZVMainWindowTitle::mainWindow(), static_cast<QWidget*>(nullptr));
    auto* orphanMax = orphan->findChild<QPushButton*>(QStringLiteral("btn_max"));
    orphan->updateMaxButton();
    QCOMPARE(orphanMax->property("maxed"), QVariant(false));
    frame.title->updateMaxButton();
    QCOMPARE(frame.maxed(), QVariant(false));
}

void tst_ZVMainWindowTitle::firstShowIsRecorded()
{
    Frame frame;
    QVERIFY(frame.show());
    QVERIFY(ZVMainWindowTitle::firstShowDone());
}

// --- bus event 1003 --------------------------------------------------------------------

void tst_ZVMainWindowTitle::releaseOnAButtonPostsOneEvent_data()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : buttonNames())
        QTest::newRow(qPrintable(name)) << name;
}

void tst_ZVMainWindowTitle::releaseOnAButtonPostsOneEvent()
{
    QFETCH(QString, name);

    Frame frame;
    QVERIFY(frame.show());
    bus()->Attach(kButtonReleased, m_receiver.get());
    QPushButton* button = frame.button(name);
    QSignalSpy clicked(button, &QPushButton::clicked);

    QTest::mousePress(button, Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(m_receiver->events.size(), 0);

    // Released off the button: reported, though it is no click.
    QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, QPoint(-10, -10));
    QCOMPARE(m_receiver->events.size(), 0); // posted, not sent
    QCoreApplication::processEvents();
    QCOMPARE(clicked.count(), 0);

    QCOMPARE(m_receiver->events.size(), 1);
    const Posted e = m_receiver->events.first();
    QCOMPARE(e.type, kButtonReleased);
    QCOMPARE(e.value, 0);
    QCOMPARE(e.source, QStringLiteral("ZVMainWindowTitle"));
    QCOMPARE(e.name, name);
    QCOMPARE(e.triggerType, 3);
}

void tst_ZVMainWindowTitle::clickPostsExactlyOneEvent_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("minimise") << "btn_min";
    QTest::newRow("maximise") << "btn_max";
    QTest::newRow("close") << "btn_close";
}

void tst_ZVMainWindowTitle::clickPostsExactlyOneEvent()
{
    QFETCH(QString, name);

    Frame frame;
    QVERIFY(frame.show());
    bus()->Attach(kButtonReleased, m_receiver.get());
    QSignalSpy clicked(frame.button(name), &QPushButton::clicked);

    QTest::mouseClick(frame.button(name), Qt::LeftButton);
    QCoreApplication::processEvents();

    QCOMPARE(clicked.count(), 1);
    QCOMPARE(m_receiver->events.size(), 1);
    QCOMPARE(m_receiver->events.first().name, name);
}

void tst_ZVMainWindowTitle::releaseElsewherePostsNothing_data()
{
    QTest::addColumn<QString>("name"); // empty: the title itself
    QTest::newRow("logo") << "label_logo";
    QTest::newRow("title text") << "label_title";
    QTest::newRow("separator") << "separator_line";
    QTest::newRow("title bar") << "";
}

void tst_ZVMainWindowTitle::releaseElsewherePostsNothing()
{
    QFETCH(QString, name);

    Frame frame;
    QVERIFY(frame.show());
    bus()->Attach(kButtonReleased, m_receiver.get());
    QWidget* target = name.isEmpty() ? frame.title : frame.title->findChild<QWidget*>(name);
    QVERIFY(target);

    QTest::mousePress(target, Qt::LeftButton);
    QTest::mouseRelease(target, Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(m_receiver->events.size(), 0);

    // The same receiver does hear a button.
    QTest::mouseClick(frame.button(QStringLiteral("btn_close")), Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(m_receiver->events.size(), 1);
}

void tst_ZVMainWindowTitle::releaseWithoutReceiverDoesNotLeak()
{
#ifndef ZV_HAVE_MALLINFO2
    QSKIP("needs the allocator statistics of glibc");
#else
    Frame frame;
    QVERIFY(frame.show());
    QVERIFY(!bus()->HasReceiver(kButtonReleased));
    QPushButton* close = frame.button(QStringLiteral("btn_close"));
    const auto clickMany = [close](int times) {
        for (int i = 0; i < times; ++i)
            QTest::mouseClick(close, Qt::LeftButton);
        QCoreApplication::processEvents();
    };

    clickMany(200);
    const size_t before = mallinfo2().uordblks;
    constexpr int kClicks = 4000;
    clickMany(kClicks);
    const size_t after = mallinfo2().uordblks;

    // One event left behind per release would hold at least its own size each time.
    const size_t grown = after > before ? after - before : 0;
    QVERIFY2(grown < kClicks * sizeof(ZVCustomEvent) / 2,
             qPrintable(QStringLiteral("%1 bytes more after %2 releases").arg(grown).arg(kClicks)));
#endif
}

// --- language change -------------------------------------------------------------------

void tst_ZVMainWindowTitle::feedbackToolTipOnlyAfterALanguageChange()
{
    Frame frame;
    QPushButton* feedback = frame.button(QStringLiteral("btn_feedback"));
    QVERIFY(frame.show());
    QCoreApplication::processEvents();
    QCOMPARE(feedback->toolTip(), QString());

    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(frame.title, &change);
    QCOMPARE(feedback->toolTip(), QStringLiteral("Feedback"));
}

void tst_ZVMainWindowTitle::feedbackToolTipTranslatedInItsOwnContext_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("expected");
    QTest::newRow("the class's own context") << "ZVMainWindowTitle" << QStringLiteral("R\u00fcckmeldung");
    QTest::newRow("a namespaced context") << "ZVUIFramework::ZVMainWindowTitle" << "Feedback";
    QTest::newRow("the menu's context") << "CMenuView" << "Feedback";
}

void tst_ZVMainWindowTitle::feedbackToolTipTranslatedInItsOwnContext()
{
    QFETCH(QString, context);
    QFETCH(QString, expected);

    Frame frame;
    QVERIFY(frame.show());
    QPushButton* feedback = frame.button(QStringLiteral("btn_feedback"));

    OneMessageTranslator translator(context, QStringLiteral("R\u00fcckmeldung"));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCoreApplication::processEvents();
    const QString translated = feedback->toolTip();
    QCoreApplication::removeTranslator(&translator);
    QCoreApplication::processEvents();

    QCOMPARE(translated, expected);
    QCOMPARE(feedback->toolTip(), QStringLiteral("Feedback"));
}

void tst_ZVMainWindowTitle::languageChangeLeavesEverythingElse()
{
    Frame frame;
    QVERIFY(frame.show());
    frame.window->showMaximized();
    auto* label = frame.title->findChild<QLabel*>(QStringLiteral("label_title"));
    // Stands for a brand that changed after init(): the title keeps what init() set.
    label->setText(QStringLiteral("Renamed Brand Product"));
    const QString styleSheet = frame.title->styleSheet();

    OneMessageTranslator translator(QStringLiteral("ZVMainWindowTitle"), QStringLiteral("R\u00fcckmeldung"));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCoreApplication::processEvents();

    QCOMPARE(frame.button(QStringLiteral("btn_feedback"))->toolTip(), QStringLiteral("R\u00fcckmeldung"));
    QCOMPARE(label->text(), QStringLiteral("Renamed Brand Product"));
    for (const QString& name : buttonNames()) {
        if (name != QLatin1String("btn_feedback"))
            QCOMPARE(frame.button(name)->toolTip(), QString());
    }
    QCOMPARE(frame.title->styleSheet(), styleSheet);
    QCOMPARE(frame.maxed(), QVariant(true));
    QCoreApplication::removeTranslator(&translator);
    QCoreApplication::processEvents();
}

void tst_ZVMainWindowTitle::changeEventLeavesTheBaseClassOut()
{
    Frame frame;
    // A plain frame beside it shows what the base class does with a theme change: it
    // re-polishes the widget and tells it with a style change.
    auto* plain = new QFrame(frame.window);
    QVERIFY(frame.show());
    QCoreApplication::processEvents();

    EventRecorder styleChanges(QEvent::StyleChange);
    plain->installEventFilter(&styleChanges);
    QEvent themeChange(QEvent::ThemeChange);
    QCoreApplication::sendEvent(plain, &themeChange);
    plain->removeEventFilter(&styleChanges);
    QVERIFY2(!styleChanges.spontaneous.isEmpty(), "precondition: the base class answers a theme change");

    styleChanges.spontaneous.clear();
    frame.title->installEventFilter(&styleChanges);
    QCoreApplication::sendEvent(frame.title, &themeChange);
    QEvent languageChange(QEvent::LanguageChange);
    QCoreApplication::sendEvent(frame.title, &languageChange);
    frame.title->removeEventFilter(&styleChanges);
    QCOMPARE(styleChanges.spontaneous.size(), 0);
}

// --- in a product folder of its own ----------------------------------------------------

void tst_ZVMainWindowTitle::titleTextFromTheProduct_data()
{
    QTest::addColumn<QByteArray>("productInfo"); // empty: no file
    QTest::addColumn<QString>("titleText");

    QTest::newRow("brand and application")
        << QByteArray("<p><ZV_BRANDNAME>Brandname</ZV_BRANDNAME><ZV_APP_NAME>Photo Studio</ZV_APP_NAME>"
                      "<ZV_APP_TITLE>Other Title</ZV_APP_TITLE></p>")
        << "Brandname Photo Studio";
    QTest::newRow("application only")
        << QByteArray("<p><ZV_APP_NAME>Photo Studio</ZV_APP_NAME></p>") << " Photo Studio";
    QTest::newRow("no product file") << QByteArray() << " ";
}

void tst_ZVMainWindowTitle::titleTextFromTheProduct()
{
    QFETCH(QByteArray, productInfo);
    QFETCH(QString, titleText);

    ProbeFolder product;
    QVERIFY(product.isValid());
    if (!productInfo.isEmpty())
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), productInfo));
    const ProbeRun run = product.run({QStringLiteral("prop:ForceLanguage=string:English"), QStringLiteral("titlebar:window"),
                                      QStringLiteral("titlebar:build"), QStringLiteral("titlebar:report"),
                                      QStringLiteral("wait:100"), QStringLiteral("titlebar:report")});
    QCOMPARE(run.exitCode, 0);
    const QList<QJsonObject> reports = titleReports(run);
    QCOMPARE(reports.size(), 2);
    QCOMPARE(reports.at(0).value(QStringLiteral("titleText")).toString(), titleText);
    // The language change that comes with the language manager reaches the title later.
    QCOMPARE(reports.at(0).value(QStringLiteral("feedbackToolTip")).toString(), QString());
    QCOMPARE(reports.at(1).value(QStringLiteral("feedbackToolTip")).toString(), QStringLiteral("Feedback"));
    QCOMPARE(reports.at(1).value(QStringLiteral("titleText")).toString(), titleText);
}

void tst_ZVMainWindowTitle::firstShowOfTheMainWindow_data()
{
    QTest::addColumn<QStringList>("setup");    // before the first report
    QTest::addColumn<bool>("maxedBefore");
    QTest::addColumn<bool>("flagBefore");
    QTest::addColumn<bool>("maxedAfterShow");

    const QString window = QStringLiteral("titlebar:window");
    const QString maximize = QStringLiteral("titlebar:maximize");
    const QString build = QStringLiteral("titlebar:build");
    const QString show = QStringLiteral("titlebar:show");

    QTest::newRow("maximised before its first show") << QStringList{window, maximize, build} << false << false << true;
    QTest::newRow("normal at its first show") << QStringList{window, build} << false << false << false;
    QTest::newRow("a later main window gets no first-show update")
        << QStringList{window, build, show, window, maximize, build} << false << true << false;
}

void tst_ZVMainWindowTitle::firstShowOfTheMainWindow()
{
    QFETCH(QStringList, setup);
    QFETCH(bool, maxedBefore);
    QFETCH(bool, flagBefore);
    QFETCH(bool, maxedAfterShow);

    ProbeFolder product;
    const ProbeRun run = product.run(QStringList{QStringLiteral("prop:ForceLanguage=string:English")} + setup
                                     + QStringList{QStringLiteral("titlebar:report"), QStringLiteral("titlebar:show"),
                                                   QStringLiteral("titlebar:report")});
    QCOMPARE(run.exitCode, 0);
    const QList<QJsonObject> reports = titleReports(run);
    QCOMPARE(reports.size(), 2);
    QCOMPARE(reports.at(0).value(QStringLiteral("maxed")), QJsonValue(maxedBefore));
    QCOMPARE(reports.at(0).value(QStringLiteral("firstShowDone")), QJsonValue(flagBefore));
    QCOMPARE(reports.at(0).value(QStringLiteral("mainWindowIsLatest")), QJsonValue(true));
    QCOMPARE(reports.at(1).value(QStringLiteral("maxed")), QJsonValue(maxedAfterShow));
    QCOMPARE(reports.at(1).value(QStringLiteral("firstShowDone")), QJsonValue(true));
}

void tst_ZVMainWindowTitle::feedbackProgramStarted_data()
{
    QTest::addColumn<QString>("trigger");
    QTest::newRow("feedback button") << "titlebar:click:btn_feedback";
    QTest::newRow("menu's feedback entry") << "titlebar:menufeedback";
}

void tst_ZVMainWindowTitle::feedbackProgramStarted()
{
    QFETCH(QString, trigger);

    ProbeFolder product;
    QVERIFY(product.installStandIns({QStringLiteral("Feedback")}));
    QVERIFY(product.write(QStringLiteral("productInfo.xml"),
                          "<p><ZV_FEEDBACK_RECEIVE_EMAIL>feedback@example.com</ZV_FEEDBACK_RECEIVE_EMAIL>"
                          "<ZV_WATCHDOG_RECEIVE_EMAIL>watchdog@example.com</ZV_WATCHDOG_RECEIVE_EMAIL></p>"));
    const ProbeRun run = product.run({QStringLiteral("prop:ForceLanguage=string:English"),
                                      QStringLiteral("setuser:user@example.com"),
                                      QStringLiteral("setsend:send@example.com|secret pwd"), QStringLiteral("titlebar:window"),
                                      QStringLiteral("titlebar:build"), trigger});
    QCOMPARE(run.exitCode, 0);

    const QStringList expected{QStringLiteral("feedback@example.com"), appPath(product), QStringLiteral("user@example.com"),
                               QStringLiteral("send@example.com"), QStringLiteral("secret pwd"), QStringLiteral("1")};
    const QList<QStringList> starts = product.standInStarts(QStringLiteral("Feedback"));
    QCOMPARE(starts.size(), 1);
    QCOMPARE(starts.first(), expected);

    QStringList quoted;
    for (const QString& argument : expected)
        quoted.append(QLatin1Char('"') + argument + QLatin1Char('"'));
    const QString line = QStringLiteral("ZVCore: Start FeedBack-> (") + quoted.join(QStringLiteral(", ")) + QLatin1Char(')');
    QVERIFY2(run.logged(line), qPrintable(run.log.join(QLatin1Char('\n'))));
    // Not the context's own launcher, whose line has a blank before the arrow.
    for (const QString& logged : run.log)
        QVERIFY2(!logged.startsWith(QLatin1String("ZVCore: Start FeedBack ->")), qPrintable(logged));
}

void tst_ZVMainWindowTitle::buttonsHaveAccessibleNames()
{
    // What an assistive technology reads for buttons that show only a picture: a push
    // button's role, a name and a description, in the current language.
    Frame frame;
    QVERIFY(frame.show());
    struct Expected
    {
        const char* object;
        const char* english;
        const char* german;
    };
    const Expected buttons[] = {{"btn_feedback", "Feedback", "Feedback"},
                                {"btn_menu", "Menu", "Men\u00fc"},
                                {"btn_min", "Minimise", "Minimieren"},
                                {"btn_max", "Maximise", "Maximieren"},
                                {"btn_close", "Close", "Schlie\u00dfen"}};
    const auto check = [&](bool german) {
        for (const Expected& e : buttons) {
            QPushButton* button = frame.button(QLatin1String(e.object));
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(button);
            QVERIFY(accessible);
            QCOMPARE(accessible->role(), QAccessible::Button);
            QCOMPARE(accessible->text(QAccessible::Name), QString::fromUtf8(german ? e.german : e.english));
            QVERIFY2(!accessible->text(QAccessible::Description).isEmpty(), e.object);
            QVERIFY(accessible->actionInterface());
            QVERIFY(accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
        }
    };
    check(false);
    QCOMPARE(frame.button(QStringLiteral("btn_close"))->accessibleDescription(), QStringLiteral("Closes the window"));

    // Maximised, the maximise button restores.
    frame.window->showMaximized();
    QTRY_COMPARE(frame.button(QStringLiteral("btn_max"))->accessibleName(), QStringLiteral("Restore"));
    frame.window->showNormal();
    QTRY_COMPARE(frame.button(QStringLiteral("btn_max"))->accessibleName(), QStringLiteral("Maximise"));

    // The frame's German catalogue: the names follow the language change.
    QTranslator german;
    QVERIFY(german.load(QStringLiteral(ZV_QM_DIR "/ZVCore_German.qm")));
    QVERIFY(QCoreApplication::installTranslator(&german));
    QCoreApplication::processEvents();
    check(true);
    QCOMPARE(frame.button(QStringLiteral("btn_close"))->accessibleDescription(), QStringLiteral("Schlie\u00dft das Fenster"));
    QCoreApplication::removeTranslator(&german);
    QCoreApplication::processEvents();
    check(false);
}

QTEST_MAIN(tst_ZVMainWindowTitle)
#include "tst_zvmainwindowtitle.moc"
