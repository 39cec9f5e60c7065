#include "platform/simulated/processes.h"

#include <algorithm>
#include <stdexcept>

#include "platform/simulated/command_line.h"
#include "platform/simulated/system_commands.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::StartedProcess;
using platform::Status;
using platform::WaitResult;

namespace {

constexpr std::int32_t StillActive = 259;
/// Characters of a path that can name a file.
constexpr std::size_t LongestPath = 259;
constexpr std::uint32_t Forever = 0xffffffff;
constexpr Status MonikerSyntax{0x800401E4};
constexpr Status NoSuchComputer{0x80041015};

/// Characters of a computer's name that the real machine asks for, and the moniker through which it asks.
constexpr std::size_t LongestAskedName = 29;
constexpr const char* Moniker = "winmgmts:{impersonationLevel=impersonate,(RemoteShutdown)}//";

/// Files that the system opens with another program, but cannot start.
constexpr const char* Documents[] = {".vbs", ".msi", ".js", ".txt", ".ini", ".reg"};

bool HasFolder(const std::string& path) {
  return path.find_first_of("\\/:") != std::string::npos;
}

/// Whether a command line fits a pattern; both are in lower case.
bool Fits(Match match, const std::string& pattern, const std::string& commandLine, const std::string& file) {
  switch (match) {
    case Match::Exactly:
      return commandLine == pattern;
    case Match::Prefix:
      return commandLine.starts_with(pattern);
    case Match::End:
      return commandLine.ends_with(pattern);
    case Match::Program:
      return IsProgram(file, pattern);
    case Match::Contains:
      break;
  }
  return commandLine.find(pattern) != std::string::npos;
}

}  // namespace

void Processes::declare(Program program) {
  std::string pattern = Lower(program.pattern);
  programs_.push_back({std::move(program), std::move(pattern)});
}

/// The program in front of a command line. Without quotes its path may hold blanks: the shortest one that names a file
/// wins, as the system tries them.
std::string Processes::programOf(const std::string& commandLine) {
  if (!commandLine.empty() && commandLine[0] == '"') return commandLine.substr(1, commandLine.find('"', 1) - 1);
  for (std::size_t blank = commandLine.find(' '); blank <= LongestPath; blank = commandLine.find(' ', blank + 1)) {
    std::string path = commandLine.substr(0, blank);
    if (!HasFolder(path)) break;
    for (const char* extension : {"", ".exe"})
      if (around_.files.exists(path + extension) && !around_.files.isFolder(path + extension)) return path;
  }
  if (around_.files.exists(commandLine)) return commandLine;
  return commandLine.substr(0, commandLine.find(' '));
}

Processes::Declared* Processes::find(const std::string& commandLine, const std::string& program) {
  const std::string lowered = Lower(commandLine);
  Declared* last = nullptr;
  for (Declared& declared : programs_) {
    if (!Fits(declared.program.match, declared.pattern, lowered, program)) continue;
    last = &declared;
    if (declared.runs == 0) break;
  }
  if (last != nullptr) ++last->runs;
  return last;
}

/// What starting this command line comes to: a status, and an outcome when it is Ok.
Status Processes::choose(const std::string& commandLine, Outcome& outcome) {
  const std::string program = programOf(commandLine);
  const Declared* declared = find(commandLine, program);
  if (!scriptHost_ && (IsProgram(program, "wscript") || IsProgram(program, "cscript"))) return Status::FileNotFound;
  const bool there = around_.files.exists(program) || around_.files.exists(program + ".exe");
  if (declared != nullptr && declared->program.outcome.cannotStart != Status::Ok)
    return declared->program.outcome.cannotStart;
  if (there && std::any_of(std::begin(Documents), std::end(Documents),
                           [&](const char* extension) { return EndsWithText(program, extension); }))
    return Status::BadProgramFormat;
  if (declared != nullptr) {
    outcome = declared->program.outcome;
    return HasFolder(program) && !there ? Status::FileNotFound : Status::Ok;
  }
  const std::optional<Outcome> found = undeclared(commandLine, program);
  if (found) outcome = *found;
  return found ? Status::Ok : Status::FileNotFound;
}

/// What the system itself, or else the fallback, does with the command line; nothing, with a report, when neither
/// knows it.
std::optional<Outcome> Processes::undeclared(const std::string& commandLine, const std::string& program) {
  if (IsProgram(program, "msiexec")) return around_.installer.execute(commandLine);
  const SystemCommand command = KnownCommand(commandLine, program, {around_.machine, around_.files, around_.registry});
  if (command.known) return command.outcome;
  if (command.missing) return std::nullopt;
  if (fallback_)
    if (const std::optional<Outcome> outcome = fallback_(commandLine)) return outcome;
  around_.journal.undeclared.push_back(commandLine);
  return std::nullopt;
}

Status Processes::start(const std::string& commandLine, const std::string& workingFolder,
                        platform::ShowWindow showWindow, StartedProcess& started) {
  started = {};
  const std::string shown =
      std::string(showWindow == platform::ShowWindow::Hidden ? "run hidden " : "run ") + commandLine;
  Outcome outcome;
  Status result = Status::FolderNameInvalid;
  if (workingFolder.empty() || around_.files.isFolder(workingFolder)) result = choose(commandLine, outcome);
  if (result != Status::Ok) {
    around_.journal.record("cannot start (" + std::to_string(Number(result)) + ") " + commandLine);
    return result;
  }
  around_.journal.record(shown);
  startedIn_.push_back(around_.files.fullPath(workingFolder.empty() ? "." : workingFolder));
  launch(commandLine, std::move(outcome), started);
  return Status::Ok;
}

