#include "app/qxia/logs/fleet_verb.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "app/qxia/logs/fleet_report.h"
#include "platform/simulated/host.h"

namespace qxia {
namespace {

struct Form {
  const char* name;
  std::string (*write)(const logs::Fleet& fleet);
};

constexpr Form Forms[] = {
    {"text", logs::FleetText}, {"csv", logs::FleetCsv}, {"json", logs::FleetJson}, {"html", logs::FleetPage}};

const Form& ChooseForm(const std::string& name) {
  const auto* form = std::find_if(std::begin(Forms), std::end(Forms), [&](const Form& f) { return name == f.name; });
  if (form == std::end(Forms)) throw UsageError("--format " + name + ": write text, csv, json or html");
  return *form;
}

}  // namespace

int ShowFleet(const Arguments& arguments) {
  const Form& form = ChooseForm(arguments.text("--format", "text"));
  if (arguments.operands().size() != 1)
    throw UsageError("write one DIR: the folder with one sub-folder of logs per machine");
  const std::string& folder = arguments.operands()[0];
  if (!simulated::IsHostFolder(folder)) throw UsageError(folder + " is no folder: write the one with the machines'");
  const logs::Fleet fleet = logs::ReadFleet(folder);
  if (fleet.machines == 0)
    throw UsageError(folder + " has no sub-folders: put the logs of each machine into one with the machine's name");
  std::fputs(form.write(fleet).c_str(), stdout);
  for (const logs::Problem& problem : fleet.problems) std::fprintf(stderr, "qxia: %s\n", problem.text.c_str());
  return fleet.problems.empty() ? 0 : 1;
}

}  // namespace qxia
