// `qxia rehearse`: the program's run on simulated workstations, and what becomes of every component.
#pragma once

#include "app/qxia/command.h"
#include "app/qxia/media.h"

namespace qxia {

inline constexpr Option RehearseOptions[] = {
    {"--on", "SYSTEM",
     "a system, several with commas or by repetition, or all (windows xp):\n"
     "windows 95, 98, me, nt 3.51, nt 4.0, 2000, xp, 2003"},
    {"--at", "PATH", "where the first disc lies on a hard disk: 'C:\\Media' (the CD-ROM drive D:)"},
    {"--args", "TEXT", "the program's arguments (/s /v /is=<application ini>)"},
    {"--machine", "FILE", "what the machine is and what its programs do (what qxia machine prints)"},
    {"--state", "DIR", "where the machine is kept, and gone on with the next time"},
    {"--limit-time", "TIME", "of the machine: 90m, 24h, 600s (24h)"},
    {"--limit-restarts", "N", "(50)"},
    {"--json", nullptr, "prints JSON: docs/qxia-rehearse.schema.json"},
    {"--html", "FILE", "writes one page: components and systems, the course of each run, its log"},
    {"--junit", "FILE", "writes a JUnit report"},
    {"--expect", "FILE", "JSON of an earlier rehearsal: differences are listed"},
    {"--cut-power", "each|N", "the power goes before each operation that changes something, or the Nth"},
    {"--fail", "WHAT", "each, or OPERATION, or OPERATION:N fails once; list prints the operations"},
    LabelOption,
    IniOption,
};

inline constexpr const char* RehearseExitCodes =
    "5 a run did not end by itself, or left loose ends; else the program's, of several\n"
    "the worst (1 failed, 4 another product's restart was carried on, 3 another copy runs,\n"
    "2 cancelled, 0 succeeded); 1 too where --expect differs;\n"
    "a sweep: 0 every point recovered, 1 not; 64 it could not be set up";

int RehearseMedia(const Arguments& arguments);

}  // namespace qxia
