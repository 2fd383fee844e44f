#include "rendershadow.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

    // Stamping keeps, per pixel, the larger of the bitmap and the kernel. The kernel is a
    // function of the distance from its centre that never grows with the distance, so
    // over a block of centres (a run of columns on consecutive rows) each pixel takes the
    // kernel value of the nearest centre: a block is stamped line by line as a left
    // ramp, a flat middle and a right ramp, whatever its size. That gives the same
    // bitmap as stamping every centre of the block one by one, at the cost of one pass
    // over the block's outline instead of (2K + 1)^2 pixels per centre.
    //
    // Each line remembers which columns stamps touched, from the start and from the end
    // of the spans; the cut-out under the window then has to clear only those, since
    // everything else there is still the zero the bitmap started with.
    struct Hull
    {
        int from = std::numeric_limits<int>::max();
        int to = std::numeric_limits<int>::min();
    };
    std::vector<Hull> touchedFromStart(size_t(Hs), Hull{});
    std::vector<Hull> touchedFromEnd(size_t(Hs), Hull{});

    const auto stampBlock = [&](int firstRow, int lastRow, int from, int to, std::vector<Hull>& touched) {
        // Centres: shadow rows firstRow..lastRow, columns from..to - 1.
        const int x0 = std::max(from - K, 0);
        const int x1 = std::min(to - 1 + K, Ws - 1) + 1;
        if (x0 >= x1)
            return;
        for (int r = std::max(firstRow - K, 0); r <= std::min(lastRow + K, Hs - 1); ++r) {
            // The kernel row of the nearest centre row: the stamp centred on row i puts
            // its row k on shadow row i - K + k.
            const int k = r < firstRow ? r - firstRow + K : (r > lastRow ? r - lastRow + K : K);
            const std::uint32_t* in = kernel.data() + size_t(k) * size_t(side);
            const size_t line = size_t(Hs - 1 - r);
            std::uint32_t* out = bits.data() + line * size_t(Ws);
            const int middleFrom = std::max(from, x0);
            const int middleTo = std::min(to, x1);
            for (int x = x0; x < std::min(from, x1); ++x)
                out[x] = std::max(out[x], in[x - from + K]);
            const std::uint32_t middle = in[K];
            for (int x = middleFrom; x < middleTo; ++x)
                out[x] = std::max(out[x], middle);
            for (int x = std::max(to, x0); x < x1; ++x)
                out[x] = std::max(out[x], in[x - (to - 1) + K]);
            Hull& hull = touched[line];
            hull.from = std::min(hull.from, x0);
            hull.to = std::max(hull.to, x1);
        }
    };

    // Consecutive rows whose runs of centres are the same form one block.
    struct Block
    {
        int firstRow = 0;
        int lastRow = -1;
        int from = 0;
        int to = 0;
    };
    const auto extend = [&](Block& block, int i, int from, int to, std::vector<Hull>& touched) {
        if (from >= to)
            return;
        if (block.lastRow == i - 1 && block.from == from && block.to == to) {
            block.lastRow = i;
            return;
        }
        if (block.lastRow >= block.firstRow)
            stampBlock(block.firstRow, block.lastRow, block.from, block.to, touched);
        block = Block{i, i, from, to};
    };

    // The blurred border: only near the two ends of each span, where the row above or
    // below ends differently; inside, the fill below covers everything.
    Block startBlock;
    Block endBlock;
    for (int i = K; i < Hs - K; ++i) {
        const Span& here = row(i);
        if (here.start >= here.end)
            continue;
        const Span& above = row(i - 1);
        const Span& below = row(i + 1);
        const int startEnd = std::max(here.start, std::min(std::max(above.start, below.start) + 1, here.end));
        extend(startBlock, i, here.start, startEnd, touchedFromStart);
        extend(endBlock, i, std::max(startEnd, std::min(above.end, below.end) - 1), here.end, touchedFromEnd);
    }
    if (startBlock.lastRow >= startBlock.firstRow)
        stampBlock(startBlock.firstRow, startBlock.lastRow, startBlock.from, startBlock.to, touchedFromStart);
    if (endBlock.lastRow >= endBlock.firstRow)
        stampBlock(endBlock.firstRow, endBlock.lastRow, endBlock.from, endBlock.to, touchedFromEnd);

    // The fill, and the cut-out under the window.
    const auto fill = [&](std::uint32_t* line, int from, int to, std::uint32_t pixel) {
        from = std::max(from, 0);
        to = std::min(to, Ws);
        for (int x = from; x < to; ++x)
            line[x] = pixel;
    };
    const auto clear = [&](size_t line, int from, int to) {
        std::uint32_t* out = bits.data() + line * size_t(Ws);
        for (const Hull* hull : {&touchedFromStart[line], &touchedFromEnd[line]})
            fill(out, std::max(from, hull->from), std::min(to, hull->to), 0u);
    };
    const int firstRow = std::min(K, std::max(S - Y, 0));
    const int endRow = std::max(std::min(H + S - Y, H + 2 * S), Hs - K);
    for (int i = firstRow; i < endRow; ++i) {
        if (i < 0 || i >= Hs)
            continue;
        const size_t lineIndex = size_t(Hs - i - 1);
        std::uint32_t* line = bits.data() + lineIndex * size_t(Ws);
        const Span& span = row(i);
        const int py = i - S + Y;
        if (py < 0 || py >= H) {
            fill(line, span.start, span.end, full);
            continue;
        }
        const Span& o = O[size_t(py)];
        const int shift = S - X;
        fill(line, span.start, std::min(o.start + shift, span.end), full);
        clear(lineIndex, o.start + shift, o.end + shift);
        fill(line, std::max(o.end + shift, span.start), span.end, full);
    }
    return bits;
}

} // namespace ZVUIFramework
