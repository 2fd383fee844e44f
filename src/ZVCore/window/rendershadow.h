#ifndef ZVCORE_RENDERSHADOW_H
#define ZVCORE_RENDERSHADOW_H

// The layered shadow's bitmap as a plain computation, without the operating system, so
// that every platform and the tests share it. No Qt here: the Windows build uses it too.

#include <ZVCore/zvcore_export.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace ZVUIFramework {

struct ShadowSettings
{
    int size = 0;            // how far the shadow reaches beyond (or, negative, inside) the window, -20..20
    unsigned sharpness = 5;  // width of the blur ramp in pixels, 0..20
    unsigned darkness = 150; // alpha of the fully dark part, 0..255
    int xOffset = 5;         // displacement of the shadow, -20..20
    int yOffset = 5;
    std::uint32_t color = 0; // COLORREF, 0x00BBGGRR
};

// The shadow bitmap for a window of width x height pixels whose region is described by
// \a inside (whether a window pixel belongs to the window). The bitmap is
// (width + 2 * size) x (height + 2 * size) pixels, rows bottom-up as in a DIB, each
// pixel premultiplied ARGB (alpha in the top byte). The part that lies under the window
// is fully transparent.
//
// The region is sampled once per row, from both ends, and the blur kernel is stamped
// only near the ends of each row's span, so the cost grows with the window's height and
// the bitmap's area, not with width x height x kernel.
ZVCORE_AUTOTEST_EXPORT std::vector<std::uint32_t> RenderShadow(int width, int height,
                                                               const std::function<bool(int x, int y)>& inside,
                                                               const ShadowSettings& settings);

// A COLORREF premultiplied by \a alpha, as a shadow pixel.
ZVCORE_AUTOTEST_EXPORT std::uint32_t PremultipliedShadowPixel(std::uint32_t color, unsigned alpha);

} // namespace ZVUIFramework

#endif // ZVCORE_RENDERSHADOW_H
