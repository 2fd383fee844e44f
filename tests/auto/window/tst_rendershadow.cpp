// The layered shadow's bitmap against a slow reference that follows the computation
// step by step, with plain loops over whole rows and no shortcuts.
#include <ZVCore/private/RenderShadow>

#include <QtTest/QtTest>

#include <cmath>
#include <random>

using ZVUIFramework::RenderShadow;
using ZVUIFramework::ShadowSettings;

namespace {

using Region = std::function<bool(int, int)>;

std::uint32_t premultiplied(std::uint32_t color, unsigned a)
{
    const unsigned r = color & 0xFF, g = (color >> 8) & 0xFF, b = (color >> 16) & 0xFF;
    return a << 24 | (r * a / 255) << 16 | (g * a / 255) << 8 | (b * a / 255);
}

// The reference. Spans are (start, end) pairs; the empty span is (W, 0).
std::vector<std::uint32_t> reference(int W, int H, const Region& inside, const ShadowSettings& s)
{
    const int S = s.size, P = int(s.sharpness), X = s.xOffset, Y = s.yOffset;
    const unsigned D = s.darkness;
    const int Ws = W + 2 * S, Hs = H + 2 * S;
    std::vector<std::uint32_t> bits(size_t(Ws) * size_t(Hs), 0u);
    const int N = std::max(H, Hs);
    std::vector<std::pair<int, int>> A(size_t(N) + 2, {W, 0}), O(size_t(H), {W, 0});
    const int shift = S > 0 ? S : 0;

    for (int y = 0; y < H; ++y) {
        // Every pixel of the row is looked at; the first and the last inside count.
        int first = -1, last = -1;
        for (int x = 0; x < W; ++x) {
            if (inside(x, y)) {
                if (first < 0)
                    first = x;
                last = x;
            }
        }
        auto& a = A[size_t(shift + y + 1)];
        if (first < 0) {
            a = {W, 0};
            O[size_t(y)] = {W, 0};
            continue;
        }
        a.first = first + S;
        O[size_t(y)].first = first;
        // The right end is looked for only down to the shifted start.
        if (last >= a.first) {
            a.second = last + 1 + S;
            O[size_t(y)].second = last + 1;
        }
    }
    for (int round = 0; round < P - S; ++round) {
        std::vector<std::pair<int, int>> T(size_t(N) + 2, {W, 0});
        for (int j = 1; j <= N; ++j) {
            T[size_t(j)].first = std::max(A[size_t(j - 1)].first, std::max(A[size_t(j)].first, A[size_t(j + 1)].first)) + 1;
            T[size_t(j)].second = std::min(A[size_t(j - 1)].second, std::min(A[size_t(j)].second, A[size_t(j + 1)].second)) - 1;
        }
        A = T;
    }
    const int base = (S < 0 ? -S : 0) + 1;
    auto rowSpan = [&](int i) { return A[size_t(base + i)]; };

    const int K = std::max(S, P);
    const double Cc = S > P ? S - P : 0;
    auto kernelAt = [&](int i, int j) -> std::uint32_t {
        const double d = std::sqrt(double((j - K) * (j - K) + (i - K) * (i - K)));
        if (d < Cc)
            return premultiplied(s.color, D);
        if (d <= K)
            return premultiplied(s.color, unsigned(int((1 - (d - Cc) / (P + 1)) * D)));
        return 0;
    };
    auto put = [&](int line, int col, std::uint32_t v, bool keepLarger) {
        if (line < 0 || line >= Hs || col < 0 || col >= Ws)
            return;
        std::uint32_t& p = bits[size_t(line) * size_t(Ws) + size_t(col)];
        p = keepLarger ? std::max(p, v) : v;
    };
    auto stamp = [&](int j, int i) {
        for (int k = 0; k <= 2 * K; ++k)
            for (int l = 0; l <= 2 * K; ++l)
                put(Hs - i - 1 + K - k, j - K + l, kernelAt(k, l), true);
    };
    for (int i = K; i < Hs - K; ++i) {
        const auto here = rowSpan(i), up = rowSpan(i - 1), down = rowSpan(i + 1);
        if (!(here.first < here.second))
            continue;
        int j = here.first;
        while (j < std::min(std::max(up.first, down.first) + 1, here.second)) {
            stamp(j, i);
            ++j;
        }
        j = std::max(j, std::min(up.second, down.second) - 1);
        while (j < here.second) {
            stamp(j, i);
            ++j;
        }
    }
    const std::uint32_t Pc = premultiplied(s.color, D);
    for (int i = std::min(K, std::max(S - Y, 0)); i < std::max(std::min(H + S - Y, H + 2 * S), Hs - K); ++i) {
        const int line = Hs - i - 1;
        const auto span = rowSpan(i);
        const int py = i - S + Y;
        if (py < 0 || py >= H) {
            for (int c = span.first; c < span.second; ++c)
                put(line, c, Pc, false);
            continue;
        }
        const auto o = O[size_t(py)];
        const int sh = S - X;
        for (int c = span.first; c < std::min(o.first + sh, span.second); ++c)
            put(line, c, Pc, false);
        for (int c = std::max(o.first + sh, 0); c < std::min(o.second + sh, Ws); ++c)
            put(line, c, 0, false);
        for (int c = std::max(o.second + sh, span.first); c < span.second; ++c)
            put(line, c, Pc, false);
    }
    return bits;
}

Region rectangle(int w, int h)
{
    return [w, h](int x, int y) { return x >= 0 && y >= 0 && x < w && y < h; };
}

Region roundedRectangle(int w, int h, int r)
{
    return [w, h, r](int x, int y) {
        const int cx = x < r ? r : (x >= w - r ? w - r - 1 : x);
        const int cy = y < r ? r : (y >= h - r ? h - r - 1 : y);
        return (x - cx) * (x - cx) + (y - cy) * (y - cy) <= r * r;
    };
}

Region ellipse(int w, int h)
{
    return [w, h](int x, int y) {
        const double dx = (x + 0.5 - w / 2.0) / (w / 2.0), dy = (y + 0.5 - h / 2.0) / (h / 2.0);
        return dx * dx + dy * dy <= 1.0;
    };
}

unsigned alphaOf(std::uint32_t p)
{
    return p >> 24;
}

// Top-down access: bitmap row (Hs - 1 - y) holds shadow row y.
std::uint32_t at(const std::vector<std::uint32_t>& bits, int Ws, int Hs, int x, int y)
{
    return bits[size_t(Hs - 1 - y) * size_t(Ws) + size_t(x)];
}

} // namespace

