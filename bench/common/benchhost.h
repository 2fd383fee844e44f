// Start-up of a host of the frame, as a product does it, for the benchmarks that run
// one: identity, crash handler, skin and style sheets, then the core window.
#ifndef ZVBENCH_BENCHHOST_H
#define ZVBENCH_BENCHHOST_H

#include "hostform.h"

#include <ZVCore/ZVCoreWindow>

class QApplication;

namespace ZVBench {

// Before the application object: the offscreen platform unless one is chosen, and the
// frame's high-DPI decision.
void prepareHostProcess();

// After the application object: the application properties a host sets, the crash
// handler, the context and the skin (the style sheets of skin/qss).
void initialiseFrame(QApplication& app);

// A host's main window: the frame's title bar above a HostForm.
class HostWindow : public ZVCoreWindow
{
    Q_OBJECT
public:
    HostWindow();
    HostForm* form() const { return m_form; }

private:
    HostForm* m_form = nullptr;
};

} // namespace ZVBench

#endif // ZVBENCH_BENCHHOST_H
