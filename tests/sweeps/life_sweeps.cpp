// The life of a product, with one operation refused, and with the power cut, at every operation that changes something.

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

#include "platform/simulated/text.h"
#include "tests/sweeps/life.h"
#include "tests/sweeps/scope.h"

namespace sweeps {
namespace {

using Lines = std::vector<std::string>;

class Lives : public testing::TestWithParam<Family> {};

/// A life in which nothing goes wrong: what happens in it, and how the machine is after each job.
struct Reference {
  explicit Reference(const Family& family) {
    Life life(family);
    for (const Job& job : life.jobs()) {
      const End end = life.attempt(job);
      EXPECT_TRUE(end.known && end.toldSuccess) << family.name << " " << job.name << " " << end.exitCode;
      after.push_back(life.look());
      readsUpTo.push_back(life.person().readHistory().size());
    }
    EXPECT_EQ(life.person().broken(), Lines());
    history = life.person().history();
    reads = life.person().readHistory();
    told = life.person().told();
    EXPECT_EQ(Without(Difference(life.beginning(), after.back()), Stays), Lines()) << family.name;
  }

  /// Numbers of the reads of the life, each kind of it once in each job, as what is read again is read the same way;
  /// but for files, which are read anew for each key of theirs. What a program of the run's own returned is left out:
  /// no machine refuses to tell that.
  std::vector<int> distinctReads() const {
    std::vector<int> numbers;
    std::size_t at = 0;
    for (const std::size_t end : readsUpTo) {
      std::set<std::string> seen;
      for (; at < end; ++at)
        if (isRefused(reads[at], seen)) numbers.push_back(static_cast<int>(at) + 1);
    }
    return numbers;
  }

  static bool isRefused(const std::string& read, std::set<std::string>& seen) {
    if (Fits(read, "processes.*")) return false;
    return seen.insert(read).second || Fits(read, "files.read *");
  }

  Lines history;
  Lines reads;
  std::vector<std::size_t> readsUpTo;
  std::set<std::string> told;
  std::vector<Snapshot> after;
};

/// Writes of the log itself, which cannot be told in it.
bool IsLogWrite(const std::string& operation) {
  return Fits(operation, "files.openForAppending *.html") || Fits(operation, "files.write *.html") ||
         Fits(operation, "files.openForAppending *IAStartupLog.txt") ||
         Fits(operation, "files.write *IAStartupLog.txt") || Fits(operation, "files.deleteFile *IAStartupLog.txt");
}

std::string LastElement(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);
}

/// The last element of what an operation is about; the operation itself where it names nothing.
std::string LastTarget(const std::string& operation) {
  std::string target = operation.substr(operation.find(' ') + 1);
  if (!target.empty() && target.back() == '\\') target.pop_back();
  return target.empty() ? operation : LastElement(target);
}

/// Refusals that no row tells of, and why that is so. What stands before the operation is the family and the program.
const std::vector<Allowed> Untold = {
    {"Of95 D:\\QX Installation Assistant.exe registry.createKey Software\\Tarvel\\Installation\\Products",
     "before the log is known, a silent run from a disc has neither a log nor an event log; its exit code tells"},
    {"Of95 D:\\QX Installation Assistant.exe registry.setValue Software\\Tarvel\\Installation\\Products\\Silent",
     "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.setValue Software\\Tarvel\\Installation\\Products\\Process "
     "Return",
     "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.setValue "
     "Software\\Tarvel\\Installation\\Products\\QXIALocalInstall",
     "the same"},
    {"Of95 D:\\QX Installation Assistant.exe files.createFolder C:\\Program Files\\Tarvel*", "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.openKey Software\\Tarvel\\Installation", "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.openKey Software\\Tarvel\\Installation\\Products", "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.queryValue Software\\Tarvel\\Installation\\Reboot", "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.queryValue "
     "Software\\Tarvel\\Installation\\Products\\Rebooted",
     "the same"},
    {"Of95 D:\\QX Installation Assistant.exe registry.queryValue "
     "Software\\Tarvel\\Installation\\Products\\QXIALocalInstall",
     "the same"},
    {"Of95 D:\\QX Installation Assistant.exe files.attributes D:\\QX Installation Assistant.ini", "the same"},
    {"Of95 D:\\QX Installation Assistant.exe files.read D:\\*.ini", "the same; the other families are held to the row"},
};

/// Rows whose texts are settled and tell of a read in other words than its target, and what they are.
struct SettledRow {
  const char* read;
  const char* row;
};
constexpr SettledRow SettledRows[] = {
    // Error 6162, which tells the system's number in place of the key.
    {"registry.*", "RegOpenKeyEx API Call failed, returning "},
    // The path stands in the row in front of it, which is none of an error.
    {"files.attributes *QX Installation Assistant.ini", "Failed to find application ini file."},
    {"files.attributes *product.ini", "Failed to find a product ini file."},
    // They name the package; the operation goes by a handle.
    {"installer.openProperties*", "Could not open MSI database view for "},
    {"installer.executeView*", "Could not execute view for "},
    {"installer.nextProperty*", "Could not execute view for "},
    {"installer.enumerateProduct*", "The list of installed products broke off"},
    {"power.enableShutdownPrivilege*", "could not be restarted"},
    // What lies below a root that cannot be seen is not there either.
    {"files.attributes D:\\Packages*", " could not be found"},
    // docs/registry-reference.md, "Asking for a restart": the run must be started by hand.
    {"files.attributes *StartUp", "The environment variable UserProfile is missing"},
};

/// By what a row can name the target of an operation.
Lines NamesOf(const std::string& operation) {
  // What is below a key goes with it, and is told under its name.
  if (Fits(operation, "registry.deleteKey *\\Office Suite\\*")) return {"Office Suite"};
  for (const SettledRow& row : SettledRows)
    if (Fits(operation, row.read)) return {row.row, LastTarget(operation)};
  std::string target = operation.substr(operation.find(' ') + 1);
  if (!target.empty() && target.back() == '\\') target.pop_back();
  if (target.empty()) return {operation.substr(0, operation.find(' '))};
  if (Fits(operation, "installer.productInformation *")) return {target.substr(0, target.find(' '))};
  if (Fits(operation, "power.*")) return {"restarted"};
  if (Fits(operation, "processes.start *")) {
    const std::size_t quote = target.find('"', 1);
    return {target[0] == '"' ? LastElement(target.substr(1, quote - 1)) : target.substr(0, target.find(' '))};
  }
  const std::size_t arrow = target.find(" -> ");
  if (arrow == std::string::npos) return {LastElement(target)};
  return {LastElement(target.substr(0, arrow)), LastElement(target.substr(arrow + 4))};
}

bool IsNamed(const std::string& operation, const std::set<std::string>& told, const std::set<std::string>& usual) {
  const Lines names = NamesOf(operation);
  return std::any_of(told.begin(), told.end(), [&](const std::string& row) {
    return usual.count(row) == 0 && std::any_of(names.begin(), names.end(), [&](const std::string& name) {
             return simulated::ContainsText(row, name);
           });
  });
}

/// What a life with trouble in it showed that may not be.
class Findings {
 public:
  Findings(const Family& family, int number) : where_(std::string(family.name) + " " + std::to_string(number)) {}

