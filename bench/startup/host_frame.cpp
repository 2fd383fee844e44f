// A host of the frame, started as a product starts: high-DPI decision, application
// object, crash handler, context, skin and style sheets, then the core window with the
// frame's title bar (language manager, translators, title menu) above a host form.
#include "benchhost.h"
#include "firstframe.h"

int main(int argc, char** argv)
{
    ZVBench::prepareHostProcess();
    FirstFrameApplication app(argc, argv);
    ZVBench::initialiseFrame(app);
    ZVBench::HostWindow window;
    app.watch(&window, stayRequested(argc, argv), QStringLiteral("frame"));
    window.show();
    return app.exec();
}
