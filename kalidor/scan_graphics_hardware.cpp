#include "kalidor.h"
#include "library_globals.h"
#include "library_log.h"
#include "opengl/opengl_summary.h"

namespace Kalidornm {

// Fills the summary of the primary GPU. The steps land with the display-device reader.
bool Kalidor::scanGraphicsHardware() {
    generalTrace().write("Kalidor::scanGraphicsHardware() - START");
    copyOpenGlSummary(*caps(), gGlobals.summary);
    generalTrace().write("Kalidor::scanGraphicsHardware() - END");
    return true;
}

}  // namespace Kalidornm
