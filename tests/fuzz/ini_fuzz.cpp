// The ini reader: a line "section", a line "key", and the file.
#include "base/ini.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  std::string text = input;
  const std::string section = TakeLine(text);
  const std::string key = TakeLine(text);
  Bench& bench = SharedBench();
  bench.view.text(text);
  using namespace assistant::modINI;
  const IniFile ini{bench.view.files(), bench.run.services.log, "C:\\product.ini"};
  const IniValue value = ReadIniValue(ini, section, key, "default", Missing::IsLogged);
  Require(value.failure == 0 || value.text == "default", "a failure gives the default");
  Require(value.failure != 0 || IsValidIniSection(ini, section), "a value stands in a section that is there");
  Require(GetIniKeys(ini, section).size() <= GetIniLines(ini, section).size() + 1, "a key stands in a line");
}
