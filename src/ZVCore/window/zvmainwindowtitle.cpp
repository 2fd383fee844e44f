#include "zvmainwindowtitle.h"

#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/LanguageSelectDialog>
#include <ZVCore/private/LaunchArguments>
#include <ZVCore/private/ZVAboutDialog>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QProcess>
#include <QtCore/QVariant>
#include <QtGui/QPalette>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>

#include <ZVFoundation/private/ZVQtCompat>

using ZVUIFramework::CCommonModule;
using ZVUIFramework::ZVApplicationInfo;

namespace {

// Attached to so that the host can reach the title bar; the title itself ignores it.
constexpr int kMainWindowEvent = 1000;
// Posted on every release of a title button, for the host's usage statistics.
constexpr int kButtonReleasedEvent = 1003;

constexpr char kMaxedProperty[] = "maxed";

// Guarded, so that a main window destroyed before the process ends reads as absent
// rather than dangling.
QPointer<QWidget> g_mainWindow;
bool g_firstShowDone = false;

QPushButton* makeButton(const QString& objectName, QWidget* parent)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(objectName);
    button->setFixedSize(20, 20);
    return button;
}

} // namespace

ZVMainWindowTitle::ZVMainWindowTitle(QWidget* parent)
    : ZVStyleWidget(parent)
{
    g_mainWindow = parent;

    buildForm();

    const int radius = QCoreApplication::instance()
                           ? QCoreApplication::instance()->property("dlgRadius").toInt()
                           : 0;
    setStyleSheet(QStringLiteral("ZVMainWindowTitle { border-top-left-radius: %1px;border-top-right-radius: %2px; }")
                      .arg(radius)
                      .arg(radius));

    // Presses on the decoration reach the title itself, which drags the window.
    m_logo->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_title->setAttribute(Qt::WA_TransparentForMouseEvents);

    m_commonModule = CCommonModule::GetInstance();

    if (g_mainWindow)
        g_mainWindow->installEventFilter(this);

    if (QCoreApplication::instance()) {
        const QString crashMail = QCoreApplication::instance()->property("WatchDogReceiveEmailAccount").toString();
        if (!crashMail.isEmpty())
            ZVApplicationInfo::GetInstance()->SetReceiveEmailOnCrash(crashMail);
    }

    const QList<QPushButton*> buttons = findChildren<QPushButton*>();
    for (QPushButton* button : buttons)
        button->installEventFilter(this);
}

ZVMainWindowTitle::~ZVMainWindowTitle() = default;

void ZVMainWindowTitle::buildForm()
{
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);

    auto* left = new QHBoxLayout;
    left->setObjectName(QStringLiteral("title_hlayout1"));
    left->setContentsMargins(0, 0, 0, 0);
    left->setSpacing(0);

    auto* brand = new QWidget(this);
    auto* brandLayout = new QHBoxLayout(brand);
    brandLayout->setContentsMargins(0, 0, 0, 0);
    brandLayout->setSpacing(10);
    m_logo = new QLabel(brand);
    m_logo->setObjectName(QStringLiteral("label_logo"));
    m_logo->setFixedSize(30, 30);
    m_title = new QLabel(brand);
    m_title->setObjectName(QStringLiteral("label_title"));
    brandLayout->addWidget(m_logo);
    brandLayout->addWidget(m_title);

    left->addSpacing(15);
    left->addWidget(brand, 0, Qt::AlignLeft | Qt::AlignVCenter);

    auto* right = new QHBoxLayout;
    right->setObjectName(QStringLiteral("title_hlayout2"));
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(15);

    m_separator = new QLabel(this);
    m_separator->setObjectName(QStringLiteral("separator_line"));
    m_separator->setFixedSize(1, 23);
    m_btnFeedback = makeButton(QStringLiteral("btn_feedback"), this);
    m_btnMenu = makeButton(QStringLiteral("btn_menu"), this);
    m_btnMin = makeButton(QStringLiteral("btn_min"), this);
    m_btnMax = makeButton(QStringLiteral("btn_max"), this);
    m_btnClose = makeButton(QStringLiteral("btn_close"), this);

    right->addSpacing(16);
    right->addWidget(m_separator);
    right->addWidget(m_btnFeedback);
    right->addWidget(m_btnMenu);
    right->addWidget(m_btnMin);
    right->addWidget(m_btnMax);
    right->addWidget(m_btnClose);
    right->addSpacing(20);

    row->addLayout(left);
    row->addLayout(right);

    outer->addStretch(1);
    outer->addLayout(row);
    outer->addStretch(1);

    QPalette pal = palette();
    pal.setBrush(QPalette::Window, QBrush(Qt::white));
    setPalette(pal);
    setAutoFillBackground(true);
    setFixedHeight(45);
    retranslateAccessibility();
}

void ZVMainWindowTitle::retranslateAccessibility()
{
    const bool maximised = m_btnMax->property(kMaxedProperty).toBool();
    const struct
    {
        QPushButton* button;
        QString name;
        QString description;
    } buttons[] = {
        {m_btnFeedback, tr("Feedback"), tr("Sends feedback to the makers")},
        {m_btnMenu, tr("Menu"), tr("Opens the menu")},
        {m_btnMin, tr("Minimise"), tr("Minimises the window")},
        {m_btnMax, maximised ? tr("Restore") : tr("Maximise"),
         maximised ? tr("Restores the window to its size") : tr("Maximises the window")},
        {m_btnClose, tr("Close"), tr("Closes the window")},
    };
    for (const auto& b : buttons) {
        b.button->setAccessibleName(b.name);
        b.button->setAccessibleDescription(b.description);
    }
}

void ZVMainWindowTitle::init()
{
    initUi();
    initConnect();
    initMenu();
}

