#include "app/qxia/logs/fleet.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <thread>
#include <tuple>

#include "app/qxia/logs/package_log.h"
#include "app/qxia/logs/record.h"
#include "app/qxia/logs/text_files.h"
#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

namespace fs = std::filesystem;

/// One file of a machine, and what it told.
struct Collected {
  std::string path;
  bool isRecord = false;
  std::vector<LoggedRun> runs;
  std::vector<RecordedProduct> records;
  std::string problem;
  bool isForeign = false;
};

struct Machine {
  std::string name;
  std::vector<Collected> files;
};

std::vector<fs::directory_entry> SortedEntries(const fs::path& folder) {
  std::error_code failure;
  std::vector<fs::directory_entry> entries;
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure))
    entries.push_back(*entry);
  if (failure) throw std::runtime_error(folder.string() + " cannot be read (" + failure.message() + ")");
  std::sort(entries.begin(), entries.end());
  return entries;
}

bool IsFolder(const fs::directory_entry& entry) {
  return entry.symlink_status().type() == fs::file_type::directory;
}

/// Logs and records in the folder and below it.
void Collect(const fs::path& folder, Machine& machine, std::vector<Problem>& problems) {
  try {
    for (const fs::directory_entry& entry : SortedEntries(folder)) {
      const std::string path = entry.path().string();
      const bool isRecord = simulated::EndsWithText(path, ".reg");
      if (IsFolder(entry)) {
        Collect(entry.path(), machine, problems);
      } else if (entry.symlink_status().type() == fs::file_type::regular &&
                 (isRecord || simulated::EndsWithText(path, ".html"))) {
        machine.files.push_back({path, isRecord, {}, {}, "", false});
      }
    }
  } catch (const std::runtime_error& failure) {
    problems.push_back({folder.string(), failure.what()});
  }
}

void ReadLogOf(Collected& file) {
  const std::string text = ReadWholeFile(file.path);
  ReadLog log = ReadLogText(text);
  if (text.find_first_not_of('\0') == std::string::npos) {
    file.problem = file.path + " is empty";
  } else if (log.runs.empty()) {
    file.isForeign = true;
  } else if (log.brokenLine != 0) {
    file.problem = file.path + " is damaged or cut off: line " + std::to_string(log.brokenLine) +
                   " is no whole row; the others were read";
  }
  file.runs = std::move(log.runs);
}

void ReadOne(Collected& file) {
  try {
    if (file.isRecord) {
      file.records = ReadRecords(file.path);
    } else {
      ReadLogOf(file);
    }
  } catch (const std::exception& failure) {
    file.problem = failure.what();
  }
}

void ReadAll(std::vector<Machine>& machines) {
  std::vector<Collected*> files;
  for (Machine& machine : machines)
    for (Collected& file : machine.files) files.push_back(&file);
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t at = next++; at < files.size(); at = next++) ReadOne(*files[at]);
  };
  constexpr unsigned mostThreads = 8;
  std::vector<std::thread> threads;
  for (unsigned i = 1; i < std::min(std::max(1U, std::thread::hardware_concurrency()), mostThreads); ++i)
    threads.emplace_back(work);
  work();
  for (std::thread& thread : threads) thread.join();
}

/// The newest run of each product, by the product's name in small letters.
using NewestRuns = std::map<std::string, FleetRun>;

std::string KeyOf(const std::string& product) {
  return simulated::Lower(ToUtf8(product));
}

void TakeNewest(NewestRuns& newest, FleetRun run) {
  FleetRun& known = newest[KeyOf(run.run.product.name)];
  if (known.file.empty() || run.run.lastTime > known.run.lastTime) known = std::move(run);
}

/// A start that ended before it knew its product counts only as the last thing that happened.
void DropOlderStarts(NewestRuns& newest) {
  const auto unknown = newest.find("");
  if (unknown == newest.end()) return;
  const bool isLast = std::all_of(newest.begin(), newest.end(), [&](const auto& entry) {
    return entry.second.run.lastTime <= unknown->second.run.lastTime;
  });
  if (!isLast) newest.erase(unknown);
}

