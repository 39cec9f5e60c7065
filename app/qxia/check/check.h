// `qxia check`: reads media without running anything, and tells what is wrong with them.
#pragma once

#include "app/qxia/command.h"
#include "app/qxia/media.h"

namespace qxia {

inline constexpr Option CheckOptions[] = {
    LabelOption,
    IniOption,
    {"--codepage", "NUMBER", "the ANSI code page of the machines; 1252 without it"},
    {"--format", "FORM", "text (without it), json (docs/qxia-check.schema.json) or sarif"},
    {"--strict", nullptr, "warnings fail as errors do"},
    {"--explain", "RULE",
     "tells what a rule such as QX105 means, with examples, and checks\nnothing; all: every rule, as docs/checks.md"},
};

int Check(const Arguments& arguments);

}  // namespace qxia
