// One life of a product as data: it is installed from two discs with two restarts, upgraded from a third, and
// uninstalled.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/sweeps/person.h"
#include "tests/sweeps/snapshot.h"

namespace sweeps {

/// A machine of one family of systems, and how its life is led.
struct Family {
  const char* name;
  const char* system;
  bool hasPackages;    ///< Windows Installer is there, and the product has packages
  bool isInteractive;  ///< runs have a window with a person before it
};

inline constexpr Family Families[] = {
    {"Of95", "Windows 98", true, false},
    {"OfOldNT", "Windows NT 4.0", false, false},
    {"OfToday", "Windows XP", true, true},
};

/// What somebody wants done. It is done when the program says so.
struct Job {
  const char* name;
  std::function<Start()> start;
  std::function<bool()> isSeenDone;  ///< a person who looks at the machine sees that nothing is left to be done
};

class Life {
 public:
  explicit Life(const Family& family, const Trouble& trouble = {});

  const std::vector<Job>& jobs() const { return jobs_; }
  /// One try at a job.
  End attempt(const Job& job);
  /// Tries until the program tells success; false when it does not come to that.
  bool carryOut(const Job& job);

  Snapshot look() { return Look(rig_); }
  const Snapshot& beginning() const { return beginning_; }
  const Family& family() const { return family_; }
  Person& person() { return person_; }
  Rig& rig() { return rig_; }

 private:
  void prepareMachine();
  void writeDisc(const std::string& label, const std::string& version, const std::string& lines,
                 const std::vector<std::string>& components);
  void writeComponent(const std::string& name, const std::string& version, std::string& actions);
  void declareDiscs();
  Start install(const std::string& disc);
  Start uninstall();

  const Family family_;
  Rig rig_;
  Person person_;
  std::vector<Job> jobs_;
  Snapshot beginning_;
};

}  // namespace sweeps
