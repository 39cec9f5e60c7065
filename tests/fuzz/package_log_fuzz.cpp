// Windows Installer's own logs, in UTF-16 or in one byte a character.
#include "app/qxia/logs/package_log.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  const qxia::logs::PackageLog found = qxia::logs::FindReturnValue3(HostFile(input));
  Require((found.line == 0) == found.text.empty(), "a line has a text");
}