class tst_RenderShadow : public QObject
{
    Q_OBJECT

private slots:
    void coreWindowSettings()
    {
        ShadowSettings s;
        s.size = 5;
        s.sharpness = 5;
        s.xOffset = 0;
        s.yOffset = 0;
        s.darkness = 40;
        const auto bits = RenderShadow(200, 100, rectangle(200, 100), s);
        QCOMPARE(bits.size(), size_t(210 * 110));
        unsigned maxAlpha = 0;
        for (int y = 0; y < 110; ++y) {
            for (int x = 0; x < 210; ++x) {
                const unsigned a = alphaOf(at(bits, 210, 110, x, y));
                maxAlpha = std::max(maxAlpha, a);
                if (x >= 5 && x < 205 && y >= 5 && y < 105)
                    QVERIFY2(a == 0, qPrintable(QStringLiteral("pixel %1,%2 under the window has alpha %3").arg(x).arg(y).arg(a)));
            }
        }
        QVERIFY(maxAlpha <= 40);
        QVERIFY(maxAlpha > 0);
        // The ring right next to the window is darker than the outermost one.
        QVERIFY(alphaOf(at(bits, 210, 110, 4, 50)) > alphaOf(at(bits, 210, 110, 0, 50)));
        QVERIFY(bits == reference(200, 100, rectangle(200, 100), s));
    }

