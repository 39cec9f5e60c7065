#include "app/qxia/check/check.h"

#include <iconv.h>

#include <cstdio>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/report.h"
#include "app/qxia/check/rules.h"
#include "base/text.h"
#include "base/version.h"

namespace qxia {
namespace {

int Explain(const std::string& name) {
  if (name == "all") {
    std::fputs(check::RulesPage().c_str(), stdout);
    return 0;
  }
  const check::Rule* rule = check::FindRule(check::RuleNumber(assistant::UpperCase(name)));
  if (rule == nullptr)
    throw UsageError("--explain " + name + ": there is no such rule; write one such as QX105, or all");
  std::fputs(check::Explanation(*rule).c_str(), stdout);
  return 0;
}

void RequireCodePage(const std::string& codePage) {
  iconv_t opened = iconv_open("UTF-16LE", ("CP" + codePage).c_str());
  if (opened == reinterpret_cast<iconv_t>(-1))  // NOLINT: that is the library's mark
    throw UsageError("--codepage " + codePage + " is not known here: write a number such as 1252 or 932");
  iconv_close(opened);
}

std::string Report(const check::Findings& findings, int permitted, const std::string& form) {
  if (form == "json") return check::AsJson(findings);
  if (form == "sarif") return check::AsSarif(findings, QXIA_VERSION_TEXT);
  return check::AsText(findings, permitted);
}

}  // namespace

int Check(const Arguments& arguments) {
  if (arguments.has("--explain")) return Explain(arguments.text("--explain"));
  const std::string form = arguments.text("--format", "text");
  if (form != "text" && form != "json" && form != "sarif")
    throw UsageError("--format " + form + ": write text, json or sarif");
  const std::string codePage = arguments.text("--codepage", "1252");
  RequireCodePage(codePage);
  const Media given = FindMedia(arguments);
  const auto media = check::ReadMedia(given, codePage);
  if (media->discs.front().application == nullptr)
    throw UsageError(given.applicationIni + " is a link that leads out of the media: put the file itself there");
  int permitted = 0;
  const check::Findings findings = check::CheckMedia(*media, permitted);
  std::fputs(Report(findings, permitted, form).c_str(), stdout);
  const check::Counts counts = check::CountOf(findings);
  const bool failed = counts.errors > 0 || (arguments.has("--strict") && counts.warnings > 0);
  return failed ? 1 : 0;
}

}  // namespace qxia
