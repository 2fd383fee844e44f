#ifndef ZVCORE_ZVCOREWINDOW_H
#define ZVCORE_ZVCOREWINDOW_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QScopedPointer>
#include <QtWidgets/QMainWindow>

class ZVCoreWindowPrivate;
class QMenuBar;

/*!
 * The frameless main window of a product built on the frame. It carries the title bar
 * with its menu, resizes from 5-pixel borders, is dragged by the empty parts of its title
 * bar, maximises to the work area and has a soft shadow: painted into a 5-pixel margin
 * (application property "QtBasedShadow" true or unset) or cast by a separate
 * click-through shadow window ("QtBasedShadow" false).
 *
 * \code
 * class MainWindow : public ZVCoreWindow
 * {
 * public:
 *     MainWindow() : ZVCoreWindow(nullptr)
 *     {
 *         QMenu* file = menuBar()->addMenu(tr("&File"));   // below the title bar
 *         file->addAction(tr("&Quit"), this, &QWidget::close);
 *         addToolBar(tr("Main"));
 *         setCentralWidget(new QLabel(tr("Hello")));
 *         SetResizeable(true);
 *         setMinimumSize(800, 600);
 *         CenterWindow();
 *     }
 * protected:
 *     void customEvent(QEvent* event) override;   // events 1000, 1002, menu events
 * };
 * \endcode
 */
class ZVCORE_EXPORT ZVCoreWindow : public QMainWindow
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ZVCoreWindow)

public:
    explicit ZVCoreWindow(QWidget* parent);
    ~ZVCoreWindow() override;

    /// Centres the window on the available area of the primary screen, size unchanged.
    void CenterWindow();
    /// The title bar, or null when there is none.
    QWidget* GetTitleWidget();
    /// Hides (true) or shows the maximise button and the system's maximise ability.
    void SetButtonMaximizedHide(bool hide);
    /// Whether the borders resize the window.
    void SetResizeable(bool resizable);
    void setFixedSize(int w, int h);
    void setMinimumSize(int w, int h);
    // The QSize forms stay reachable.
    using QMainWindow::setFixedSize;
    using QMainWindow::setMinimumSize;

    /// The hit test of the window's frame for a window rectangle and a position, both in
    /// physical screen pixels: a resize code (HTLEFT 10 ... HTBOTTOMRIGHT 17) within 5
    /// pixels of a resizable border, HTCAPTION (2) over the empty title bar, else 0.
    long HitTest(const QRect& windowRect, const QPoint& pos) const;

    // QMainWindow's menu bar, kept directly below the title bar (and above the tool
    // bars) whatever the host calls. These hide QMainWindow's functions of the same
    // names, which are not virtual: call them on the core window's type.
    /// The menu bar below the title bar, created on first use.
    QMenuBar* menuBar() const;
    /// Puts \a menuBar below the title bar; the window takes it over and deletes the
    /// menu bar or menu widget it replaces.
    void setMenuBar(QMenuBar* menuBar);
    /// The host's menu bar or menu widget below the title bar; the title bar when the host
    /// has set none.
    QWidget* menuWidget() const;
    /// Puts \a menuWidget below the title bar in place of the menu bar. The title bar
    /// itself (GetTitleWidget()) is already in place: passing it changes nothing.
    void setMenuWidget(QWidget* menuWidget);

protected:
    bool event(QEvent* event) override;
    void customEvent(QEvent* event) override;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    bool nativeEvent(const QByteArray& eventType, void* message, qintptr* result) override;
#else
    bool nativeEvent(const QByteArray& eventType, void* message, long* result) override;
#endif
    void paintEvent(QPaintEvent* event) override;

    // Where no system frame answers for the window (Linux and other platforms), the
    // window watches the mouse over itself and all its children, so that the same hit
    // test drives moves, resizes and the cursor, and restores its shadow margin when the
    // window state changes.
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The ratio by which the title test divides physical positions: the window's own
    // device pixel ratio. Virtual so that a derived class can stand in for a screen with
    // another scaling.
    virtual qreal hitTestDevicePixelRatio() const;

    QScopedPointer<ZVCoreWindowPrivate> d_ptr;
};

#endif // ZVCORE_ZVCOREWINDOW_H
