// The sections of machine files, and values in them.
#include <stdexcept>

#include "platform/simulated/clock.h"
#include "platform/simulated/section_file.h"
#include "tests/fuzz/fuzz.h"

namespace {

template <class Read>
void Try(const Read& read) {
  try {
    read();
  } catch (const std::runtime_error&) {
    // It is refused.
  }
}

}  // namespace

void Fuzz(const std::string& input) {
  Try([&] {
    for (const simulated::Section& section : simulated::ParseSections("machine.txt", input)) {
      Require(section.line > 0, "a section has a line");
      for (const simulated::Entry& entry : section.entries) {
        Try([&] { simulated::ParseYes(entry.value); });
        Try([&] { simulated::ParseCount(entry.value, -5, 5); });
        Try([&] { simulated::ParseParts(entry.value, '|', 3, "a|b|c"); });
        Try([&] {
          simulated::Clock clock;
          clock.setTime(entry.value);
          const std::string shown = clock.timeText();
          clock.setTime(shown);
          Require(clock.timeText() == shown, "a time is read as it is written");
        });
      }
    }
  });
}
