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
#include <QtWidgets/QLayout>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QVBoxLayout>

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
    // The title bar takes the top of the window, above the host's menu bar, tool bars and
    // central widget: it lies over the room the top keeps for it in the menu-widget slot.
    d->m_top = new CWindowTop(this, title);
    QMainWindow::setMenuWidget(d->m_top);

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
    // The window's own layered shadow goes with it; another window's stays.
    d_func()->deleteLayeredShadow();
    if (QCoreApplication* app = QCoreApplication::instance())
        app->removeEventFilter(this);
}

QMenuBar* ZVCoreWindow::menuBar() const
{
    Q_D(const ZVCoreWindow);
    if (auto* bar = qobject_cast<QMenuBar*>(d->m_top->menuWidget()))
        return bar;
    auto* bar = new QMenuBar(const_cast<ZVCoreWindow*>(this));
    bar->setObjectName(QStringLiteral("Core_menuBar"));
    d->m_top->setMenuWidget(bar);
    d->m_top->returnToSlot();
    return bar;
}

void ZVCoreWindow::setMenuBar(QMenuBar* menuBar)
{
    setMenuWidget(menuBar);
}

QWidget* ZVCoreWindow::menuWidget() const
{
    Q_D(const ZVCoreWindow);
    if (QWidget* widget = d->m_top->menuWidget())
        return widget;
    return d->m_title.data();
}

void ZVCoreWindow::setMenuWidget(QWidget* menuWidget)
{
    Q_D(ZVCoreWindow);
    if (menuWidget && menuWidget == d->m_title)
        return;
    d->m_top->setMenuWidget(menuWidget);
    d->m_top->returnToSlot();
}

bool ZVCoreWindow::event(QEvent* event)
{
    Q_D(ZVCoreWindow);
    switch (event->type()) {
    case QEvent::ChildAdded:
        // QMainWindow::menuBar(), called through a QMainWindow*, finds no QMenuBar in the
        // slot, creates one with this window as its parent and hands it to setMenuBar(),
        // which would take the top for an old menu bar and crash on it. The new child is
        // not a QMenuBar yet when it is announced, so the slot is cleared for any new
        // child widget, without a new layout, and the top returns to it, with whatever
        // QMainWindow put there, before the window is laid out or painted again.
        if (d->m_top) {
            QObject* child = static_cast<QChildEvent*>(event)->child();
            if (child != d->m_top && child != d->m_title && child->isWidgetType() && layout()
                && layout()->menuBar() == d->m_top) {
                layout()->setMenuBar(nullptr);
                d->queueTopReturn();
            }
        }
        break;
    case QEvent::LayoutRequest:
        // A change of the menu bar's size hint (entries added) is announced here, to its
        // parent.
        if (d->m_top) {
            d->m_top->returnToSlot();
            d->m_top->syncRooms();
        }
        break;
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::UpdateRequest:
        if (d->m_top)
            d->m_top->returnToSlot();
        break;
    case QEvent::Paint: {
        if (d->m_top)
            d->m_top->returnToSlot();
        if (!d->m_qtBasedShadow)
            break;
        // QMainWindow paints the separators between dock widgets and the centre before
        // it calls paintEvent(); the frame goes under them, not over them.
        d->paintBackground();
        d->m_framePainted = true;
        const bool handled = QMainWindow::event(event);
        d->m_framePainted = false;
        return handled;
    }
    default:
        break;
    }
    return QMainWindow::event(event);
}

void ZVCoreWindowPrivate::queueTopReturn()
{
    if (m_topReturnQueued)
        return;
    m_topReturnQueued = true;
    Q_Q(ZVCoreWindow);
    QMetaObject::invokeMethod(
        q,
        [this] {
            m_topReturnQueued = false;
            if (m_top)
                m_top->returnToSlot();
        },
        Qt::QueuedConnection);
}

