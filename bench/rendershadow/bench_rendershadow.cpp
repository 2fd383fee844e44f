// RenderShadow, the layered shadow's bitmap, at three window sizes with the core
// window's settings and with the class defaults, against
//   (a) the floor: a bitmap of the same size, filled (with transparent pixels);
//   (b) what a Qt developer would use instead: a QGraphicsDropShadowEffect (blur 20) on a
//       widget of the same size, rendered in full;
//   (c) the obvious implementation: every pixel tested against the region, the kernel
//       applied at every bitmap pixel.
#include "naiveshadow.h"
#include "zvbench.h"

#include <ZVCore/private/RenderShadow>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsDropShadowEffect>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cstdint>
#include <memory>

using ZVUIFramework::RenderShadow;
using ZVUIFramework::ShadowSettings;
using namespace ZVBench;

namespace {

// Keeps the compiler from dropping work whose result nobody reads.
template <typename T>
void escape(const T* p)
{
    asm volatile("" : : "g"(p) : "memory");
}

struct Setting
{
    const char* name;
    const char* key;
    ShadowSettings settings;
};

ShadowSettings coreWindowSettings()
{
    // What the core window sets on its layered shadow.
    ShadowSettings s;
    s.size = 5;
    s.sharpness = 5;
    s.darkness = 40;
    s.xOffset = 0;
    s.yOffset = 0;
    return s;
}

// A window without a shape of its own, as the window system reports it.
bool wholeWindow(int, int)
{
    return true;
}

// The floor: a bitmap of the same size, filled with transparent pixels. The C library
// clears it with its fastest fill (measured here: faster than filling with the shadow's
// own colour), so this is the stricter floor; and as every implementation has to
// return such a bitmap, it is the least any of them can do.
void fillFloor(size_t pixels)
{
    std::vector<std::uint32_t> bits(pixels, 0u);
    escape(bits.data());
}

// A window with a drop-shadow effect on its content, as far as the blur reaches around
// it: a translucent top level holding the content widget with the effect.
class EffectWindow
{
public:
    EffectWindow(int width, int height, const ShadowSettings& s)
    {
        const int margin = 20;
        m_window.setAttribute(Qt::WA_TranslucentBackground, true);
        auto* layout = new QVBoxLayout(&m_window);
        layout->setContentsMargins(margin, margin, margin, margin);
        auto* content = new QWidget;
        content->setAutoFillBackground(true);
        QPalette palette = content->palette();
        palette.setColor(QPalette::Window, Qt::white);
        content->setPalette(palette);
        content->setFixedSize(width, height);
        auto* effect = new QGraphicsDropShadowEffect;
        effect->setBlurRadius(20);
        effect->setOffset(s.xOffset, s.yOffset);
        effect->setColor(QColor(0, 0, 0, int(s.darkness)));
        content->setGraphicsEffect(effect);
        layout->addWidget(content);
        m_window.resize(width + 2 * margin, height + 2 * margin);
        m_window.ensurePolished();
        layout->activate();
        m_image = QImage(m_window.size(), QImage::Format_ARGB32_Premultiplied);
    }

    void render()
    {
        m_image.fill(Qt::transparent);
        m_window.render(&m_image, QPoint(), QRegion(), QWidget::DrawChildren);
        escape(m_image.constBits());
    }

private:
    QWidget m_window;
    QImage m_image;
};

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    keepHeapWarm();
    QApplication app(argc, argv);
    const bool counting = underCallgrind();

    const Setting settings[] = {
        {"core window settings", "core", coreWindowSettings()},
        {"defaults", "defaults", ShadowSettings()},
    };
    const QSize sizes[] = {{1280, 800}, {1920, 1080}, {3840, 2160}};

    for (const QSize& size : sizes) {
        const int W = size.width();
        const int H = size.height();
        const QString sizeText = QStringLiteral("%1×%2").arg(W).arg(H);
        const QString sizeKey = QStringLiteral("%1x%2").arg(W).arg(H);
        for (const Setting& setting : settings) {
            const ShadowSettings& s = setting.settings;
            const size_t pixels = size_t(W + 2 * s.size) * size_t(H + 2 * s.size);
            const QString name = QStringLiteral("RenderShadow %1, %2").arg(sizeText, QLatin1String(setting.name));
            const QString key = QStringLiteral("rendershadow.%1.%2").arg(sizeKey, QLatin1String(setting.key));
            progress(name);

            const auto render = [&] {
                const auto bits = RenderShadow(W, H, wholeWindow, s);
                escape(bits.data());
            };
            const auto floor = [&] { fillFloor(pixels); };
            EffectWindow effect(W, H, s);
            const auto effectRender = [&] { effect.render(); };
            const auto naive = [&] {
                const auto bits = NaiveShadow(W, H, wholeWindow, s);
                escape(bits.data());
            };

            if (counting) {
                countInstructions(key, render);
                countInstructions(key + QStringLiteral(".floor"), floor);
                countInstructions(key + QStringLiteral(".effect"), effectRender);
                // The naive way is far too slow for the instruction counter above the
                // smallest size; its wall time is far from noise anyway.
                if (W <= 1280)
                    countInstructions(key + QStringLiteral(".naive"), naive, 0);
                continue;
            }

            // The naive computation must draw the same bitmap, or it is no baseline.
            const bool same = RenderShadow(W, H, wholeWindow, s) == NaiveShadow(W, H, wholeWindow, s);

            const Samples probe = time(render, 3);
            const int runs = runsFor(probe.median(), 1500, 15, 101);
            const auto vsFloor = timePair(render, floor, runs);
            const Samples effectProbe = time(effectRender, 1);
            const auto vsEffect = timePair(render, effectRender, runsFor(effectProbe.median(), 3000, 7, 31));
            const Samples naiveProbe = time(naive, 1, 0);
            const auto vsNaive = timePair(render, naive, runsFor(naiveProbe.median(), 4000, 3, 15), 0);

            Row row;
            row.benchmark = name;
            row.instructions = key;
            row.value = vsFloor.first.median();
            row.baseline = QStringLiteral("(a) floor: filling a bitmap of the same size");
            row.baselineValue = vsFloor.second.median();
            row.baselineInstructions = key + QStringLiteral(".floor");
            row.goal = Goal::RatioAtMost;
            row.limit = 2.0;
            row.goalText = QStringLiteral("≤ 2× the floor");
            row.runs = runs;
            emitRow(row);

            row.value = vsEffect.first.median();
            row.baseline = QStringLiteral("(b) QGraphicsDropShadowEffect (blur 20), full render");
            row.baselineValue = vsEffect.second.median();
            row.baselineInstructions = key + QStringLiteral(".effect");
            row.goal = Goal::SpeedupAtLeast;
            row.limit = 20.0;
            row.goalText = QStringLiteral("≥ 20× faster");
            row.runs = int(vsEffect.first.ms.size());
            emitRow(row);

            row.value = vsNaive.first.median();
            row.baseline = QStringLiteral("(c) naive: every pixel tested, whole bitmap convolved");
            row.baselineValue = vsNaive.second.median();
            row.baselineInstructions = W <= 1280 ? key + QStringLiteral(".naive") : QString();
            row.goal = Goal::Report;
            row.goalText = QString();
            row.runs = int(vsNaive.first.ms.size());
            row.note = same ? QStringLiteral("same bitmap as the naive computation")
                            : QStringLiteral("DIFFERENT bitmap from the naive computation");
            emitRow(row);
        }
    }
    return 0;
}
