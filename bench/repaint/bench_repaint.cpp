// A full repaint of the core window in its Qt-painted mode (translucent, rounded white
// background, five shadow rings), with the frame's title bar and a host form, against a
// plain QMainWindow carrying the same title bar and the same form. Both live in the
// same process, under the same application style sheet.
#include "benchhost.h"
#include "hostform.h"
#include "zvbench.h"

#include <ZVCore/private/ZVMainWindowTitle>

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>

using namespace ZVBench;

namespace {

bool waitExposed(QWidget* window)
{
    const qint64 deadline = monotonicNs() + 5000000000LL;
    while (!(window->windowHandle() && window->windowHandle()->isExposed())) {
        if (monotonicNs() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    prepareHostProcess();
    keepHeapWarm();
    QApplication app(argc, argv);
    initialiseFrame(app);
    const bool counting = underCallgrind();

    HostWindow core;
    QMainWindow plain;
    auto* title = new ZVMainWindowTitle(&plain);
    title->init();
    plain.setMenuWidget(title);
    plain.setCentralWidget(new HostForm);

    const QSize sizes[] = {{1000, 680}, {1920, 1080}};
    for (const QSize& size : sizes) {
        const QString sizeText = QStringLiteral("%1×%2").arg(size.width()).arg(size.height());
        const QString key = QStringLiteral("repaint.%1x%2").arg(size.width()).arg(size.height());
        const QString name = QStringLiteral("full repaint, core window (Qt-painted shadow) %1").arg(sizeText);
        progress(name);
        core.resize(size);
        plain.resize(size);
        core.show();
        plain.show();
        if (!waitExposed(&core) || !waitExposed(&plain)) {
            progress(QStringLiteral("the windows were never exposed; skipped"));
            continue;
        }
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();

        const auto repaintCore = [&] { core.repaint(); };
        const auto repaintPlain = [&] { plain.repaint(); };
        if (counting) {
            countInstructions(key + QStringLiteral(".core"), repaintCore);
            countInstructions(key + QStringLiteral(".plain"), repaintPlain);
            continue;
        }
        const Samples probe = time(repaintCore, 3);
        const int runs = runsFor(probe.median(), 3000, 21, 201);
        const auto samples = timePair(repaintCore, repaintPlain, runs);

        Row row;
        row.benchmark = name;
        row.value = samples.first.median();
        row.baseline = QStringLiteral("plain QMainWindow, same title bar and form");
        row.baselineValue = samples.second.median();
        row.goal = Goal::RatioAtMost;
        row.limit = 1.2;
        row.goalText = QStringLiteral("≤ 1.2×");
        row.runs = runs;
        row.instructions = key + QStringLiteral(".core");
        row.baselineInstructions = key + QStringLiteral(".plain");
        emitRow(row);
    }
    return 0;
}