void Processes::launch(const std::string& commandLine, Outcome outcome, StartedProcess& started) {
  std::string name = FileName(programOf(commandLine));
  if (name.find('.') == std::string::npos) name += ".exe";
  const std::uint64_t ends = around_.clock.elapsed() + outcome.milliseconds;
  const std::size_t index = processes_.size();
  processes_.push_back({commandLine, name, std::move(outcome), ends, false});
  ran_.push_back(commandLine);
  started.process = nextHandle_++;
  started.thread = nextHandle_++;
  handles_[started.process] = index;
  handles_[started.thread] = index;
  around_.clock.at(ends, [this, index] { finish(index); });
}

void Processes::finish(std::size_t process) {
  processes_[process].ended = true;
  const Process ended = processes_[process];
  carryOut(ended.outcome);
  around_.journal.record("ended " + ended.commandLine + " -> " + std::to_string(ended.outcome.exitCode));
}

/// Whether a program may change a file of this path: a disc refuses it, which is told.
bool Processes::mayWrite(const std::string& path) {
  const std::string full = around_.files.fullPath(path);
  const auto drive = around_.files.allDrives().find(UpperLetter(full.empty() ? 'C' : full[0]));
  if (drive == around_.files.allDrives().end() || drive->second.writable) return true;
  around_.journal.record("refused, the drive cannot be written: " + full);
  return false;
}

void Processes::write(const FileWrite& file) {
  if (!mayWrite(file.path)) return;
  try {
    around_.files.put(file.path, file.bytes);
  } catch (const std::runtime_error& refused) {
    if (file.declaredIn.empty()) throw;
    Refuse(file.declaredIn + ": file=" + file.path + ": " + refused.what());
  }
}

void Processes::carryOut(const Outcome& outcome) {
  for (const RegistryWrite& write : outcome.registry) {
    RegistryValue value;
    if (!ParseRegData(write.data, value)) value = {"", 1, write.data + '\0'};
    value.name = write.name;
    around_.registry.put(write.key, value);
  }
  for (const std::string& key : outcome.deletedKeys) around_.registry.removeTree(key);
  for (const FileWrite& file : outcome.files) write(file);
  for (const std::string& path : outcome.deletedFiles)
    if (mayWrite(path)) around_.files.remove(path);
  for (const std::string& code : outcome.removes) around_.installer.remove(code);
  for (const Product& product : outcome.installs) around_.installer.install(product);
  for (const Drive& drive : outcome.drives) around_.files.setDrive(drive);
  for (const char letter : outcome.removedDrives) around_.files.removeDrive(letter);
  if (outcome.also) outcome.also();
}

const Processes::Process* Processes::behind(std::uintptr_t handle) const {
  const auto found = handles_.find(handle);
  return found == handles_.end() ? nullptr : &processes_[found->second];
}

WaitResult Processes::wait(const StartedProcess& started, std::uint32_t milliseconds) {
  const Process* process = behind(started.process);
  if (process == nullptr) return WaitResult::Failed;
  const std::uint64_t now = around_.clock.elapsed();
  const std::uint64_t left = process->ended || process->ends <= now ? 0 : process->ends - now;
  const bool ends = milliseconds == Forever || left <= milliseconds;
  around_.clock.sleep(ends ? static_cast<std::uint32_t>(left) : milliseconds);
  return ends ? WaitResult::Signalled : WaitResult::TimedOut;
}

Status Processes::exitCode(const StartedProcess& started, std::int32_t& exitCode) {
  const Process* process = behind(started.process);
  if (process == nullptr) return Status::InvalidHandle;
  exitCode = process->ended ? process->outcome.exitCode : StillActive;
  return Status::Ok;
}

void Processes::close(StartedProcess& started) {
  handles_.erase(started.process);
  handles_.erase(started.thread);
  started = {};
}

void Processes::addRunning(const RunningProgram& program) {
  RunningProgram added = program;
  if (added.milliseconds != UINT64_MAX) added.milliseconds += around_.clock.elapsed();
  running_.push_back(added);
}

Status Processes::runningNames(std::vector<std::string>& names, std::string& askedThrough) {
  names.clear();
  const std::string& computer = around_.machine.computer;
  const bool isAskable = computer.size() <= LongestAskedName;
  askedThrough = Moniker + (isAskable ? computer : "");
  if (!management_) return MonikerSyntax;
  if (!isAskable) return NoSuchComputer;
  names = {"System", "explorer.exe", FileName(around_.machine.programPath())};
  for (RunningProgram& program : running_) {
    if (around_.clock.elapsed() >= program.milliseconds || program.queries == 0) continue;
    if (program.queries > 0) --program.queries;
    names.push_back(program.name);
  }
  for (const Process& process : processes_)
    if (!process.ended) names.push_back(process.name);
  return Status::Ok;
}

std::vector<std::string> Processes::unused() const {
  std::vector<std::string> all;
  for (const Declared& declared : programs_)
    if (declared.runs == 0) all.push_back("program " + declared.program.pattern);
  return all;
}

void Processes::endAll() {
  for (Process& process : processes_) process.ended = true;
  running_.clear();
  handles_.clear();
}

}  // namespace simulated
