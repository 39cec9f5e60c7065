// Media for the tests of `qxia check`: clean ones, into which faults are put.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/qxia/check/checks.h"
#include "tests/support/temporary_folder.h"

namespace qxia {

/// What a made package says of itself.
struct MadePackage {
  std::string name;
  std::string version;
  std::string code;
  std::string platform = "Intel";
  bool restarts = false;
};

/// Files by their paths, which begin with the disc's folder: "disc1/product.ini".
class TestMedia {
 public:
  /// One disc with a component of every kind; two discs with one package each. Nothing is found on either.
  static TestMedia oneDisc();
  static TestMedia twoDiscs();

  void put(const std::string& path, const std::string& text) { texts_[path] = text; }
  void put(const std::string& path, const MadePackage& package) { packages_[path] = package; }
  void link(const std::string& path, const std::string& target) { links_[path] = target; }
  /// The volume labels of the discs, as a person gives them.
  void label(const std::vector<std::string>& labels) { labels_ = labels; }
  const std::vector<std::string>& labels() const { return labels_; }
  void remove(const std::string& path);
  void rename(const std::string& path, const std::string& name);
  /// Raises std::runtime_error where the text is not there.
  void replace(const std::string& path, const std::string& old, const std::string& text);

  const std::string& text(const std::string& path) const { return texts_.at(path); }
  /// Number of the first line that begins so; 1 for "".
  int lineOf(const std::string& path, const std::string& start) const;

  /// Writes everything below the folder; returns the discs' folders.
  std::vector<std::string> write(const std::string& folder) const;

 private:
  std::map<std::string, std::string> texts_;
  std::map<std::string, MadePackage> packages_;
  std::map<std::string, std::string> links_;
  std::vector<std::string> labels_;
};

/// The findings as "QX105 disc1/product.ini:7", in the order in which they are told.
std::vector<std::string> FindingsOf(const TestMedia& media, const std::string& codePage = "1252");

/// A file of the project.
std::string SourceText(const std::string& path);

}  // namespace qxia
