#include "desktopresolution_p.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <cmath>

namespace ZVUIFramework {
namespace Platform {

int DesktopHorizontalResolution()
{
    // The skin is initialised after the application object exists, so the primary
    // screen is known; its geometry is in device-independent pixels.
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return 0;
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 0;
    return int(std::lround(screen->geometry().width() * screen->devicePixelRatio()));
}

} // namespace Platform
} // namespace ZVUIFramework
