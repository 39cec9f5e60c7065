#include "app/qxia/rehearse/sweep.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "app/qxia/rehearse/run.h"
#include "base/product_record.h"
#include "core/program.h"
#include "platform/faults/platform.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

/// Values and files that tell when something happened, or how the run went on its way.
constexpr const char* TimedValues[] = {"Install Date", "NumberOfLoops"};
constexpr const char* LogEndings[] = {".html", ".log", "IAStartupLog.txt"};

bool IsLog(const std::string& path) {
  return std::any_of(std::begin(LogEndings), std::end(LogEndings),
                     [&](const char* ending) { return simulated::EndsWithText(path, ending); });
}

bool IsTimed(const std::string& value) {
  return std::any_of(std::begin(TimedValues), std::end(TimedValues),
                     [&](const char* name) { return simulated::SameText(value, name); });
}

/// The end of a rehearsal as lines that can be compared.
std::vector<std::string> Lines(simulated::Workstation& machine, const Played& played) {
  std::vector<std::string> lines = {"exit code " + std::to_string(played.exitCode)};
  if (!played.unfinished.empty()) lines.push_back("not finished: " + played.unfinished);
  const Snapshot snapshot = TakeSnapshot(machine);
  for (const auto& [place, data] : snapshot.registry)
    // A value that is there with nothing in it reads like one that is not there.
    if (!IsTimed(place.second) && !data.empty())
      lines.push_back("registry " + place.first + "\\" + place.second + "=" + data);
  for (const auto& [path, digest] : snapshot.files)
    if (!IsLog(path)) lines.push_back("file " + path + " " + digest);
  std::sort(lines.begin(), lines.end());
  return lines;
}

/// What one of them has and the other lacks, shortened.
std::string Compared(const std::vector<std::string>& expected, const std::vector<std::string>& got) {
  constexpr std::size_t most = 3;
  std::vector<std::string> missing;
  std::vector<std::string> more;
  std::set_difference(expected.begin(), expected.end(), got.begin(), got.end(), std::back_inserter(missing));
  std::set_difference(got.begin(), got.end(), expected.begin(), expected.end(), std::back_inserter(more));
  std::string text;
  for (const auto& [sign, lines] : {std::pair{"without ", &missing}, std::pair{"with ", &more}})
    for (std::size_t i = 0; i < lines->size() && i < most; ++i)
      text += (text.empty() ? "" : "; ") + std::string(sign) + (*lines)[i].substr(0, 160);
  return text;
}

bool HoldsMarkOfCopy(const simulated::Registry& registry) {
  const std::string products = std::string("HKEY_LOCAL_MACHINE\\") + assistant::ProductsKey;
  return registry.find(products, assistant::Value::LocalInstance.name) != nullptr;
}

/// Counts the operations of all runs of one rehearsal, and lets one of them go wrong.
class Saboteur {
 public:
  Saboteur(Workplace& workplace, Fault fault, int point) : workplace_(workplace), fault_(fault), point_(point) {}

  int run(simulated::Workstation& machine) {
    faults::Platform faulty(machine);
    const int here = point_ - static_cast<int>(history_.size());
    if (here > 0 && fault_ == Fault::PowerCut) faulty.faults().cutPowerBefore(here);
    if (here > 0 && fault_ == Fault::Failure) faulty.faults().failAt(here, platform::Status::AccessDenied);
    try {
      const int exitCode = assistant::RunProgram(faulty);
      keep(faulty.faults().history());
      return exitCode;
    } catch (const faults::PowerLoss&) {
      point_ = 0;
      machine.journal().record("power cut");
      if (!LogOnAgain(machine)) startByHand(machine);
      return run(machine);
    }
  }
  const std::vector<std::string>& history() const { return history_; }

 private:
  /// A start that finds the mark of a local copy which was cut off says so and removes it. Whoever reads that starts
  /// the program again.
  void startByHand(simulated::Workstation& machine) {
    workplace_.startAfresh();
    if (!HoldsMarkOfCopy(machine.registry())) return;
    run(machine);
    workplace_.startAfresh();
  }

  void keep(const std::vector<std::string>& history) {
    history_.insert(history_.end(), history.begin(), history.end());
  }

