// The program's version. Its one place: the code, the resources of the Windows program and the build read it here.
#pragma once

// Macros, because the resource compiler knows nothing else.
#define QXIA_VERSION_TEXT "1.0.0"
#define QXIA_VERSION_NUMBERS 1, 0, 0, 0
