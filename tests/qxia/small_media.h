// Small media for the verbs of the Linux command, with their ini text in the test, and the verbs run on them.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"
#include "tests/support/temporary_folder.h"

/// A medium in a folder that goes with it: a product "Small" whose components the test adds.
class SmallMedia {
 public:
  SmallMedia();

  /// Adds a component with the lines of its section behind "Install=", and its file unless it is told to be missing.
  SmallMedia& component(const std::string& name, const std::string& install, const std::string& lines = "");
  SmallMedia& package(const std::string& name, const std::string& code, const std::string& version);
  /// Lines of the product ini's [Product], and whole sections behind it.
  SmallMedia& product(const std::string& lines, const std::string& sections = "");
  SmallMedia& machine(const std::string& text);
  void file(const std::string& path, const std::string& text);
  void remove(const std::string& path);

  /// The medium's folder, after its inis were written.
  std::string folder();
  std::string path() const { return root_.path(); }

  /// Rehearses with the words of the command line behind the medium.
  std::vector<qxia::RehearsedRun> rehearse(std::vector<std::string> words = {});
  qxia::RehearsedRun rehearseOnce(const std::vector<std::string>& words = {}) { return rehearse(words).at(0); }

 private:
  TemporaryFolder root_;
  std::string actions_;
  std::string product_ = "ServerType=dcunit\n";
  std::string sections_;
};
