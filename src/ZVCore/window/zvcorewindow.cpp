#include "zvcorewindow.h"
#include "zvcorewindow_p.h"

#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CControlModule>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/ZVMainWindowTitle>

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QScreen>
#include <QtWidgets/QStyle>

#include <cmath>

using ZVUIFramework::CControlModule;
using ZVUIFramework::CLanguageStore;

namespace {

// Attached to for the host's sake; the window itself gives them no meaning.
constexpr int kMainWindowEvent = 1000;
constexpr int kLanguageChangedEvent = 1002;

QVariant applicationProperty(const char* name)
{
    const QCoreApplication* app = QCoreApplication::instance();
    return app ? app->property(name) : QVariant();
}

} // namespace

ZVCoreWindow::ZVCoreWindow(QWidget* parent)
    : QMainWindow(parent, Qt::WindowFlags())
    , d_ptr(new ZVCoreWindowPrivate(this))
{
    Q_D(ZVCoreWindow);

    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);

    const QVariant qtBasedShadow = applicationProperty("QtBasedShadow");
    if (qtBasedShadow.isValid())
        d->m_qtBasedShadow = qtBasedShadow.toBool();

    if (d->m_qtBasedShadow) {
        setAttribute(Qt::WA_TranslucentBackground, true);
        setContentsMargins(ZVUIFramework::kShadowMargin, ZVUIFramework::kShadowMargin, ZVUIFramework::kShadowMargin,
                           ZVUIFramework::kShadowMargin);
    } else {
        d->createLayeredShadow();
    }

    // The catalogue has to be in place before the title bar first asks the language
    // manager for a language, so that the automatic choice sees it.
    CLanguageStore::GetInstance()->LoadLocalConfig();

    auto* title = new ZVMainWindowTitle(this);
    d->m_title = title;
    // The title bar takes the top of the window, above the host's central widget and
    // toolbars; a host that places it itself (setMenuWidget, a layout) simply moves it.
    setMenuWidget(title);

    connect(title, &ZVMainWindowTitle::signalCloseWindow, this, [this] {
        Q_D(ZVCoreWindow);
        d->restoreDragFullWindows();
        close();
    });
    connect(title, SIGNAL(signalShowMinimized()), this, SLOT(showMinimized()));
    connect(title, &ZVMainWindowTitle::signalShowMaxOrNormal, this, [this] {
        if (isMaximized())
            showNormal();
        else
            showMaximized();
    });
    connect(title, &ZVMainWindowTitle::signalAttachEvent, this,
            [this](int id) { ZVCustomEventSendObj::GetInstance()->Attach(id, this); });

    ZVCustomEventSendObj::GetInstance()->Attach(kMainWindowEvent, this);
    ZVCustomEventSendObj::GetInstance()->Attach(kLanguageChangedEvent, this);

    d->m_controlModule = new CControlModule(this);

    title->init();

    d->initFrameHandling();
}

ZVCoreWindow::~ZVCoreWindow()
{
    // The shadow is process-wide: whichever window goes first takes it along, and the
    // pointer is deliberately left as it is.
    ZVCoreWindowPrivate::deleteLayeredShadow();
    if (QCoreApplication* app = QCoreApplication::instance())
        app->removeEventFilter(this);
}

void ZVCoreWindow::CenterWindow()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (!primary)
        return;
    setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size(), primary->availableGeometry()));
}

QWidget* ZVCoreWindow::GetTitleWidget()
{
    Q_D(ZVCoreWindow);
    return d->m_title.data();
}

void ZVCoreWindow::SetButtonMaximizedHide(bool hide)
{
    Q_D(ZVCoreWindow);
    d->setMaximizeBoxHidden(hide);
    if (d->m_title)
        d->m_title->setMaxButtonHidden(hide);
}

void ZVCoreWindow::SetResizeable(bool resizable)
{
    Q_D(ZVCoreWindow);
    d->m_resizable = resizable;
    if (applicationProperty("EnableSetDragFullWindows").toBool())
        d->switchDragFullWindows(resizable);
}

void ZVCoreWindow::setFixedSize(int w, int h)
{
    QWidget::setFixedSize(w, h);
}

void ZVCoreWindow::setMinimumSize(int w, int h)
{
    QWidget::setMinimumSize(w, h);
}

long ZVCoreWindow::HitTest(const QRect& windowRect, const QPoint& pos) const
{
    Q_D(const ZVCoreWindow);

    if (d->m_resizable && !isMaximized()) {
        const QSize minimum = minimumSize();
        const QSize maximum = maximumSize();
        const long code = ZVUIFramework::BorderHitCode(
            windowRect.left(), windowRect.top(), windowRect.left() + windowRect.width(),
            windowRect.top() + windowRect.height(), pos.x(), pos.y(), minimum.width() != maximum.width(),
            minimum.height() != maximum.height());
        if (code != ZVUIFramework::kHitNowhere)
            return code;
    }

    if (const ZVMainWindowTitle* title = d->m_title.data()) {
        const qreal dpr = hitTestDevicePixelRatio();
        const QPoint logical(int(pos.x() / dpr), int(pos.y() / dpr));
        const QPoint local = title->mapFromGlobal(logical);
        // Only the empty parts of the title drag the window; its buttons keep their clicks.
        if (title->rect().contains(local, false) && !title->childAt(local))
            return ZVUIFramework::kHitCaption;
    }
    return ZVUIFramework::kHitNowhere;
}

qreal ZVCoreWindow::hitTestDevicePixelRatio() const
{
    return devicePixelRatioF();
}

void ZVCoreWindow::customEvent(QEvent* event)
{
    // Events 1000, 1002 and the title menu's ids arrive here for a derived window.
    Q_UNUSED(event)
}

void ZVCoreWindow::paintEvent(QPaintEvent* event)
{
    Q_D(ZVCoreWindow);
    if (!d->m_qtBasedShadow) {
        QWidget::paintEvent(event);
        return;
    }

    const qreal radius = applicationProperty("dlgRadius").toInt();
    const int w = width();
    const int h = height();

    QPainterPath background;
    background.setFillRule(Qt::WindingFill);
    background.addRoundedRect(QRectF(5.0, 5.0, w - 10, h - 10), radius, radius, Qt::AbsoluteSize);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.fillPath(background, QBrush(Qt::white, Qt::SolidPattern));

    // Five rings, each one pixel further out and fainter than the one inside it.
    QColor color(0, 0, 0, 50);
    for (int i = 0; i < 5; ++i) {
        QPainterPath ring;
        ring.setFillRule(Qt::WindingFill);
        ring.addRoundedRect(QRectF(5 - i, 5 - i, w - 10 + 2 * i, h - 10 + 2 * i), radius, radius, Qt::AbsoluteSize);
        color.setAlpha(int((std::sqrt(5.0) - std::sqrt(double(i))) * 20.0));
        painter.setPen(color);
        painter.drawPath(ring);
    }
}
