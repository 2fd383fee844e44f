#include "rendershadow.h"

#include <algorithm>
#include <cmath>

namespace ZVUIFramework {

namespace {

// A row's part of the region: columns start <= x < end.
struct Span
{
    int start;
    int end;
};

} // namespace

std::uint32_t PremultipliedShadowPixel(std::uint32_t color, unsigned alpha)
{
    const std::uint32_t red = color & 0xFF;
    const std::uint32_t green = (color >> 8) & 0xFF;
    const std::uint32_t blue = (color >> 16) & 0xFF;
    return std::uint32_t(alpha) << 24 | (red * alpha / 255) << 16 | (green * alpha / 255) << 8 | (blue * alpha / 255);
}

std::vector<std::uint32_t> RenderShadow(int width, int height, const std::function<bool(int x, int y)>& inside,
                                        const ShadowSettings& settings)
{
    const int W = width;
    const int H = height;
    const int S = settings.size;
    const int P = int(settings.sharpness);
    const unsigned D = settings.darkness;
    const int X = settings.xOffset;
    const int Y = settings.yOffset;
    const int Ws = W + 2 * S;
    const int Hs = H + 2 * S;
    if (W <= 0 || H <= 0 || Ws <= 0 || Hs <= 0 || !inside)
        return std::vector<std::uint32_t>(size_t(std::max(Ws, 0)) * size_t(std::max(Hs, 0)), 0u);

    std::vector<std::uint32_t> bits(size_t(Ws) * size_t(Hs), 0u);
    const Span empty{W, 0};

    // Spans of the shadow rows, with an empty row before and after; O keeps the
    // window's own spans, never eroded, for the cut-out.
    const int N = std::max(H, Hs);
    std::vector<Span> A(size_t(N) + 2, empty);
    std::vector<Span> O(size_t(H), empty);

    // With a positive size the window's rows sit S rows into the shadow.
    const int scanShift = S > 0 ? S : 0;
    for (int y = 0; y < H; ++y) {
        Span& a = A[size_t(scanShift + y + 1)];
        int start = 0;
        while (start < W && !inside(start, y))
            ++start;
        if (start == W) {
            // A row with no window pixel: both halves empty.
            a.start = W;
            a.end = 0;
            O[size_t(y)] = empty;
            continue;
        }
        a.start = start + S;
        O[size_t(y)].start = start;
        // From the right, down to the shifted start, as the region sampling is defined.
        for (int x = W - 1; x >= a.start; --x) {
            if (inside(x, y)) {
                a.end = x + 1 + S;
                O[size_t(y)].end = x + 1;
                break;
            }
        }
    }

    // Erosion: the ramp of a sharpness wider than the shadow eats into the span.
    if (S < P) {
        std::vector<Span> T(size_t(N) + 2, empty);
        for (int round = 0; round < P - S; ++round) {
            for (int j = 1; j <= N; ++j) {
                T[size_t(j)].start = std::max({A[size_t(j - 1)].start, A[size_t(j)].start, A[size_t(j + 1)].start}) + 1;
                T[size_t(j)].end = std::min({A[size_t(j - 1)].end, A[size_t(j)].end, A[size_t(j + 1)].end}) - 1;
            }
            std::swap(A, T);
        }
    }

    // Shadow row i is A[base + i].
    const int base = (S < 0 ? -S : 0) + 1;
    const auto row = [&A, base](int i) -> const Span& { return A[size_t(base + i)]; };

    // The kernel: a full centre and a linear ramp over the sharpness.
    const int K = std::max(S, P);
    const int side = 2 * K + 1;
    const double Cc = S > P ? double(S - P) : 0.0;
    const std::uint32_t full = PremultipliedShadowPixel(settings.color, D);
    std::vector<std::uint32_t> kernel(size_t(side) * size_t(side), 0u);
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            const double d = std::sqrt(double((j - K) * (j - K)) + double((i - K) * (i - K)));
            std::uint32_t pixel = 0;
            if (d < Cc) {
                pixel = full;
            } else if (d <= double(K)) {
                const int f = int((1.0 - (d - Cc) / double(P + 1)) * double(D));
                pixel = PremultipliedShadowPixel(settings.color, unsigned(std::max(f, 0)));
            }
            kernel[size_t(i) * size_t(side) + size_t(j)] = pixel;
        }
    }

    const auto stamp = [&](int cx, int cy) {
        for (int k = 0; k < side; ++k) {
            const int line = Hs - cy - 1 + K - k;
            if (line < 0 || line >= Hs)
                continue;
            std::uint32_t* out = bits.data() + size_t(line) * size_t(Ws);
            const std::uint32_t* in = kernel.data() + size_t(k) * size_t(side);
            const int first = std::max(cx - K, 0);
            const int last = std::min(cx + K, Ws - 1);
            for (int x = first; x <= last; ++x)
                out[x] = std::max(out[x], in[x - (cx - K)]);
        }
    };

    // The blurred border: only near the two ends of each span, where the row above or
    // below ends differently; inside, the fill below covers everything.
    for (int i = K; i < Hs - K; ++i) {
        const Span& here = row(i);
        if (here.start >= here.end)
            continue;
        const Span& above = row(i - 1);
        const Span& below = row(i + 1);
        int j = here.start;
        for (; j < std::min(std::max(above.start, below.start) + 1, here.end); ++j)
            stamp(j, i);
        for (j = std::max(j, std::min(above.end, below.end) - 1); j < here.end; ++j)
            stamp(j, i);
    }

    // The fill, and the cut-out under the window.
    const auto fill = [&](std::uint32_t* line, int from, int to, std::uint32_t pixel) {
        from = std::max(from, 0);
        to = std::min(to, Ws);
        for (int x = from; x < to; ++x)
            line[x] = pixel;
    };
    const int firstRow = std::min(K, std::max(S - Y, 0));
    const int endRow = std::max(std::min(H + S - Y, H + 2 * S), Hs - K);
    for (int i = firstRow; i < endRow; ++i) {
        if (i < 0 || i >= Hs)
            continue;
        std::uint32_t* line = bits.data() + size_t(Hs - i - 1) * size_t(Ws);
        const Span& span = row(i);
        const int py = i - S + Y;
        if (py < 0 || py >= H) {
            fill(line, span.start, span.end, full);
            continue;
        }
        const Span& o = O[size_t(py)];
        const int shift = S - X;
        fill(line, span.start, std::min(o.start + shift, span.end), full);
        fill(line, std::max(o.start + shift, 0), std::min(o.end + shift, Ws), 0u);
        fill(line, std::max(o.end + shift, span.start), span.end, full);
    }
    return bits;
}

} // namespace ZVUIFramework
