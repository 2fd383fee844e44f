#include "screenmetrics_p.h"

#include <xcb/xcb.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

namespace ZVUIFramework {
namespace Platform {

namespace {

xcb_atom_t atom(xcb_connection_t* c, const char* name)
{
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(c, xcb_intern_atom(c, 1, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return result;
}

// The bytes of a root-window property, at most \a maxLongs 32-bit units.
std::string property(xcb_connection_t* c, xcb_window_t root, xcb_atom_t name, xcb_atom_t type, uint32_t maxLongs)
{
    if (name == XCB_ATOM_NONE)
        return std::string();
    xcb_get_property_reply_t* reply =
        xcb_get_property_reply(c, xcb_get_property(c, 0, root, name, type, 0, maxLongs), nullptr);
    std::string value;
    if (reply && reply->type != XCB_ATOM_NONE) {
        const int length = xcb_get_property_value_length(reply);
        if (length > 0)
            value.assign(static_cast<const char*>(xcb_get_property_value(reply)), size_t(length));
    }
    std::free(reply);
    return value;
}

// "Xft.dpi" of the X resource database, as xrdb stores it on the root window.
double xftDpi(xcb_connection_t* c, xcb_window_t root)
{
    const std::string resources = property(c, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 1u << 16);
    size_t at = 0;
    while (at < resources.size()) {
        size_t end = resources.find('\n', at);
        if (end == std::string::npos)
            end = resources.size();
        const std::string line = resources.substr(at, end - at);
        at = end + 1;
        static const char key[] = "Xft.dpi:";
        if (line.compare(0, sizeof key - 1, key) == 0) {
            const double dpi = std::atof(line.c_str() + sizeof key - 1);
            if (dpi > 0)
                return dpi;
        }
    }
    return 0.0;
}

} // namespace

void SetDpiAwareness()
{
    // X11 has no per-process DPI awareness to switch on.
}

bool ReadScreenMetrics(ScreenMetrics& metrics)
{
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display)
        return false;
    int screenNumber = 0;
    xcb_connection_t* c = xcb_connect(nullptr, &screenNumber);
    if (!c || xcb_connection_has_error(c)) {
        if (c)
            xcb_disconnect(c);
        return false;
    }
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(c));
    for (int i = 0; i < screenNumber && it.rem; ++i)
        xcb_screen_next(&it);
    if (!it.rem) {
        xcb_disconnect(c);
        return false;
    }
    const xcb_screen_t* screen = it.data;
    metrics.horzRes = screen->width_in_pixels;
    metrics.vertRes = screen->height_in_pixels;
    metrics.widthMM = screen->width_in_millimeters;
    metrics.heightMM = screen->height_in_millimeters;

    // Like the Windows device capability, the system DPI is a whole number: Xft.dpi,
    // else the physical DPI rounded (Xvfb at -dpi 144 stores 339 mm for 1920 pixels,
    // which is 143.86).
    double dpi = xftDpi(c, screen->root);
    if (dpi <= 0 && metrics.widthMM > 0)
        dpi = metrics.horzRes * 25.4 / metrics.widthMM;
    metrics.systemDpi = dpi > 0 ? std::round(dpi) : 96.0;

    // The work area of the current desktop, else the whole screen.
    metrics.workLeft = 0;
    metrics.workTop = 0;
    metrics.workRight = metrics.horzRes;
    metrics.workBottom = metrics.vertRes;
    const std::string area = property(c, screen->root, atom(c, "_NET_WORKAREA"), XCB_ATOM_CARDINAL, 4 * 64);
    const std::string current = property(c, screen->root, atom(c, "_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL, 1);
    uint32_t desktop = 0;
    if (current.size() >= 4)
        std::memcpy(&desktop, current.data(), 4);
    if (area.size() >= (desktop + 1) * 16) {
        uint32_t v[4];
        std::memcpy(v, area.data() + desktop * 16, 16);
        metrics.workLeft = int(v[0]);
        metrics.workTop = int(v[1]);
        metrics.workRight = int(v[0] + v[2]);
        metrics.workBottom = int(v[1] + v[3]);
    }
    xcb_disconnect(c);
    return true;
}

} // namespace Platform
} // namespace ZVUIFramework
