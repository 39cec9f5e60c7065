// Every text that a user gets in any of these tests was read and found good: it stands in one of the stories or, where
// none tells it, in tests/behaviour/stories/every_text.txt.

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <regex>
#include <set>
#include <utility>

#include "tests/support/media.h"
#include "tests/support/told.h"

namespace {

constexpr const char* File = "every_text.txt";

/// Effects of which others tell: the stories what becomes of the machine, the logs and the window what is said.
constexpr const char* ToldOtherwise[] = {"registry ", "file ", "folder ", "access ", "product ", "ended "};

/// As a line that any editor shows, however long a test made the text, whatever letters it put in and how many numbered
/// components it has.
std::string Plain(const std::string& text) {
  constexpr std::size_t LongRun = 20;
  constexpr std::size_t Longest = 600;
  static const std::regex Numbered("(Component|Part)[0-9]+");
  std::string plain;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_not_of(text[at], at), text.size());
    const bool shows = text[at] >= ' ' && text[at] <= '~';
    plain += end - at >= LongRun ? std::string() : std::string(shows ? end - at : 0, text[at]);
    if (end - at >= LongRun) plain += std::string(1, text[at]) + "{" + std::to_string(end - at) + "}";
    if (end - at < LongRun && !shows) plain += "?";
    at = end;
  }
  return std::regex_replace(plain.substr(0, Longest), Numbered, "$1#");
}

class EveryText : public ::testing::EmptyTestEventListener {
 public:
  void OnTestProgramStart(const ::testing::UnitTest& /*all*/) override {
    for (const auto& story : std::filesystem::directory_iterator(STORIES))
      for (const std::string& line : FileLines(story.path()))
        (story.path().filename() == File ? read_ : stories_).insert(Plain(line));
    Rig::lookAtEach([this](Rig& rig) { lookAt(rig); });
  }

  /// Not before: a test that looks for the first of many cuts that fails must not find one that a new text is told at.
  void OnTestEnd(const ::testing::TestInfo& /*test*/) override {
    for (const std::string& line : std::exchange(fresh_, {})) ADD_FAILURE() << "a text that nobody has read: " << line;
  }

  /// Some of the tests only add to what was read; all of them tell, too, what nobody gets any more.
  void OnTestProgramEnd(const ::testing::UnitTest& all) override {
    if (std::includes(read_.begin(), read_.end(), told_.begin(), told_.end())) return;
    if (all.test_to_run_count() < all.total_test_count()) told_.insert(read_.begin(), read_.end());
    std::cout << "the texts of these tests: " << LeaveToRead(File, Names(told_.begin(), told_.end())) << "\n";
  }

 private:
  void lookAt(Rig& rig) {
    for (const std::string& effect : rig.effects()) {
      const bool isTold = std::any_of(std::begin(ToldOtherwise), std::end(ToldOtherwise),
                                      [&](const char* beginning) { return effect.rfind(beginning, 0) == 0; });
      if (!isTold) hear(effect);
    }
    for (const auto& [control, name] : ToldControls)
      for (const std::string& text : rig.machine().screen().shown(control))
        hear(std::string(name) + ": " + LastLine(text));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(rig.folder()))
      if (entry.path().extension() == ".html" && entry.is_regular_file()) hearLog(entry.path());
  }

  void hearLog(const std::string& path) {
    for (std::string& line : FileLines(path)) {
      LogRow row;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      // What a power cut left of an entry is none.
      if (ReadRow(std::move(line), row)) hear("log: " + ToldRow(row));
    }
  }

  void hear(const std::string& text) {
    if (!heard_.insert(text).second) return;
    const std::string line = Plain(OnOneLine(text));
    if (stories_.count(line) != 0 || !told_.insert(line).second) return;
    if (read_.count(line) == 0) fresh_.push_back(line);
  }

  std::set<std::string> stories_;
  std::set<std::string> read_;
  std::set<std::string> told_;  ///< and not in the stories
  Names fresh_;
  std::set<std::string> heard_;  ///< as it came
};

const bool Listens = [] {
  ::testing::UnitTest::GetInstance()->listeners().Append(new EveryText);
  return true;
}();

}  // namespace
