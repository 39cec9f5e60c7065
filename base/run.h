// The one run: what it works with, what it was told, what it installs and where it stands. Made by RunProgram
// (core/program), passed by reference, never copied. Procedures are handed the part that they need. Only the steps of
// core/ change it, and the few below them that take it changeable: the product's result, the shares that apply, and an
// uninstall.
#pragma once

#include <string>
#include <vector>

#include "base/app_log.h"
#include "base/code_page.h"
#include "base/file_system.h"
#include "base/identity.h"
#include "base/ini.h"
#include "base/log_setup.h"
#include "base/main_window.h"
#include "base/product_record.h"
#include "base/services.h"
#include "base/share_paths.h"
#include "platform/platform.h"

namespace assistant {

/// What the command line says. It stays as it is once it is read.
struct Options {
  std::string argumentText;      ///< without the program's own path
  std::string uninstallProduct;  ///< of an uninstall; "" until it is known
};

/// The two ini files that a run starts from; "" for one that is not known.
struct IniPaths {
  std::string application;
  std::string product;
};

/// What the forced lists of the application ini name.
struct ForcedLists {
  std::vector<std::string> uninstall;  ///< entries of [ForceUninstall]
  std::vector<std::string> remove;     ///< paths of [ForceDelete]
};

/// What is installed or removed, and the files that it comes from.
struct Product {
  std::string name;
  std::string numberOfLoops;
  std::string endMessage;
  IniPaths inis;
  std::string packageRoot;
  Shares shares;
  ForcedLists forced;
  std::string nextVolume;  ///< disc that the run goes on with; "" when this is the last
  char discDrive = 0;      ///< drive of a further disc; 0 while none was changed
};

/// One row of the drive table.
struct DriveRow {
  char letter;
  double freeBytes;
};

/// What this machine is. Its type and its system are learned when they are first asked for.
struct MachineFacts {
  std::string operatingSystem;
  std::string serverType;
  std::vector<DriveRow> drives;
};

enum class RunKind { Fresh, Resumed, Uninstall };

/// Where a run stands. The window's buttons mean what the phase says.
enum class Phase {
  Preparing,  ///< from the start to the first question
  Waiting,    ///< an interactive run waits for Continue
  Working,
  Ended,  ///< an interactive run shows how it went
};

/// How far a run has come and how it goes.
struct RunState {
  RunKind kind = RunKind::Fresh;
  Phase phase = Phase::Preparing;
  bool silent = false;           ///< as asked for, or as the first start was; also once nobody is there any more
  bool verbose = false;          ///< as asked for, or as the first start was
  std::string restartArguments;  ///< with which the program is started again behind a restart
  bool failed = false;           ///< the product's result as this run set it
  std::string failureReasons;    ///< one a line
  bool aborted = false;          ///< a failed component ended the loop
  bool cancelled = false;        ///< a person ended the run
  bool sessionEnded = false;     ///< the session ended before the work or behind it, and the run has closed down
  bool localInstance = false;    ///< this is the local copy of a product on several discs
  bool requestsAreOwn = false;   ///< "Reboot" was emptied at the start: what it says was asked for in this run
  bool removalBegan = false;     ///< of an uninstall: until then the product's record stays as it was
  std::string askedFor;          ///< product of this start, where the pending restart of another one goes on; else ""
  std::string mappedDrive;       ///< drive mapped for this run, with its colon
  std::string programToRemove;   ///< local copy of the program that no product needs any more
};

/// How a run treats people, in its windows and in its log.
struct Manner {
  bool silent;
  bool verbose;
};

struct Run {
  explicit Run(platform::Platform& platform);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  platform::Platform& machine;

 private:
  // Before everything that is made of paths.
  CodePageInUse codePage_;

 public:
  const ProgramFile program;
  Options options;
  Product product;
  mutable MachineFacts facts;
  LogFolders logFolders;
  RunState state;

  bool isUninstall() const { return state.kind == RunKind::Uninstall; }

  /// The record of the product in work.
  ProductRecord record() const { return {services, product.name}; }
  modINI::IniFile ini(const std::string& path) const {
    return {machine.files(), services.log, path, &services.refusals};
  }
  modINI::IniFile applicationIni() const { return ini(product.inis.application); }
  modINI::IniFile productIni() const { return ini(product.inis.product); }
  ShareResolver shareResolver() const { return {machine.registry(), services.log, product.shares}; }

 private:
  clsFso fso_;
  frmMain window_;
  clsAppLog log_;
  Refusals refusals_;

 public:
  const Services services{machine, fso_, window_, log_, refusals_};
};

void BehaveAs(Run& run, const Manner& manner);

}  // namespace assistant
