// The title bar of frameless dialogs.
#include <ZVControl/ZVDialogTitleBar>
#include <ZVControl/ZVStyleDialog>

#include <QtCore/QTranslator>
#include <QtGui/QAccessible>
#include <QtGui/QMouseEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace {

// Counts the close events a widget receives.
class CloseCounter : public QObject
{
public:
    int closes = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Close)
            ++closes;
        return QObject::eventFilter(watched, event);
    }
};

void send(QWidget* receiver, QEvent::Type type, const QPoint& global, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, receiver->mapFromGlobal(global), global, button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(receiver, &event);
}

} // namespace

class tst_ZVDialogTitleBar : public QObject
{
    Q_OBJECT

private slots:
    void buttonsHaveAccessibleNames();
    void titleAndCloseButtonByDefault()
    {
        ZVDialogTitleBar bar;
        QVERIFY(qobject_cast<ZVStyleWidget*>(&bar));
        QCOMPARE(bar.titleLabel(), bar.findChild<QLabel*>(QStringLiteral("label_title")));
        QCOMPARE(bar.closeButton(), bar.findChild<QPushButton*>(QStringLiteral("btn_close")));
        QVERIFY(bar.titleLabel());
        QVERIFY(bar.closeButton());
        QCOMPARE(bar.minimizeButton(), nullptr);
        QCOMPARE(bar.maximizeButton(), nullptr);
        QCOMPARE(bar.findChild<QPushButton*>(QStringLiteral("btn_min")), nullptr);
        QCOMPARE(bar.findChild<QPushButton*>(QStringLiteral("btn_max")), nullptr);
        QCOMPARE(bar.findChildren<QPushButton*>().size(), 1);
    }

    void titleLabelLetsPressesThroughToTheBar()
    {
        ZVDialogTitleBar bar;
        QVERIFY(bar.titleLabel()->testAttribute(Qt::WA_TransparentForMouseEvents));
    }

    void setTitle()
    {
        ZVDialogTitleBar bar;
        QCOMPARE(bar.title(), QString());
        bar.setTitle(QStringLiteral("Export"));
        QCOMPARE(bar.title(), QStringLiteral("Export"));
        QCOMPARE(bar.titleLabel()->text(), QStringLiteral("Export"));
    }

    void windowButtonsOnRequest_data()
    {
        QTest::addColumn<bool>("byConstructor");
        QTest::newRow("constructor flag") << true;
        QTest::newRow("setWindowButtonsVisible") << false;
    }

    void windowButtonsOnRequest()
    {
        QFETCH(bool, byConstructor);
        QScopedPointer<ZVDialogTitleBar> bar(byConstructor ? new ZVDialogTitleBar(true) : new ZVDialogTitleBar);
        if (!byConstructor)
            bar->setWindowButtonsVisible(true);

        QCOMPARE(bar->minimizeButton(), bar->findChild<QPushButton*>(QStringLiteral("btn_min")));
        QCOMPARE(bar->maximizeButton(), bar->findChild<QPushButton*>(QStringLiteral("btn_max")));
        QVERIFY(bar->minimizeButton());
        QVERIFY(bar->maximizeButton());
        QVERIFY(!bar->minimizeButton()->isHidden());
        QVERIFY(!bar->maximizeButton()->isHidden());

        // Title, stretch, then minimise, maximise and close at the far end.
        QLayout* layout = bar->layout();
        QCOMPARE(layout->count(), 5);
        QCOMPARE(layout->itemAt(0)->widget(), bar->titleLabel());
        QVERIFY(layout->itemAt(1)->spacerItem());
        QCOMPARE(layout->itemAt(2)->widget(), bar->minimizeButton());
        QCOMPARE(layout->itemAt(3)->widget(), bar->maximizeButton());
        QCOMPARE(layout->itemAt(4)->widget(), bar->closeButton());
    }

    void hidingWindowButtonsThatDoNotExistCreatesNone()
    {
        ZVDialogTitleBar bar;
        bar.setWindowButtonsVisible(false);
        QCOMPARE(bar.minimizeButton(), nullptr);
        QCOMPARE(bar.maximizeButton(), nullptr);
    }

