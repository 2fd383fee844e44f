#include "naiveshadow.h"

#include <algorithm>
#include <cmath>

using ZVUIFramework::PremultipliedShadowPixel;
using ZVUIFramework::ShadowSettings;

namespace {

struct Span
{
    int start;
    int end;
};

} // namespace

std::vector<std::uint32_t> NaiveShadow(int W, int H, const std::function<bool(int x, int y)>& inside,
                                       const ShadowSettings& s)
{
    const int S = s.size;
    const int P = int(s.sharpness);
    const unsigned D = s.darkness;
    const int X = s.xOffset;
    const int Y = s.yOffset;
    const int Ws = W + 2 * S;
    const int Hs = H + 2 * S;
    if (W <= 0 || H <= 0 || Ws <= 0 || Hs <= 0)
        return std::vector<std::uint32_t>(size_t(std::max(Ws, 0)) * size_t(std::max(Hs, 0)), 0u);
    std::vector<std::uint32_t> bits(size_t(Ws) * size_t(Hs), 0u);

    // The whole window, pixel by pixel.
    std::vector<unsigned char> mask(size_t(W) * size_t(H));
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
            mask[size_t(y) * size_t(W) + size_t(x)] = inside(x, y) ? 1 : 0;

    const Span empty{W, 0};
    const int N = std::max(H, Hs);
    std::vector<Span> A(size_t(N) + 2, empty);
    std::vector<Span> O(size_t(H), empty);
    const int shift = S > 0 ? S : 0;
    for (int y = 0; y < H; ++y) {
        int first = -1;
        int last = -1;
        for (int x = 0; x < W; ++x) {
            if (mask[size_t(y) * size_t(W) + size_t(x)]) {
                if (first < 0)
                    first = x;
                last = x;
            }
        }
        Span& a = A[size_t(shift + y + 1)];
        if (first < 0)
            continue;
        a.start = first + S;
        O[size_t(y)].start = first;
        if (last >= a.start) {
            a.end = last + 1 + S;
            O[size_t(y)].end = last + 1;
        }
    }
    for (int round = 0; round < P - S; ++round) {
        std::vector<Span> T(size_t(N) + 2, empty);
        for (int j = 1; j <= N; ++j) {
            T[size_t(j)].start = std::max({A[size_t(j - 1)].start, A[size_t(j)].start, A[size_t(j + 1)].start}) + 1;
            T[size_t(j)].end = std::min({A[size_t(j - 1)].end, A[size_t(j)].end, A[size_t(j + 1)].end}) - 1;
        }
        A.swap(T);
    }
    const int base = (S < 0 ? -S : 0) + 1;
    const auto row = [&](int i) { return A[size_t(base + i)]; };

    const int K = std::max(S, P);
    const int side = 2 * K + 1;
    const double Cc = S > P ? double(S - P) : 0.0;
    const std::uint32_t full = PremultipliedShadowPixel(s.color, D);
    std::vector<std::uint32_t> kernel(size_t(side) * size_t(side), 0u);
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            const double d = std::sqrt(double((j - K) * (j - K)) + double((i - K) * (i - K)));
            if (d < Cc)
                kernel[size_t(i) * size_t(side) + size_t(j)] = full;
            else if (d <= double(K))
                kernel[size_t(i) * size_t(side) + size_t(j)] =
                    PremultipliedShadowPixel(s.color, unsigned(std::max(int((1.0 - (d - Cc) / double(P + 1)) * double(D)), 0)));
        }
    }

    // Every bitmap pixel: the largest kernel value over the span pixels around it.
    for (int r = 0; r < Hs; ++r) {
        std::uint32_t* line = bits.data() + size_t(Hs - 1 - r) * size_t(Ws);
        for (int c = 0; c < Ws; ++c) {
            std::uint32_t best = 0;
            for (int k = 0; k < side; ++k) {
                const int i = r - k + K;
                if (i < K || i >= Hs - K)
                    continue;
                const Span span = row(i);
                for (int l = 0; l < side; ++l) {
                    const int j = c - l + K;
                    if (j >= span.start && j < span.end)
                        best = std::max(best, kernel[size_t(k) * size_t(side) + size_t(l)]);
                }
            }
            line[c] = best;
        }
    }

    // The fill and the cut-out under the window, as in the real thing.
    const auto fill = [&](std::uint32_t* line, int from, int to, std::uint32_t pixel) {
        for (int x = std::max(from, 0); x < std::min(to, Ws); ++x)
            line[x] = pixel;
    };
    for (int i = std::min(K, std::max(S - Y, 0)); i < std::max(std::min(H + S - Y, H + 2 * S), Hs - K); ++i) {
        if (i < 0 || i >= Hs)
            continue;
        std::uint32_t* line = bits.data() + size_t(Hs - i - 1) * size_t(Ws);
        const Span span = row(i);
        const int py = i - S + Y;
        if (py < 0 || py >= H) {
            fill(line, span.start, span.end, full);
            continue;
        }
        const Span o = O[size_t(py)];
        const int sh = S - X;
        fill(line, span.start, std::min(o.start + sh, span.end), full);
        fill(line, std::max(o.start + sh, 0), std::min(o.end + sh, Ws), 0u);
        fill(line, std::max(o.end + sh, span.start), span.end, full);
    }
    return bits;
}