  Workplace& workplace_;
  Fault fault_;
  int point_;
  std::vector<std::string> history_;
};

std::string NameOfOperation(const std::string& operation) {
  return operation.substr(0, operation.find(' '));
}

int Positive(const std::string& text, const std::string& asked) {
  char* end = nullptr;
  const long number = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || number < 1) throw UsageError(asked + ": write each, or a number from 1 on");
  return static_cast<int>(number);
}

}  // namespace

struct Sweep::End {
  std::vector<std::string> lines;
  std::vector<std::string> history;
  std::string unfinished;
};

Sweep::Sweep(const RehearsalSettings& settings, std::string machineFile, std::string folder)
    : settings_(settings), machineFile_(std::move(machineFile)), folder_(std::move(folder)) {
  const End uncut = play(Fault::PowerCut, 0);
  if (!uncut.unfinished.empty()) throw UsageError("without any fault the run does not end: " + uncut.unfinished);
  operations_ = uncut.history;
  uncut_ = uncut.lines;
}

Sweep::End Sweep::play(Fault fault, int point) const {
  const std::string folder = folder_ + "/point";
  std::filesystem::remove_all(folder);
  Workplace workplace(folder, {settings_.media, settings_.at, settings_.arguments, machineFile_, settings_.systems[0]});
  Saboteur saboteur(workplace, fault, point);
  const RunOnce once = [&](simulated::Workstation& machine) { return saboteur.run(machine); };
  Played played = Play(workplace, settings_.limits, once);
  std::vector<std::string> lines = Lines(workplace.machine(), played);
  // Whoever sees a run fail starts it again.
  if (fault == Fault::Failure && point > 0 && lines != uncut_) {
    workplace.startAfresh();
    played = Play(workplace, settings_.limits, RunTheProgram);
    lines = Lines(workplace.machine(), played);
  }
  return {lines, saboteur.history(), played.unfinished};
}

std::vector<int> Sweep::pointsToCut(const std::string& asked) const {
  const auto last = static_cast<int>(operations_.size());
  if (asked != "each") {
    const int point = Positive(asked, "--cut-power " + asked);
    if (point > last) throw UsageError("--cut-power " + asked + ": the run has " + std::to_string(last) + " points");
    return {point};
  }
  std::vector<int> points;
  for (int point = 1; point <= last; ++point) points.push_back(point);
  return points;
}

std::vector<int> Sweep::pointsToFail(const std::string& asked) const {
  if (asked == "each") return pointsToCut(asked);
  const std::size_t colon = asked.find(':');
  const std::string name = asked.substr(0, colon);
  const int only = colon == std::string::npos ? 0 : Positive(asked.substr(colon + 1), "--fail " + asked);
  std::vector<int> points;
  int count = 0;
  for (std::size_t i = 0; i < operations_.size(); ++i) {
    if (NameOfOperation(operations_[i]) != name) continue;
    if (only == 0 || ++count == only) points.push_back(static_cast<int>(i) + 1);
    if (only != 0 && count == only) break;
  }
  if (points.empty()) throw UsageError("--fail " + asked + ": the run has no such operation; --fail list prints them");
  return points;
}

SweepResult Sweep::run(Fault fault, const std::vector<int>& points, const std::function<void(int)>& progress) const {
  SweepResult result;
  for (const int point : points) {
    progress(++result.points);
    const End end = play(fault, point);
    if (end.lines == uncut_) continue;
    const auto index = static_cast<std::size_t>(point) - 1;
    result.failed.push_back({point, operations_[index], Compared(uncut_, end.lines)});
  }
  return result;
}

std::string ListOperations(const std::vector<std::string>& operations) {
  std::map<std::string, int> counts;
  for (const std::string& operation : operations) ++counts[NameOfOperation(operation)];
  std::string text;
  for (const auto& [name, count] : counts) text += name + " " + std::to_string(count) + "\n";
  return text;
}

nlohmann::json ToJson(const SweepResult& result) {
  nlohmann::json failed = nlohmann::json::array();
  for (const SweepPoint& point : result.failed)
    failed.push_back({{"point", point.number}, {"operation", ToUtf8(point.operation)}, {"left", ToUtf8(point.left)}});
  return {{"format", 1}, {"points", result.points}, {"failed", failed}};
}

}  // namespace qxia
