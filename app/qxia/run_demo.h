// `qxia run-demo`: one run, with its restarts, on a simulated workstation.
#pragma once

#include "app/qxia/command.h"

namespace qxia {

inline constexpr Option RunDemoOptions[] = {
    {"--state", "DIR",
     "where the workstation keeps its registry and drives; made when missing,\n"
     "gone on with when there is one from an earlier run; without it: the\n"
     "sample product (made by samples/build) on a fresh one"},
    {"--media", "DIR", "a folder with an installation disc's content: the CD-ROM drive D"},
    {"--machine", "FILE", "what the workstation is and what its programs do\n(platform/simulated/README.md)"},
};

int RunDemo(const Arguments& arguments);

}  // namespace qxia
