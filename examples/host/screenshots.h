// The --screenshots mode: pictures of the demo's windows in each skin and language.
#ifndef FOLDERLENS_SCREENSHOTS_H
#define FOLDERLENS_SCREENSHOTS_H

#include <QtCore/QString>

class MainWindow;

namespace Screenshots {

/// Runs this program once per skin and language (the language manager is process-wide)
/// and relays the paths of the pictures they write. Returns the exit status.
int runAll(const QString& folder);

/// Shows \a window offscreen and writes the main window, the open title menu, the About
/// dialog and the language dialog to "<folder>/<name>-<tag>.png", one path per line on
/// stdout. Returns the exit status.
int takeAll(MainWindow* window, const QString& folder, const QString& tag);

/// A small folder with known contents, so that the pictures do not depend on the machine.
QString sampleFolder();

} // namespace Screenshots

#endif // FOLDERLENS_SCREENSHOTS_H
