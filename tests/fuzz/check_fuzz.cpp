// The check of a medium whose one file is application, product and component ini, script and list of shares at once.
#include <cstdio>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/report.h"
#include "platform/simulated/host.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  static const TemporaryFolder folder;
  for (const char* name : {"install.ini", "Core.ini", "core.bat"})
    simulated::WriteHostFile(folder.path() + "/" + name, input);
  qxia::Media media;
  media.discs = {{folder.path(), "DISC1"}};
  media.applicationIni = "install.ini";
  int permitted = 0;
  const auto model = qxia::check::ReadMedia(media, "1252");
  const qxia::check::Findings findings = CheckMedia(*model, permitted);
  for (const qxia::check::Finding& finding : findings.all())
    Require(finding.file != nullptr && finding.line > 0, "a finding has a place");
  qxia::check::AsText(findings, permitted);
  qxia::check::AsJson(findings);
  qxia::check::AsSarif(findings, "1.0");
}
