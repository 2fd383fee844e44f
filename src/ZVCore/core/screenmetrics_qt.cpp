#include "screenmetrics_p.h"

namespace ZVUIFramework {
namespace Platform {

void SetDpiAwareness()
{
}

bool ReadScreenMetrics(ScreenMetrics&)
{
    // Without a native screen to ask before the application object exists, Qt's own
    // scaling decides.
    return false;
}

} // namespace Platform
} // namespace ZVUIFramework