    void windowButtonsHideAndShowAgain()
    {
        ZVDialogTitleBar bar(true);
        QPushButton* min = bar.minimizeButton();
        QPushButton* max = bar.maximizeButton();
        bar.setWindowButtonsVisible(false);
        QVERIFY(min->isHidden());
        QVERIFY(max->isHidden());
        bar.setWindowButtonsVisible(true);
        // The same buttons come back, not new ones.
        QCOMPARE(bar.minimizeButton(), min);
        QCOMPARE(bar.maximizeButton(), max);
        QVERIFY(!min->isHidden());
        QVERIFY(!max->isHidden());
        QCOMPARE(bar.findChildren<QPushButton*>().size(), 3);
    }

    void buttonClicksAreReported_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("closes");
        QTest::addColumn<int>("minimizes");
        QTest::addColumn<int>("maximizes");
        QTest::newRow("btn_close") << "btn_close" << 1 << 0 << 0;
        QTest::newRow("btn_min") << "btn_min" << 0 << 1 << 0;
        QTest::newRow("btn_max") << "btn_max" << 0 << 0 << 1;
    }

    void buttonClicksAreReported()
    {
        QFETCH(QString, button);
        QFETCH(int, closes);
        QFETCH(int, minimizes);
        QFETCH(int, maximizes);
        ZVDialogTitleBar bar(true);
        QSignalSpy closeSpy(&bar, &ZVDialogTitleBar::closeClicked);
        QSignalSpy minSpy(&bar, &ZVDialogTitleBar::minimizeClicked);
        QSignalSpy maxSpy(&bar, &ZVDialogTitleBar::maximizeClicked);
        bar.findChild<QPushButton*>(button)->click();
        QCOMPARE(closeSpy.count(), closes);
        QCOMPARE(minSpy.count(), minimizes);
        QCOMPARE(maxSpy.count(), maximizes);
    }

    void setupForDialog_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("windowButtons");
        QTest::newRow("dragging, no window buttons") << true << false;
        QTest::newRow("dragging, window buttons") << true << true;
        QTest::newRow("not dragging") << false << true;
    }

    void setupForDialog()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, windowButtons);
        ZVStyleDialog dialog;
        auto* bar = new ZVDialogTitleBar(windowButtons, &dialog);
        dialog.show();

        bar->setupForDialog(&dialog, enabled);
        QCOMPARE(bar->isMouseDragEnabled(), enabled);
        QCOMPARE(bar->mouseDragTarget(), enabled ? &dialog : nullptr);
        if (windowButtons) {
            QVERIFY(bar->minimizeButton()->isHidden());
            QVERIFY(bar->maximizeButton()->isHidden());
        } else {
            QCOMPARE(bar->minimizeButton(), nullptr);
            QCOMPARE(bar->maximizeButton(), nullptr);
        }

        QVERIFY(dialog.isVisible());
        bar->closeButton()->click();
        QVERIFY(!dialog.isVisible());
    }

    void setupTwiceClosesOnce()
    {
        ZVStyleDialog dialog;
        CloseCounter counter;
        dialog.installEventFilter(&counter);
        auto* bar = new ZVDialogTitleBar(&dialog);
        bar->setupForDialog(&dialog, true);
        bar->setupForDialog(&dialog, true);
        dialog.show();
        bar->closeButton()->click();
        QCOMPARE(counter.closes, 1);
    }

    void setupForAnotherDialogMovesTheCloseButton()
    {
        ZVStyleDialog first;
        ZVStyleDialog second;
        ZVDialogTitleBar bar;
        bar.setupForDialog(&first, true);
        bar.setupForDialog(&second, true);
        QCOMPARE(bar.mouseDragTarget(), &second);
        first.show();
        second.show();
        bar.closeButton()->click();
        QVERIFY(first.isVisible());
        QVERIFY(!second.isVisible());
    }

    void destroyedDialogIsForgotten()
    {
        ZVDialogTitleBar bar;
        auto* dialog = new ZVStyleDialog;
        bar.setupForDialog(dialog, true);
        delete dialog;
        QCOMPARE(bar.mouseDragTarget(), nullptr);
        QSignalSpy spy(&bar, &ZVDialogTitleBar::closeClicked);
        bar.closeButton()->click();
        QCOMPARE(spy.count(), 1);
    }

    void draggingTheBarMovesTheDialog()
    {
        ZVStyleDialog dialog;
        dialog.resize(300, 200);
        dialog.move(100, 100);
        auto* layout = new QVBoxLayout(&dialog);
        auto* bar = new ZVDialogTitleBar(&dialog);
        bar->setFixedHeight(32);
        layout->addWidget(bar);
        layout->addStretch();
        bar->setupForDialog(&dialog, true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QPoint before = dialog.pos();

        const QPoint start = bar->mapToGlobal(QPoint(5, 5));
        send(bar, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        send(bar, QEvent::MouseMove, start + QPoint(40, 25), Qt::NoButton, Qt::LeftButton);
        send(bar, QEvent::MouseButtonRelease, start + QPoint(40, 25), Qt::LeftButton, Qt::NoButton);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.pos(), before + QPoint(40, 25));
    }

    void closeRunsModalDialogToItsEnd()
    {
        ZVStyleDialog dialog;
        auto* bar = new ZVDialogTitleBar(true, &dialog);
        bar->setupForDialog(&dialog, true);
        bool wasModal = false;
        bool buttonsHidden = false;
        QTimer::singleShot(0, &dialog, [&] {
            wasModal = QApplication::activeModalWidget() == &dialog;
            buttonsHidden = !bar->minimizeButton()->isVisible() && !bar->maximizeButton()->isVisible();
            bar->closeButton()->click();
        });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QVERIFY(wasModal);
        QVERIFY(buttonsHidden);
    }
};

