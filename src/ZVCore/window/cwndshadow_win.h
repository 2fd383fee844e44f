#ifndef ZVCORE_CWNDSHADOW_WIN_H
#define ZVCORE_CWNDSHADOW_WIN_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

// The soft drop shadow of a frameless top-level window on Windows: a second window,
// layered with per-pixel alpha and click-through, placed around the parent and kept in
// step with its position, size and visibility. The part over the parent is fully
// transparent, and the shadow follows the parent's window region, so a window with
// rounded or odd edges gets a matching shadow. Plain Win32 without Qt.
//
// The parent's messages reach it in one of two ways: the owner forwards them to
// OnParentMessage (the core window does this from its native event handler), or the
// parent is subclassed with ParentProc, which finds the shadow by the parent's handle.
//
// GUI thread only: the class-wide state is not locked.

#include <ZVCore/zvcore_export.h>

#include <windows.h>

class ZVCORE_AUTOTEST_EXPORT CWndShadow
{
public:
    // Status bits.
    enum : unsigned char {
        Enabled = 0x01,
        Visible = 0x02,       // the shadow window is shown
        ParentVisible = 0x04, // the parent is known to be shown
    };

    CWndShadow();
    virtual ~CWndShadow();

    // Looks up UpdateLayeredWindow and registers the shadow's window class "ZVShadowWnd"
    // for \a instance. False when that was done before, or when the system has no
    // layered windows; then Create does nothing and windows simply have no shadow.
    static bool Initialize(HINSTANCE instance);

    // Creates the shadow window for \a parent (its owner) and, when the parent is shown
    // in its normal state, shows and draws it.
    void Create(HWND parent);

    // Each returns false and changes nothing when the value is out of range; a visible
    // shadow is redrawn at once with the new value.
    bool SetSize(int size);                    // -20..20: reach beyond (or inside) the parent
    bool SetSharpness(unsigned int sharpness); // 0..20: width of the blur ramp
    bool SetDarkness(unsigned int darkness);   // 0..255: alpha of the dark part
    bool SetPosition(int x, int y);            // each -20..20: displacement
    bool SetColor(COLORREF color);             // any colour

    // What a message of the parent means for the shadow.
    void OnParentMessage(HWND parent, UINT message, WPARAM wParam, LPARAM lParam);

    // A window procedure for subclassing the parent: the same rules as OnParentMessage
    // for the shadow registered under the parent, then the previous procedure (see
    // SetPreviousParentProc). On WM_NCDESTROY the parent leaves the registry.
    static LRESULT CALLBACK ParentProc(HWND parent, UINT message, WPARAM wParam, LPARAM lParam);

    // The parent's procedure before ParentProc was installed; whoever subclasses the
    // parent stores it here, and ParentProc hands every message on to it.
    void SetPreviousParentProc(WNDPROC previous);
    WNDPROC previousParentProc() const;

    // Read-only state, for the tests.
    HWND shadowWindow() const;
    unsigned char status() const;
    bool updatePending() const;
    int size() const;
    unsigned int sharpness() const;
    unsigned int darkness() const;
    int xOffset() const;
    int yOffset() const;
    COLORREF color() const;
    LPARAM lastParentSize() const; // as in WM_SIZE: width in the low word, height above
    int updateCount() const;       // how often the bitmap was recomputed

private:
    CWndShadow(const CWndShadow&) = delete;
    CWndShadow& operator=(const CWndShadow&) = delete;

    // Recomputes the bitmap from the parent's rectangle and region and puts the shadow
    // window around the parent with it.
    void Update(HWND parent);

    HWND m_shadow;
    WNDPROC m_previousParentProc;
    unsigned char m_status;
    unsigned char m_darkness;
    unsigned char m_sharpness;
    signed char m_size;
    signed char m_xOffset;
    signed char m_yOffset;
    LPARAM m_lastParentSize;
    bool m_updatePending;
    COLORREF m_color;
    int m_updateCount;
};

#endif // ZVCORE_CWNDSHADOW_WIN_H