CWindowTop::CWindowTop(ZVCoreWindow* window, QWidget* title)
    : QWidget(window)
    , m_window(window)
    , m_layout(new QVBoxLayout(this))
    , m_room(new QWidget(this))
    , m_menuRoom(new QWidget(this))
    , m_title(title)
{
    setObjectName(QStringLiteral("Core_windowTop"));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_room);
    m_layout->addWidget(m_menuRoom);
    m_menuRoom->hide();
    title->installEventFilter(this);
    syncRooms();
}

void CWindowTop::setMenuWidget(QWidget* widget)
{
    if (widget == m_menuWidget)
        return;
    if (m_menuWidget) {
        m_menuWidget->removeEventFilter(this);
        m_menuWidget->hide();
        m_menuWidget->deleteLater();
    }
    m_menuWidget = widget;
    if (widget) {
        // A child of the window itself, as QMainWindow keeps its menu bar; it lies over
        // the room kept for it below the title.
        if (widget->parentWidget() != m_window)
            widget->setParent(m_window);
        widget->installEventFilter(this);
        widget->show();
    }
    syncRooms();
}

void CWindowTop::returnToSlot()
{
    QLayout* layout = m_window->layout();
    if (!layout || layout->menuBar() == this)
        return;
    // What QMainWindow put in the slot meanwhile comes along, below the title.
    QWidget* taken = layout->menuBar();
    layout->setMenuBar(this);
    if (taken && taken != m_menuWidget)
        setMenuWidget(taken);
    // QMainWindow hides a menu widget it replaces.
    if (isHidden())
        show();
    layout->invalidate();
    syncRooms();
}

void CWindowTop::syncRooms()
{
    if (m_title) {
        m_room->setFixedHeight(m_title->height());
        m_room->setVisible(!m_title->isHidden());
    }
    const bool menu = m_menuWidget && !m_menuWidget->isHidden();
    if (menu) {
        // The height the menu widget asks for at the top's width, as QMainWindow gives its
        // menu bar: a menu bar that wraps its entries grows.
        const int w = width() > 0 ? width() : m_window->width();
        const int h = m_menuWidget->hasHeightForWidth() ? m_menuWidget->heightForWidth(w)
                                                        : m_menuWidget->sizeHint().height();
        m_menuRoom->setFixedHeight(qMax(h, 0));
    }
    m_menuRoom->setVisible(menu);
    placeChildren();
}

bool CWindowTop::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::DeferredDelete:
        // QMainWindow::setMenuWidget(), called through a QMainWindow*, deletes the widget
        // it replaces; the top stays, and takes the new widget in. The window deletes
        // it with its other children.
        QMetaObject::invokeMethod(this, [this] { returnToSlot(); }, Qt::QueuedConnection);
        return true;
    case QEvent::Resize:
        syncRooms();
        break;
    case QEvent::Move:
    case QEvent::Show:
    case QEvent::LayoutRequest:
        placeChildren();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