    void matchesTheReference_data()
    {
        QTest::addColumn<int>("w");
        QTest::addColumn<int>("h");
        QTest::addColumn<int>("shape"); // 0 rectangle, 1 rounded, 2 ellipse
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("sharpness");
        QTest::addColumn<int>("darkness");
        QTest::addColumn<int>("xOffset");
        QTest::addColumn<int>("yOffset");
        QTest::addColumn<uint>("color");
        QTest::newRow("defaults") << 120 << 80 << 0 << 0 << 5 << 150 << 5 << 5 << 0u;
        QTest::newRow("core window") << 300 << 200 << 0 << 5 << 5 << 40 << 0 << 0 << 0u;
        QTest::newRow("size beyond sharpness") << 90 << 60 << 0 << 12 << 4 << 200 << 3 << -2 << 0u;
        QTest::newRow("sharpness 0") << 64 << 48 << 0 << 6 << 0 << 255 << 0 << 0 << 0u;
        QTest::newRow("negative size") << 80 << 70 << 0 << -4 << 6 << 120 << 2 << 2 << 0u;
        QTest::newRow("max size and offsets") << 100 << 100 << 0 << 20 << 20 << 255 << -20 << 20 << 0u;
        QTest::newRow("coloured") << 70 << 50 << 0 << 8 << 8 << 180 << 4 << 4 << 0x00336699u;
        QTest::newRow("rounded corners") << 160 << 120 << 1 << 5 << 5 << 40 << 0 << 0 << 0u;
        QTest::newRow("ellipse") << 150 << 90 << 2 << 6 << 3 << 100 << 1 << 2 << 0u;
        QTest::newRow("ellipse, negative size") << 140 << 100 << 2 << -3 << 7 << 90 << 0 << 0 << 0u;
        QTest::newRow("tiny window") << 3 << 2 << 0 << 5 << 5 << 40 << 0 << 0 << 0u;
    }

    void matchesTheReference()
    {
        QFETCH(int, w);
        QFETCH(int, h);
        QFETCH(int, shape);
        QFETCH(int, size);
        QFETCH(int, sharpness);
        QFETCH(int, darkness);
        QFETCH(int, xOffset);
        QFETCH(int, yOffset);
        QFETCH(uint, color);
        ShadowSettings s;
        s.size = size;
        s.sharpness = unsigned(sharpness);
        s.darkness = unsigned(darkness);
        s.xOffset = xOffset;
        s.yOffset = yOffset;
        s.color = color;
        const Region region = shape == 0 ? rectangle(w, h) : shape == 1 ? roundedRectangle(w, h, 12) : ellipse(w, h);
        const auto bits = RenderShadow(w, h, region, s);
        QCOMPARE(bits.size(), size_t(w + 2 * size) * size_t(h + 2 * size));
        const auto expected = reference(w, h, region, s);
        for (size_t i = 0; i < bits.size(); ++i) {
            if (bits[i] != expected[i])
                QFAIL(qPrintable(QStringLiteral("pixel %1 differs: %2 instead of %3").arg(i).arg(bits[i], 8, 16).arg(expected[i], 8, 16)));
        }
        // Every pixel is premultiplied: no colour channel above its alpha.
        for (std::uint32_t p : bits) {
            const unsigned a = p >> 24;
            QVERIFY(((p >> 16) & 0xFF) <= a && ((p >> 8) & 0xFF) <= a && (p & 0xFF) <= a);
            QVERIFY(a <= unsigned(darkness));
        }
    }

    void colourIsPremultipliedFromACOLORREF()
    {
        // COLORREF 0x00BBGGRR: pure red is 0x000000FF.
        QCOMPARE(ZVUIFramework::PremultipliedShadowPixel(0x000000FFu, 255), 0xFFFF0000u);
        QCOMPARE(ZVUIFramework::PremultipliedShadowPixel(0x00FF0000u, 255), 0xFF0000FFu);
        QCOMPARE(ZVUIFramework::PremultipliedShadowPixel(0x0000FF00u, 128), 0x80008000u);
        QCOMPARE(ZVUIFramework::PremultipliedShadowPixel(0x00FFFFFFu, 40), 0x28282828u);
        QCOMPARE(ZVUIFramework::PremultipliedShadowPixel(0x00336699u, 100), (100u << 24) | (0x99u * 100 / 255) << 16
                                                                              | (0x66u * 100 / 255) << 8 | (0x33u * 100 / 255));
    }

