#ifndef ZVCORE_SHADOWWINDOW_QT_H
#define ZVCORE_SHADOWWINDOW_QT_H

#include <ZVCore/zvcore_export.h>
#include <ZVCore/private/RenderShadow>

#include <QtCore/QPointer>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

#include <cstdint>

namespace ZVUIFramework {

// The layered shadow of a frameless top-level window where the window system offers no
// layered windows of its own: a click-through, translucent, frameless top-level window,
// transient for the window it shades and stacked under it, painted with the shadow
// bitmap and kept in step with the window's position, size and visibility. It only
// looks like a shadow where a compositor blends translucent windows; on an X11 display
// without one it is not mapped at all.
//
// It follows the shaded window's own events: a move only repositions it; shrinking
// recomputes the bitmap at once, growing at the window's next paint; a maximised or
// minimised window has no shadow, and a restored one gets it back at its next size
// change; hiding the window hides the shadow.
class ZVCORE_AUTOTEST_EXPORT CShadowWindowQt : public QWidget
{
    Q_OBJECT

public:
    enum StatusFlag {
        Enabled = 0x1,
        Visible = 0x2,
        ParentVisible = 0x4,
    };

    CShadowWindowQt();
    ~CShadowWindowQt() override;

    // Starts shading \a parent, a top-level widget; shows the shadow at once when the
    // window is visible and neither maximised nor minimised.
    void Create(QWidget* parent);

    // Each returns false and changes nothing for a value out of range; a visible shadow
    // is recomputed at once with the new value.
    bool SetSize(int size);                  // -20..20
    bool SetSharpness(unsigned sharpness);   // 0..20
    bool SetDarkness(unsigned darkness);     // 0..255
    bool SetPosition(int x, int y);          // each -20..20
    bool SetColor(std::uint32_t colorRef);   // 0x00BBGGRR, any value

    ShadowSettings settings() const;
    // The shaded window, null before Create and once it is destroyed.
    QWidget* shadedWindow() const;
    // StatusFlag bits.
    int status() const;
    // The bitmap last computed, top row first; null before the first computation.
    QImage shadowImage() const;
    // Whether a growing window's shadow waits for the window's next paint.
    bool updatePending() const;
    // How often the bitmap has been computed: moves must leave it alone.
    int updateCount() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void render();
    QRect targetGeometry(const QSize& size) const;
    void onParentMoved();
    void onParentSized();
    void onParentStateChanged();
    void onParentShown();
    void onParentHidden();
    void onParentPainted();
    void showShadow();
    void hideShadow();
    void stackUnderParent();
    // Whether translucent windows are blended on this display at all.
    static bool canBlend();
    static bool isPinned(const QWidget* window);

    QPointer<QWidget> m_parent;
    ShadowSettings m_settings;
    int m_status = 0;
    QSize m_lastParentSize;
    bool m_updatePending = false;
    QImage m_image;
    int m_updateCount = 0;
};

} // namespace ZVUIFramework

#endif // ZVCORE_SHADOWWINDOW_QT_H
