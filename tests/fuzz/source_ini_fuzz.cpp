// The ini files of media as the check reads them, which must be as the program reads them.
#include "app/qxia/check/source_ini.h"
#include "base/ini.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant::modINI;
  const qxia::check::SourceIni source("product.ini", input);
  if (source.state() != qxia::check::SourceIni::State::Read) return;
  Bench& bench = SharedBench();
  bench.view.text(input);
  const IniFile ini{bench.view.files(), bench.run.services.log, "C:\\product.ini"};
  for (const qxia::check::IniSection& section : source.sections()) {
    if (section.line == 0 || !ValidStr(section.name)) continue;
    for (const qxia::check::IniEntry& entry : section.entries) {
      if (!entry.hasEquals || !ValidStr(entry.key)) continue;
      const IniValue read = ReadIniValue(ini, section.name, entry.key, "", Missing::IsFine);
      Require(read.text == source.value(section.name, entry.key), "the check reads what the program reads");
    }
  }
}