  void add(const std::string& what) { ADD_FAILURE() << where_ << " " << hit_ << ": " << what; }
  void addAll(const std::string& what, const Lines& lines) {
    if (lines.empty()) return;
    std::string text = what;
    for (std::size_t i = 0; i < lines.size() && i < 8; ++i) text += "\n    " + lines[i];
    add(text);
  }
  void tellHit(const std::string& hit) { hit_ = hit; }

 private:
  std::string where_;
  std::string hit_;
};

/// What stays undone by a refusal of that operation although success is told, and why that is settled so. Each has an
/// error row.
struct SettledAsSuccess {
  const char* refused;
  std::vector<Allowed> undone;
};

/// Made when it is asked for: a part of it is made elsewhere.
std::vector<SettledAsSuccess> Settled() {
  return {
      // docs/ini-reference.md, "How a component reports its result": the exit code of a batch file never counts.
      {"processes.start *.bat*",
       {{"-file C:\\Suite\\*Last*", "what the batch file would have made"},
        {"+file C:\\Suite\\*Last*", "what it would have replaced"}}},
      // docs/uninstalling.md, "Old software that stands in the way": what is deleted by force fails no installation.
      {"files.deleteFile C:\\Old\\*", {{"+file C:\\Old\\*", "what could not be deleted"}}},
      {"processes.start AT *", StaysWithoutScheduler},
      // A package's name and version are for the log and for comparisons: a warning tells of each that cannot be read.
      {"installer.propertyValue *", {{"-value *\\ProductName=*", "unread"}, {"-value *\\ProductVersion=*", "unread"}}},
  };
}

/// The lines of a difference that nothing allows in this life.
Lines NotAllowed(Life& life, const Snapshot& wanted, const std::vector<Allowed>& allowed) {
  Lines lines = Without(Difference(wanted, life.look()), allowed);
  for (const SettledAsSuccess& settled : Settled())
    if (Fits(life.person().hit(), settled.refused)) lines = Without(lines, settled.undone);
  return lines;
}

/// The job during which the operation was refused: never a success with something undone, and a row that names it.
void CheckRefused(Life& life, const Reference& reference, std::size_t job, const End& end, Findings& findings) {
  const Person& person = life.person();
  const bool succeeded = end.known && end.toldSuccess;
  const Lines undone = NotAllowed(life, reference.after[job], Differs);
  if (succeeded) findings.addAll("success was told, with something undone", undone);
  const std::string where = std::string(life.family().name) + " " + person.hitProgram() + " " + person.hit();
  if (!IsNamed(person.hit(), person.told(), reference.told) && !Without({where}, Untold).empty()) {
    findings.add(std::string("no row names it; ") +
                 (succeeded ? "success" : "exit code " + std::to_string(end.exitCode)));
  }
}

/// What could not be read may be nothing that matters: then all is as it is without that. Otherwise it is no success,
/// and a row names what it was.
void CheckUnreadable(Life& life, const Reference& reference, std::size_t job, const End& end, Findings& findings,
                     int& unseen) {
  const Person& person = life.person();
  const bool succeeded = end.known && end.toldSuccess;
  if (succeeded)
    findings.addAll("success was told, with something undone", NotAllowed(life, reference.after[job], Differs));
  const bool isNamed = IsNamed(person.hit(), person.told(), reference.told);
  if (succeeded && !isNamed) ++unseen;
  const std::string where = std::string(life.family().name) + " " + person.hitProgram() + " " + person.hit();
  if (succeeded || isNamed || Without({where}, Untold).empty()) return;
  Lines rows;
  for (const std::string& row : person.told())
    if (reference.told.count(row) == 0) rows.push_back(row.substr(0, 200));
  findings.addAll("no row names it; exit code " + std::to_string(end.exitCode), rows.empty() ? Lines{"none"} : rows);
}

/// Leads the life to its end, whatever is done again for it.
void LiveOn(Life& life, const Reference& reference, std::size_t job, Findings& findings) {
  if (!life.carryOut(life.jobs()[job])) findings.add(std::string(life.jobs()[job].name) + " does not succeed any more");
  findings.addAll(std::string("differs after ") + life.jobs()[job].name,
                  NotAllowed(life, reference.after[job], Differs));
}

void CheckEnd(Life& life, Findings& findings) {
  for (const std::string& what : life.person().broken()) findings.add(what);
  findings.addAll("left behind", NotAllowed(life, life.beginning(), Stays));
}

/// A life in which one operation is refused. `check` is given the life, its job that met the refusal and how that
/// ended.
template <class Check>
void LiveWithRefusal(const Family& family, const Reference& reference, const Trouble& trouble, Check check) {
  Life life(family, trouble);
  Findings findings(family, trouble.operation);
  for (std::size_t job = 0; job < life.jobs().size(); ++job) {
    const bool before = life.person().hit().empty();
    const End end = life.attempt(life.jobs()[job]);
    const bool hitNow = before && !life.person().hit().empty();
    findings.tellHit(life.person().hit());
    if (hitNow) check(life, job, end, findings);
    if (!end.known || !end.toldSuccess) LiveOn(life, reference, job, findings);
  }
  CheckEnd(life, findings);
}

void LiveWithCut(const Family& family, const Reference& reference, int number) {
  Life life(family, {number, true});
  Findings findings(family, number);
  for (std::size_t job = 0; job < life.jobs().size(); ++job) {
    LiveOn(life, reference, job, findings);
    findings.tellHit(life.person().hit());
  }
  CheckEnd(life, findings);
}

TEST_P(Lives, OneOperationRefused_IsToldAndNothingIsFalselyDone) {
  const Reference reference(GetParam());
  if (HasFailure()) return;
  int refused = 0;
  int logWrites = 0;
  for (int number = Chosen.first; number <= static_cast<int>(reference.history.size()); number += Chosen.every) {
    if (IsLogWrite(reference.history[static_cast<std::size_t>(number) - 1])) {
      ++logWrites;
      continue;
    }
    ++refused;
    LiveWithRefusal(GetParam(), reference, {number},
                    [&](Life& life, std::size_t job, const End& end, Findings& findings) {
                      CheckRefused(life, reference, job, end, findings);
                    });
  }
  std::cout << "figure: " << refused << " operations refused on " << GetParam().system << ", " << logWrites
            << " writes of the log left out\n";
}

TEST_P(Lives, OneReadRefused_IsToldOrChangesNothing) {
  const Reference reference(GetParam());
  if (HasFailure()) return;
  const std::vector<int> numbers = reference.distinctReads();
  int unseen = 0;
  int refused = 0;
  for (std::size_t i = static_cast<std::size_t>(Chosen.first) - 1; i < numbers.size();
       i += static_cast<std::size_t>(Chosen.every), ++refused) {
    LiveWithRefusal(GetParam(), reference, {.operation = numbers[i], .isRead = true},
                    [&](Life& life, std::size_t job, const End& end, Findings& findings) {
                      CheckUnreadable(life, reference, job, end, findings, unseen);
                    });
  }
  std::cout << "figure: " << refused << " of " << reference.reads.size() << " reads refused on " << GetParam().system
            << ", " << unseen << " of them without a row and without a difference\n";
}

TEST_P(Lives, PowerCut_LeavesNothingBehind) {
  const Reference reference(GetParam());
  if (HasFailure()) return;
  int cuts = 0;
  for (int number = Chosen.first; number <= static_cast<int>(reference.history.size()); number += Chosen.every) {
    ++cuts;
    LiveWithCut(GetParam(), reference, number);
  }
  std::cout << "figure: " << cuts << " power cuts on " << GetParam().system << "\n";
}

INSTANTIATE_TEST_SUITE_P(Family, Lives, testing::ValuesIn(Families),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace sweeps
