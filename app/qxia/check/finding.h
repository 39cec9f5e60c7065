// What a check finds, and where.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/check/source_ini.h"

namespace qxia::check {

struct Finding {
  const SourceIni* file = nullptr;
  int line = 1;
  int rule = 0;
  std::string text;  ///< what is wrong here
  std::string fix;   ///< what to write
};

/// Collects findings. The fix is the rule's remedy where none is given.
class Findings {
 public:
  void add(int rule, const SourceIni& file, int line, const std::string& text, const std::string& fix = "");

  std::vector<Finding>& all() { return all_; }
  const std::vector<Finding>& all() const { return all_; }

 private:
  std::vector<Finding> all_;
};

/// The text in double quotes.
std::string Told(const std::string& text);

/// The word of the list that is spelt most like `word`; "" where none is near.
std::string NearestWord(const std::string& word, const std::vector<std::string>& words);

}  // namespace qxia::check