    void defaultsErodeTheSpanBeforeBlurring()
    {
        // Size 0, sharpness 5, offsets (5, 5), darkness 150. The span is eroded 5 times
        // (columns 5..94 of a 100-pixel row), the ramp stamped at its ends falls by about 150/6
        // per pixel, and the window, pushed 5 pixels right and down, cuts its own area out.
        ShadowSettings s;
        const auto bits = RenderShadow(100, 80, rectangle(100, 80), s);
        QCOMPARE(bits.size(), size_t(100 * 80));
        const int y = 40;
        for (int x = 0; x < 95; ++x)
            QCOMPARE(alphaOf(at(bits, 100, 80, x, y)), 0u);
        // (1 - d / 6) x 150 truncated, in double precision: 5/6 of 150 lands just below 25.
        const unsigned ramp[] = {125, 100, 75, 50, 24};
        for (int x = 95; x < 100; ++x)
            QCOMPARE(alphaOf(at(bits, 100, 80, x, y)), ramp[x - 95]);
        // Below the window the eroded span ends at row 74, under the window's cut-out, so
        // only the ramp shows: rows 75..79 of column 50.
        for (int row = 75; row < 80; ++row)
            QCOMPARE(alphaOf(at(bits, 100, 80, 50, row)), ramp[row - 75]);
        for (std::uint32_t p : bits)
            QVERIFY(alphaOf(p) <= 150);
    }

    void nothingForAnEmptyWindow()
    {
        ShadowSettings s;
        s.size = 5;
        QCOMPARE(RenderShadow(0, 10, rectangle(0, 10), s).size(), size_t(10 * 20));
        const auto bits = RenderShadow(50, 40, [](int, int) { return false; }, s);
        QCOMPARE(bits.size(), size_t(60 * 50));
        for (std::uint32_t p : bits)
            QCOMPARE(p, 0u);
    }

    void irregularRegionsMatchTheReference()
    {
        // Regions whose rows start and end anywhere, with gaps and scattered pixels, and
        // settings across their whole ranges: the runs of stamps and the cut-out vary
        // from row to row. The generator is seeded, so a failure repeats.
        std::mt19937 random(20260101);
        for (int round = 0; round < 300; ++round) {
            const int w = 1 + int(random() % 70);
            const int h = 1 + int(random() % 70);
            std::vector<std::pair<int, int>> rows(static_cast<size_t>(h));
            for (auto& row : rows) {
                const int a = int(random() % unsigned(w + 1));
                const int b = int(random() % unsigned(w + 1));
                row = random() % 6 == 0 ? std::make_pair(w, 0) : std::make_pair(std::min(a, b), std::max(a, b));
            }
            std::vector<char> scattered(static_cast<size_t>(w * h));
            for (char& pixel : scattered)
                pixel = random() % 3 == 0;
            const bool jagged = round % 2 == 0;
            const Region region = [&, w](int x, int y) {
                if (jagged)
                    return x >= rows[size_t(y)].first && x < rows[size_t(y)].second;
                return scattered[size_t(y) * size_t(w) + size_t(x)] != 0;
            };
            ShadowSettings s;
            s.size = int(random() % 41) - 20;
            s.sharpness = random() % 21;
            s.darkness = random() % 256;
            s.xOffset = int(random() % 41) - 20;
            s.yOffset = int(random() % 41) - 20;
            s.color = random() % 4 == 0 ? 0u : std::uint32_t(random() & 0xFFFFFF);
            if (w + 2 * s.size <= 0 || h + 2 * s.size <= 0) {
                // A shadow drawn that far inside leaves no bitmap at all.
                QVERIFY(RenderShadow(w, h, region, s).empty());
                continue;
            }
            if (RenderShadow(w, h, region, s) != reference(w, h, region, s))
                QFAIL(qPrintable(QStringLiteral("round %1: %2x%3, size %4, sharpness %5, darkness %6, offsets %7,%8")
                                     .arg(round).arg(w).arg(h).arg(s.size).arg(s.sharpness).arg(s.darkness)
                                     .arg(s.xOffset).arg(s.yOffset)));
        }
    }

    void windowWithAHoleRow()
    {
        // A row without any window pixel (a region made of two bands).
        ShadowSettings s;
        s.size = 4;
        s.sharpness = 2;
        s.xOffset = s.yOffset = 0;
        const Region bands = [](int x, int y) { return x >= 0 && x < 60 && y >= 0 && y < 50 && (y < 20 || y > 24); };
        QVERIFY(RenderShadow(60, 50, bands, s) == reference(60, 50, bands, s));
    }
};

QTEST_GUILESS_MAIN(tst_RenderShadow)
#include "tst_rendershadow.moc"
