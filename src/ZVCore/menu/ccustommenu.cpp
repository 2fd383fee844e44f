#include "ccustommenu.h"

#include <QtCore/QEvent>
#include <QtCore/QRectF>
#include <QtGui/QColor>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <cmath>

#ifdef Q_OS_WIN
#include <QtCore/qt_windows.h>
#endif

namespace {

// The band around the background that the shadow rings occupy, in pixels.
constexpr int kShadowWidth = 5;

} // namespace

bool CCustomMenu::ms_classShadowRemoved = false;

CCustomMenu::CCustomMenu(const QString& title, QWidget* parent)
    : ZVMenu(title, parent)
{
    init();
}

CCustomMenu::CCustomMenu(QWidget* parent)
    : ZVMenu(parent)
{
    init();
}

CCustomMenu::~CCustomMenu() = default;

void CCustomMenu::init()
{
    // The rounded corners and the shadow band only look right when whatever the
    // menu does not paint stays see-through.
    setWindowFlags(Qt::Popup | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
}

int CCustomMenu::menuRadius() const
{
    return m_menuRadius;
}

void CCustomMenu::setMenuRadius(int radius)
{
    if (m_menuRadius == radius)
        return;
    m_menuRadius = radius;
    update();
}

QString CCustomMenu::menuBackgroundColor() const
{
    return m_menuBackgroundColor;
}

void CCustomMenu::setMenuBackgroundColor(const QString& color)
{
    if (m_menuBackgroundColor == color)
        return;
    m_menuBackgroundColor = color;
    update();
}

bool CCustomMenu::classShadowRemoved()
{
    return ms_classShadowRemoved;
}

bool CCustomMenu::event(QEvent* e)
{
    if (e->type() == QEvent::WinIdChange && !ms_classShadowRemoved) {
        ms_classShadowRemoved = true;
#ifdef Q_OS_WIN
        // The style belongs to the window class, so clearing it once covers every
        // later popup of that class; the menu paints its own shadow instead.
        if (internalWinId() != 0) {
            const HWND window = reinterpret_cast<HWND>(winId());
            const DWORD style = GetClassLongW(window, GCL_STYLE);
            SetClassLongW(window, GCL_STYLE, static_cast<LONG>(style & ~static_cast<DWORD>(CS_DROPSHADOW)));
        }
#endif
    }
    // Deliberately past QMenu::event and ZVMenu: the menu's generic event handling is
    // not wanted here, while its key, mouse and paint handlers are still reached
    // through their own virtual functions.
    return QWidget::event(e);
}

void CCustomMenu::paintEvent(QPaintEvent* e)
{
    const int w = width();
    const int h = height();
    const int r = m_menuRadius;

    QColor background(Qt::white);
    // isValidColor() first, so an unknown name does not warn on every repaint.
    if (!m_menuBackgroundColor.isEmpty() && QColor::isValidColor(m_menuBackgroundColor))
        background.setNamedColor(m_menuBackgroundColor);

    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(QRectF(kShadowWidth, kShadowWidth, w - 2 * kShadowWidth, h - 2 * kShadowWidth), r, r);
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.fillPath(path, QBrush(background));
    }

    QMenu::paintEvent(e);

    // Five outlines fading outwards stand in for a blurred shadow, which would cost an
    // offscreen image per repaint.
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setBrush(Qt::NoBrush);
    QColor shadow(Qt::black);
    for (int i = 0; i < kShadowWidth; ++i) {
        shadow.setAlpha(static_cast<int>((std::sqrt(5.0) - std::sqrt(static_cast<double>(i))) * 20.0));
        painter.setPen(shadow);
        painter.drawRoundedRect(QRectF(kShadowWidth - i, kShadowWidth - i, w - 2 * kShadowWidth + 2 * i,
                                       h - 2 * kShadowWidth + 2 * i),
                                r, r);
    }
}