bool CWindowTop::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_title || watched == m_menuWidget) {
        switch (event->type()) {
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::Resize:
        case QEvent::LayoutRequest:
            // Kept from recursing: placing a child resizes it.
            if (!m_placing)
                syncRooms();
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void CWindowTop::placeChildren()
{
    m_placing = true;
    if (m_title && m_title->parentWidget() == m_window) {
        const QRect room(pos() + m_room->pos(), m_room->size());
        if (m_title->geometry() != room)
            m_title->setGeometry(room);
        m_title->raise();
    }
    if (m_menuWidget && m_menuWidget->parentWidget() == m_window && m_menuRoom->isVisibleTo(this)) {
        const QRect room(pos() + m_menuRoom->pos(), QSize(width(), m_menuRoom->height()));
        if (m_menuWidget->geometry() != room)
            m_menuWidget->setGeometry(room);
    }
    m_placing = false;
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
    // Painted already, under the dock separators (see event()).
    if (d->m_framePainted)
        return;
    d->paintBackground();
}

void ZVCoreWindowPrivate::paintBackground()
{
    Q_Q(ZVCoreWindow);
    QPainter painter(q);
    if (!m_compositing) {
        // Nothing would blend a transparent pixel: no margin, no rings, no round corners.
        painter.fillRect(q->rect(), Qt::white);
        return;
    }
    paintFrame(painter, applicationProperty("dlgRadius").toInt());
}

void ZVCoreWindowPrivate::drawFrame(QPainter& painter, const QSize& size, int radius)
{
    const qreal r = radius;
    const int w = size.width();
    const int h = size.height();

    QPainterPath background;
    background.setFillRule(Qt::WindingFill);
    background.addRoundedRect(QRectF(5.0, 5.0, w - 10, h - 10), r, r, Qt::AbsoluteSize);

    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.fillPath(background, QBrush(Qt::white, Qt::SolidPattern));

    // Five rings, each one pixel further out and fainter than the one inside it.
    QColor color(0, 0, 0, 50);
    for (int i = 0; i < 5; ++i) {
        QPainterPath ring;
        ring.setFillRule(Qt::WindingFill);
        ring.addRoundedRect(QRectF(5 - i, 5 - i, w - 10 + 2 * i, h - 10 + 2 * i), r, r, Qt::AbsoluteSize);
        color.setAlpha(int((std::sqrt(5.0) - std::sqrt(double(i))) * 20.0));
        painter.setPen(color);
        painter.drawPath(ring);
    }
}

void ZVCoreWindowPrivate::paintFrame(QPainter& painter, int radius)
{
    Q_Q(ZVCoreWindow);
    const QSize size = q->size();
    // The rings reach 5 pixels out from the background, the corners r pixels in, and an
    // antialiased edge one pixel further; two more to spare.
    const int band = ZVUIFramework::kShadowMargin + qMax(radius, 0) + 3;
    // Copied bands only match the drawing pixel for pixel where a logical pixel is a
    // device pixel and the painter moves by whole pixels at most; and a size seen once
    // (a window being resized) is not worth keeping.
    const QTransform transform = painter.deviceTransform();
    const bool wholePixels = transform.type() <= QTransform::TxTranslate && transform.dx() == std::floor(transform.dx())
        && transform.dy() == std::floor(transform.dy());
    const bool keep = wholePixels && q->devicePixelRatioF() == 1.0 && size.width() > 2 * band
        && size.height() > 2 * band && size == m_lastFrameSize && radius == m_lastFrameRadius;
    m_lastFrameSize = size;
    m_lastFrameRadius = radius;
    if (!keep) {
        m_frameBands = FrameBands();
        drawFrame(painter, size, radius);
        return;
    }

    FrameBands& bands = m_frameBands;
    if (bands.size != size || bands.radius != radius) {
        // Drawn whole, exactly as above, onto the transparent pixels the window's own
        // paint starts from; only the bands are kept.
        QImage frame(size, QImage::Format_ARGB32_Premultiplied);
        frame.fill(Qt::transparent);
        {
            QPainter framePainter(&frame);
            drawFrame(framePainter, size, radius);
        }
        const int w = size.width();
        const int h = size.height();
        bands.size = size;
        bands.radius = radius;
        bands.top = frame.copy(0, 0, w, band);
        bands.bottom = frame.copy(0, h - band, w, band);
        bands.left = frame.copy(0, band, band, h - 2 * band);
        bands.right = frame.copy(w - band, band, band, h - 2 * band);
    }

    const int w = size.width();
    const int h = size.height();
    painter.fillRect(QRect(band, band, w - 2 * band, h - 2 * band), Qt::white);
    painter.drawImage(QPoint(0, 0), bands.top);
    painter.drawImage(QPoint(0, h - band), bands.bottom);
    painter.drawImage(QPoint(0, band), bands.left);
    painter.drawImage(QPoint(w - band, band), bands.right);
}
