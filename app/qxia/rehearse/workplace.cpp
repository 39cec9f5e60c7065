#include "app/qxia/rehearse/workplace.h"

#include <algorithm>
#include <filesystem>

#include "app/qxia/rehearse/stage.h"
#include "platform/simulated/command_line.h"
#include "platform/simulated/declaration.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr char DiscDrive = 'D';
constexpr const char* FormatFile = "/qxia-state";
constexpr const char* Format = "format 1\n";
constexpr const char* DefaultArguments = "/s /v /is=";

/// What the program says where it wants another disc.
constexpr const char* DiscPrompts[] = {"Insert the disk labelled ", "Error - cannot find the disk named "};

/// Makes an empty folder the state of a machine with this system. Raises UsageError for a folder of something else.
void PrepareState(const std::string& folder, const std::string& system) {
  std::error_code failure;
  const std::string format = simulated::ReadHostFile(folder + FormatFile);
  if (format == Format) return;
  if (!format.empty() || (std::filesystem::exists(folder, failure) && !std::filesystem::is_empty(folder, failure)))
    throw UsageError(folder + " is no state of this version of qxia: name an empty folder, or one that is not there");
  simulated::MakeHostFolder(folder);
  simulated::WriteHostFile(folder + FormatFile, Format);
  if (!system.empty())
    simulated::WriteHostFile(folder + "/machine.ini", "[machine]\nsystem=" + system + "\n[drive c]\n");
}

std::string HostPath(const std::string& drive, const std::string& folder) {
  std::string host = drive;
  for (const std::string& name : simulated::Split(folder, '\\'))
    if (!name.empty()) host += "/" + name;
  return host;
}

/// Which of the discs the box asks for; nothing for another box.
const Disc* FindAsked(const std::vector<Disc>& discs, const std::string& text) {
  for (const char* prompt : DiscPrompts) {
    if (!simulated::StartsWithText(text, prompt)) continue;
    const std::string label = text.substr(std::string(prompt).size());
    const auto found = std::find_if(discs.begin(), discs.end(), [&](const Disc& disc) {
      return !disc.label.empty() && simulated::StartsWithText(label, disc.label);
    });
    if (found != discs.end()) return &*found;
  }
  return nullptr;
}

}  // namespace

std::string FirstFolder(const std::string& at) {
  if (at.empty()) return std::string(1, DiscDrive) + ":";
  const bool isFolder = at.size() > 3 && at[1] == ':' && at[2] == '\\';
  if (!isFolder) throw UsageError("--at " + at + ": write a folder of a hard disk, such as --at 'C:\\Media'");
  return at.back() == '\\' ? at.substr(0, at.size() - 1) : at;
}

Workplace::Workplace(const std::string& folder, const WorkplaceSettings& settings) : folder_(folder) {
  PrepareState(folder, settings.system);
  machine_ = std::make_unique<simulated::Workstation>(folder);
  stageDiscs(settings);
  mount(settings);
  // The path that a new machine has is nobody's wish: what the machine file names is.
  if (simulated::Machine& machine = machine_->machine(); machine.programPath() == simulated::Machine().programPath())
    machine.setProgram("", machine.arguments());
  if (!settings.machineFile.empty()) simulated::LoadMachine(settings.machineFile, *machine_);
  if (!settings.system.empty()) machine_->setSystem(settings.system);
  setProgram(settings);
  machine_->screen().setPerson([this](const platform::MessageBoxRequest& request) { return answer(request); });
  machine_->processes().setFallback([this](const std::string& commandLine) { return carryOn(commandLine); });
  machine_->journal().forgetEffects();
}

/// The program's own copy is started by the rehearsal, behind the end of the one that started it.
std::optional<simulated::Outcome> Workplace::carryOn(const std::string& commandLine) {
  const std::vector<std::string> words = simulated::Arguments(commandLine);
  const bool isCopy = !words.empty() && simulated::SameText(simulated::FileName(words[0]), ProgramFileName());
  if (isCopy) copy_ = commandLine;
  if (!isCopy && !permitsEverything_) return std::nullopt;
  simulated::Outcome outcome;
  outcome.milliseconds = 0;
  return outcome;
}

void Workplace::stageDiscs(const WorkplaceSettings& settings) {
  const std::vector<Disc>& discs = settings.media.discs;
  for (std::size_t i = 0; i < discs.size(); ++i) {
    const bool onHardDisk = i == 0 && !settings.at.empty();
    const std::string first = FirstFolder(settings.at);
    const std::string target =
        onHardDisk ? HostPath(machine_->ownFolder(first[0]), first.substr(2))
                   : std::filesystem::absolute(folder_ + "/media/disc" + std::to_string(i + 1)).string();
    const std::vector<std::string> left =
        StageDisc(discs[i].folder, target, onHardDisk ? Staged::Copied : Staged::Linked);
    leftOut_.insert(leftOut_.end(), left.begin(), left.end());
    staged_.push_back({target, discs[i].label});
  }
}

void Workplace::mount(const WorkplaceSettings& settings) {
  if (settings.at.empty())
    return machine_->mount(DiscDrive, staged_[0].folder, platform::DriveType::CdRom, staged_[0].label);
  if (staged_.size() > 1)
    machine_->files().setDrive({DiscDrive, platform::DriveType::CdRom, "", staged_[1].folder, false, false, 0});
}

void Workplace::setProgram(const WorkplaceSettings& settings) {
  simulated::Machine& machine = machine_->machine();
  const std::string first = FirstFolder(settings.at);
  const std::string path =
      machine.programPath().empty() ? first + "\\" + ProgramFileName() : std::string(machine.programPath());
  std::string arguments = settings.arguments.value_or(machine.arguments());
  if (!settings.arguments && arguments.empty()) {
    std::string ini = settings.media.applicationIni;
    std::replace(ini.begin(), ini.end(), '/', '\\');
    arguments = DefaultArguments + first + "\\" + ini;
  }
  machine.setProgram(path, arguments);
  at_ = settings.at;
  program_ = path;
  commandLine_ = machine.commandLine();
}

std::optional<platform::BoxAnswer> Workplace::answer(const platform::MessageBoxRequest& request) {
  const Disc* disc = FindAsked(staged_, request.text);
  if (disc == nullptr) return std::nullopt;
  machine_->files().insertDisc(DiscDrive, disc->folder, disc->label);
  return request.buttons == platform::BoxButtons::RetryCancel ? platform::BoxAnswer::Retry : platform::BoxAnswer::Ok;
}

bool Workplace::reachedLastDisc() const {
  const std::map<char, simulated::Drive>& drives = machine_->files().allDrives();
  const auto drive = drives.find(DiscDrive);
  const Disc& last = staged_.back();
  return staged_.size() == 1 || (drive != drives.end() && simulated::SameText(drive->second.label, last.label));
}

void Workplace::startAfresh() {
  if (at_.empty()) machine_->mount(DiscDrive, staged_[0].folder, platform::DriveType::CdRom, staged_[0].label);
  machine_->machine().setProgram(program_, "");
  machine_->machine().setCommandLine(commandLine_);
}

std::string Workplace::takeRestartedCopy() {
  return std::exchange(copy_, std::string());
}

}  // namespace qxia
