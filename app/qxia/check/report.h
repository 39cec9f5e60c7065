// Findings as text, JSON and SARIF.
#pragma once

#include <string>

#include "app/qxia/check/finding.h"
#include "app/qxia/check/rules.h"

namespace qxia::check {

struct Counts {
  int errors = 0;
  int warnings = 0;
  int notes = 0;
};

Counts CountOf(const Findings& findings);

/// `PATH:LINE: SEVERITY QXnnn: TEXT`, the fix below each, and the counts as the last line.
std::string AsText(const Findings& findings, int permitted);
/// The form that docs/qxia-check.schema.json describes.
std::string AsJson(const Findings& findings);
/// SARIF 2.1.0.
std::string AsSarif(const Findings& findings, const std::string& version);

}  // namespace qxia::check
