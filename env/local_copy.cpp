#include "env/local_copy.h"

#include <algorithm>
#include <vector>

#include "base/numbers.h"
#include "base/product_record.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/process.h"

namespace assistant {
namespace {

constexpr int DelayMinutes = 2;
constexpr int MinutesOfDay = 24 * 60;

/// Systems before Windows 2000 have the folder, but not the variable.
std::string ProgramFiles(platform::Machine& machine) {
  const std::string folder = machine.environment("ProgramFiles");
  return folder.empty() ? machine.windowsFolder().substr(0, 1) + ":\\Program Files" : folder;
}

/// Where a new copy is written until it is whole. A cut can leave it behind.
std::string UnfinishedCopy(const std::string& program) {
  return program + ".new";
}

void DropUnfinishedCopy(const Services& services, const std::string& program) {
  const std::string unfinished = UnfinishedCopy(program);
  if (services.fso.fileIsGone(unfinished)) return;
  services.machine.files().setAttributes(unfinished, {});
  services.machine.files().deleteFile(unfinished);
}

}  // namespace

std::string LocalFolder(platform::Machine& machine) {
  return ProgramFiles(machine) + "\\Tarvel\\Installation\\" + Title;
}

std::string LocalProgram(platform::Machine& machine, const ProgramFile& program) {
  return LocalFolder(machine) + "\\" + program.name + ".exe";
}

bool IsLocalCopyNeeded(platform::RegistryReader& registry, const std::string& localProgram, const std::string& except) {
  const auto needs = [&](const char* list, const auto& isUser) {
    const std::vector<std::string> names = modRegistry::SubKeys(registry, list);
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& name) { return !EqualIgnoringCase(name, except) && isUser(name); });
  };
  return needs(ProductsKey,
               [&](const std::string& product) {
                 return modRegistry::RegKeyExists(registry, ProductKey(product), Value::CanUninstall.name);
               }) ||
         needs(RemovableProgramsKey, [&](const std::string& program) {
           const std::string key = std::string(RemovableProgramsKey) + "\\" + program;
           const std::string command = modRegistry::ReadOrEmpty(registry, key, "UninstallString");
           return StartsWithIgnoringCase(command, localProgram) || StartsWithIgnoringCase(command, "\"" + localProgram);
         });
}

void CreateLocalFolder(const Services& services, const Procedure& here) {
  const std::string folder = LocalFolder(services.machine.machine());
  if (services.fso.folderExists(folder)) return;
  if (!services.fso.driveExists(folder.front())) {
    throw here.failure("Cannot create the path as drive " + folder.substr(0, 1) + ": is missing");
  }
  services.fso.createFolder(folder);
}

void CopyProgramToLocalFolder(const Services& services, const ProgramFile& program) {
  const std::string running = program.folder + "\\" + program.name + ".exe";
  const std::string copy = LocalProgram(services.machine.machine(), program);
  if (EqualIgnoringCase(running, copy)) return;
  const std::string unfinished = UnfinishedCopy(copy);
  try {
    // What comes from a disc is read-only, and could not be deleted again if it stayed so.
    services.fso.copyFileAnew(running, unfinished);
    services.fso.moveFileOver(unfinished, copy);
  } catch (const Error&) {
    // Whoever needs the copy tells of it; what there is of the new one is of no use.
    DropUnfinishedCopy(services, copy);
    throw;
  }
}

void ScheduleRemoval(const Services& services, const Procedure& here, const std::string& file) {
  DropUnfinishedCopy(services, file);
  here.action("Setting task to remove local IA .exe");
  const std::string command =
      RemovalCommand(services.machine.clock().now(), services.machine.machine().environment("SystemRoot"), file);
  here.action("Task Scheduler command: " + command);
  const auto result = RunSystemCommand(services, {command, command, SchedulerSeconds});
  if (result) here.action("Task Scheduler command returned " + std::to_string(*result));
}

std::string RemovalCommand(const platform::LocalTime& now, const std::string& systemRoot, const std::string& file) {
  const int minutes = (now.hour * 60 + now.minute + DelayMinutes) % MinutesOfDay;
  return "AT " + Padded(minutes / 60, 2) + ":" + Padded(minutes % 60, 2) + " " + systemRoot +
         "\\System32\\cmd.exe /c del " + Quoted(file);
}

}  // namespace assistant
