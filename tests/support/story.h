// What a user could see of whole runs, told line by line and compared with a text that was read and found good.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/rig.h"

/// Tells what a workstation's runs show and leave: boxes, rows of logs, texts of the window, what ran, which files and
/// folders came and went, what the registry holds other than before. It is compared with
/// tests/behaviour/stories/<name>.txt at the end; one that differs is left beside the temporary files of the tests, to
/// be read and put in its place.
class Story {
 public:
  explicit Story(std::string name) : name_(std::move(name)) {}
  ~Story();
  Story(const Story&) = delete;
  Story& operator=(const Story&) = delete;

  /// From here on it is told of this workstation, whose boxes are answered by their defaults and questions by Yes.
  void follow(Rig& rig);
  /// Tells all that came since the last part.
  void part(const std::string& title, int exitCode);
  /// Tells how a run went wrong: boxes, rows of logs, texts of the window, what was done to the machine, what the
  /// registry holds other than before. What was told before is left out.
  void ending(const std::string& title, int exitCode);

 private:
  Names whatCame();
  Names newRows();
  Names newTexts();
  Names newEffects();
  Names newValues();

  const std::string name_;
  Rig* rig_ = nullptr;
  Names lines_;
  Names boxes_;
  std::size_t effects_ = 0;
  std::vector<std::size_t> rows_;
  std::vector<std::size_t> shown_;
  std::set<std::string> registry_;
  std::set<std::string> endings_;
};