namespace {

// German for the bar's texts, as the frame's catalogue has them.
class GermanBar : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        if (qstrcmp(context, "ZVDialogTitleBar") != 0)
            return QString();
        if (qstrcmp(source, "Close") == 0)
            return QStringLiteral("Schlie\u00dfen");
        if (qstrcmp(source, "Minimise") == 0)
            return QStringLiteral("Minimieren");
        return QString();
    }
};

} // namespace

void tst_ZVDialogTitleBar::buttonsHaveAccessibleNames()
{
    // Picture-only buttons: push buttons with a name and a description for assistive
    // technologies, out of the Tab chain of the dialog, in the current language.
    ZVDialogTitleBar bar(true);
    bar.show();
    const struct
    {
        QPushButton* button;
        const char* name;
    } buttons[] = {{bar.closeButton(), "Close"}, {bar.minimizeButton(), "Minimise"}, {bar.maximizeButton(), "Maximise"}};
    for (const auto& b : buttons) {
        QVERIFY(b.button);
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(b.button);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::Button);
        QCOMPARE(accessible->text(QAccessible::Name), QLatin1String(b.name));
        QVERIFY(!accessible->text(QAccessible::Description).isEmpty());
        QCOMPARE(b.button->focusPolicy(), Qt::NoFocus);
    }
    QCOMPARE(bar.closeButton()->accessibleDescription(), QStringLiteral("Closes the window"));

    GermanBar german;
    QVERIFY(QCoreApplication::installTranslator(&german));
    QCoreApplication::processEvents();
    QCOMPARE(bar.closeButton()->accessibleName(), QStringLiteral("Schlie\u00dfen"));
    QCOMPARE(bar.minimizeButton()->accessibleName(), QStringLiteral("Minimieren"));
    QCoreApplication::removeTranslator(&german);
    QCoreApplication::processEvents();
    QCOMPARE(bar.closeButton()->accessibleName(), QStringLiteral("Close"));
}

QTEST_MAIN(tst_ZVDialogTitleBar)
#include "tst_zvdialogtitlebar.moc"