NewestRuns FindNewest(Machine& machine) {
  NewestRuns newest;
  for (Collected& file : machine.files)
    for (LoggedRun& run : file.runs) TakeNewest(newest, {machine.name, file.path, "", std::move(run)});
  for (const Collected& file : machine.files) {
    for (const RecordedProduct& record : file.records) {
      const auto known = newest.find(KeyOf(record.name));
      if (known == newest.end()) {
        TakeNewest(newest, {machine.name, file.path, "", RunOf(record)});
      } else {
        TakeOver(record, known->second.run);
      }
    }
  }
  DropOlderStarts(newest);
  return newest;
}

void AddMachine(Machine& machine, Fleet& fleet) {
  NewestRuns newest = FindNewest(machine);
  for (Collected& file : machine.files) {
    if (!file.problem.empty()) fleet.problems.push_back({file.path, file.problem});
    if (file.isForeign) fleet.passedOver.push_back(file.path);
  }
  for (auto& [product, run] : newest) {
    for (std::string& problem : FindPackageLogs(run.file, run.run)) fleet.problems.push_back({run.file, problem});
    run.outcome = OutcomeOf(run.run);
    fleet.runs.push_back(std::move(run));
  }
  if (newest.empty()) fleet.runs.push_back({machine.name, "", Unreadable, {}});
}

/// A failure as it is grouped.
using FailureKey = std::tuple<std::string, std::string, std::string>;
using FailureGroups = std::map<FailureKey, FleetFailure>;

void AddFailure(FailureGroups& groups, const FleetRun& run, const std::string& component, const std::string& reason,
                const PackageLog& log) {
  const std::string product = ToUtf8(run.run.product.name);
  FleetFailure& group = groups[{product, component, reason}];
  group.product = product;
  group.component = component;
  group.reason = reason;
  group.newest = std::max(group.newest, run.run.lastTime);
  group.machines.push_back(run.machine);
  if (group.packageLog.line == 0) group.packageLog = log;
}

void AddFailuresOf(FailureGroups& groups, const FleetRun& run) {
  bool ofComponents = false;
  for (const LoggedComponent& component : run.run.components) {
    if (component.outcome != Outcome::Failed) continue;
    ofComponents = true;
    AddFailure(groups, run, ToUtf8(component.name), ToUtf8(component.reason), component.packageLog);
  }
  if (ofComponents || run.outcome != "failed") return;
  for (const std::string& reason : run.run.product.reasons) AddFailure(groups, run, "", ToUtf8(reason), {});
}

std::vector<FleetFailure> GroupFailures(const std::vector<FleetRun>& runs) {
  std::vector<const FleetRun*> newestFirst;
  newestFirst.reserve(runs.size());
  for (const FleetRun& run : runs) newestFirst.push_back(&run);
  std::stable_sort(newestFirst.begin(), newestFirst.end(),
                   [](const FleetRun* a, const FleetRun* b) { return a->run.lastTime > b->run.lastTime; });
  FailureGroups groups;
  for (const FleetRun* run : newestFirst) AddFailuresOf(groups, *run);
  std::vector<FleetFailure> failures;
  failures.reserve(groups.size());
  for (auto& [key, failure] : groups) failures.push_back(std::move(failure));
  std::stable_sort(failures.begin(), failures.end(),
                   [](const FleetFailure& a, const FleetFailure& b) { return a.newest > b.newest; });
  return failures;
}

}  // namespace

Fleet ReadFleet(const std::string& folder) {
  Fleet fleet;
  std::vector<Machine> machines;
  for (const fs::directory_entry& entry : SortedEntries(folder)) {
    if (!IsFolder(entry)) continue;
    machines.push_back({entry.path().filename().string(), {}});
    Collect(entry.path(), machines.back(), fleet.problems);
  }
  ReadAll(machines);
  fleet.machines = machines.size();
  for (Machine& machine : machines) AddMachine(machine, fleet);
  fleet.failures = GroupFailures(fleet.runs);
  return fleet;
}

std::string ProductOf(const FleetRun& run) {
  const ProductResult& product = run.run.product;
  const std::string name = product.name.empty() ? "no product known" : ToUtf8(product.name);
  const std::string version = product.version.empty() ? "" : " " + ToUtf8(product.version);
  return name + version + (run.run.direction == Direction::Uninstall ? ", uninstall" : "");
}

}  // namespace qxia::logs
