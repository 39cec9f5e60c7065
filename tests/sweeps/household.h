// Five products that share components, and somebody who installs and uninstalls them.
#pragma once

#include <string>
#include <vector>

#include "tests/sweeps/person.h"
#include "tests/sweeps/snapshot.h"

namespace sweeps {

/// What a product is made of; components of one name are the same in all products.
struct Suite {
  const char* name;
  std::vector<std::string> components;
  bool isListed;      ///< in the system's list of programs
  bool asksPassword;  ///< switches automatic logon on
};

extern const std::vector<Suite> Suites;

class Household {
 public:
  explicit Household(const char* system);

  /// One try; true when the program tells success, and that of this product.
  bool install(const Suite& suite);
  bool uninstall(const Suite& suite);
  bool isGone(const Suite& suite) { return IsGone(rig_, suite.name); }

  Person& person() { return person_; }
  Snapshot look() { return Look(rig_); }
  const Snapshot& beginning() const { return beginning_; }

 private:
  void writeMedium(const Suite& suite);
  std::string writeComponent(const Suite& suite, const std::string& name);
  void declareComponents();

  Rig rig_;
  Person person_;
  Snapshot beginning_;
};

}  // namespace sweeps