void ZVMainWindowTitle::initUi()
{
    m_btnMax->setProperty(kMaxedProperty, false);
    ZVApplicationInfo* info = ZVApplicationInfo::GetInstance();
    m_title->setText(info->GetBrandName() + QLatin1Char(' ') + info->GetAppName());
}

void ZVMainWindowTitle::initConnect()
{
    ZVCustomEventSendObj::GetInstance()->Attach(kMainWindowEvent, this);

    connect(m_btnClose, &QPushButton::clicked, this, &ZVMainWindowTitle::signalCloseWindow);
    connect(m_btnMin, &QPushButton::clicked, this, &ZVMainWindowTitle::signalShowMinimized);
    // The window may change its state synchronously in reply, so the button is brought
    // up to date only after the signal has been handled.
    connect(m_btnMax, &QPushButton::clicked, this, [this] {
        emit signalShowMaxOrNormal();
        updateMaxButton();
    });
    connect(m_btnFeedback, &QPushButton::clicked, this, &ZVMainWindowTitle::slotFeedbackClick);
}

void ZVMainWindowTitle::initMenu()
{
    m_menuView = new CMenuView(this);
    m_menuView->hide();

    connect(m_btnMenu, &QPushButton::clicked, m_menuView, &CMenuView::slotShowMenu);
    connect(m_menuView, &CMenuView::signalShowFeedback, this, &ZVMainWindowTitle::slotFeedbackClick);
    connect(m_menuView, &CMenuView::signalShowAboutDlg, this, &ZVMainWindowTitle::slotShowAboutDlg);
    connect(m_menuView, &CMenuView::signalExit, this, &ZVMainWindowTitle::signalCloseWindow);
    connect(m_menuView, &CMenuView::signalShowLanguagePopDlg, this, &ZVMainWindowTitle::slotShowLanguageSelectDlg);
    connect(m_menuView, &CMenuView::signalAttachEvent, this, &ZVMainWindowTitle::signalAttachEvent);
    connect(m_menuView, &CMenuView::signalMenuItemInited, this, &ZVMainWindowTitle::signalMenuInited);
}

void ZVMainWindowTitle::setMaxButtonHidden(const bool& hide)
{
    m_btnMax->setHidden(hide);
}

void ZVMainWindowTitle::updateMaxButton()
{
    if (!m_btnMax->isEnabled())
        return;

    const bool maximised = g_mainWindow && g_mainWindow->windowState().testFlag(Qt::WindowMaximized);
    m_btnMax->setProperty(kMaxedProperty, maximised);
    retranslateAccessibility();
    // Style-sheet rules keyed on a dynamic property are matched at polish time only.
    m_btnMax->style()->unpolish(m_btnMax);
    m_btnMax->style()->polish(m_btnMax);
    m_btnMax->update();

    if (maximised) {
        // The window grew under the cursor, so the button never saw it leave and would
        // keep its hover look.
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_btnMax, &leave);
    }
}

CMenuView* ZVMainWindowTitle::menuView() const
{
    return m_menuView;
}

QWidget* ZVMainWindowTitle::mainWindow()
{
    return g_mainWindow.data();
}

bool ZVMainWindowTitle::firstShowDone()
{
    return g_firstShowDone;
}

void ZVMainWindowTitle::slotShowAboutDlg()
{
    ZVAboutDialog dialog(g_mainWindow.data());
    dialog.exec();
}

void ZVMainWindowTitle::slotShowLanguageSelectDlg()
{
    LanguageSelectDialog dialog(g_mainWindow.data());
    dialog.exec();
}

void ZVMainWindowTitle::slotFeedbackClick()
{
    const QStringList args = ZVApplicationInfo::GetInstance()->GetFeedbackArguments(false);
    const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/')
                            + QString::fromUtf16(ZVUIFramework::kFeedbackProgram);
    QProcess::startDetached(program, args);
    qDebug().noquote() << "ZVCore: Start FeedBack->" << ZVQtCompat::DebugText(args);
}

bool ZVMainWindowTitle::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched || !event)
        return false;

    if (g_mainWindow && watched == g_mainWindow.data()) {
        if (event->type() == QEvent::Show) {
            if (!g_firstShowDone)
                updateMaxButton();
            g_firstShowDone = true;
        } else if (event->type() == QEvent::WindowStateChange) {
            // Covers every way of maximising, not only this title's button.
            updateMaxButton();
        }
        return false;
    }

    if (event->type() == QEvent::MouseButtonRelease && qobject_cast<QPushButton*>(watched))
        postButtonReleased(watched);
    return false;
}

void ZVMainWindowTitle::postButtonReleased(QObject* button)
{
    ZVCustomEventSendObj* bus = ZVCustomEventSendObj::GetInstance();
    // Qt's queue takes the event only when somebody listens for it; otherwise it stays
    // ours to free.
    const bool listened = bus->HasReceiver(kButtonReleasedEvent);

    auto* released = new ZVCustomEvent(QEvent::Type(kButtonReleasedEvent), 0);
    released->source = QStringLiteral("ZVMainWindowTitle");
    released->name = button->objectName();
    released->triggerType = int(QEvent::MouseButtonRelease);
    bus->PostEvent(released);

    if (!listened)
        delete released;
}

void ZVMainWindowTitle::customEvent(QEvent* event)
{
    // Attached to kMainWindowEvent for the host's sake only; nothing here reacts to it.
    Q_UNUSED(event)
}

void ZVMainWindowTitle::changeEvent(QEvent* event)
{
    // The base class is left out on purpose: the title needs no repaint or relayout for
    // any change event, and re-translating is all a language change asks for.
    if (event && event->type() == QEvent::LanguageChange) {
        m_btnFeedback->setToolTip(tr("Feedback"));
        retranslateAccessibility();
    }
}
