#include "platform/simulated/declaration.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "platform/simulated/computer.h"
#include "platform/simulated/host.h"
#include "platform/simulated/section_file.h"
#include "platform/simulated/text.h"

namespace simulated {
namespace {

/// In the order of platform::DriveType.
constexpr const char* DriveTypeNames[] = {"unknown", "removable", "fixed", "remote", "cdrom", "ramdisk"};

platform::DriveType FindDriveType(const std::string& name) {
  std::string names;
  for (std::size_t i = 0; i < std::size(DriveTypeNames); ++i) {
    if (SameText(DriveTypeNames[i], name)) return static_cast<platform::DriveType>(i);
    names += (i == 0 ? "" : ", ") + std::string(DriveTypeNames[i]);
  }
  Refuse("drive type '" + name + "' is not known; choose one of " + names);
}

Match FindMatch(const std::string& name) {
  static const std::map<std::string, Match> matches = {{"contains", Match::Contains},
                                                       {"end", Match::End},
                                                       {"exactly", Match::Exactly},
                                                       {"prefix", Match::Prefix},
                                                       {"program", Match::Program}};
  const auto found = matches.find(Lower(name));
  if (found == matches.end()) Refuse("'" + name + "': write contains, end, exactly, prefix or program");
  return found->second;
}

char ParseLetter(const std::string& text) {
  if (text.empty() || text.size() > 2 || (text.size() == 2 && text[1] != ':')) Refuse("'" + text + "': name one drive");
  return text[0];
}

/// Whether the machine has a Startup folder: where it is follows from the system.
bool ParseStartup(const std::string& value) {
  if (SameText(value, "none")) return false;
  if (SameText(value, "default")) return true;
  Refuse("'" + value + "': write none, or default for the system's own");
}

/// Exit codes are written with their sign or without.
std::int32_t ParseExit(const std::string& value) {
  return static_cast<std::int32_t>(ParseCount(value, INT32_MIN, UINT32_MAX));
}

/// Of a number of seconds. A wait of the machine holds no more of them.
std::uint32_t ParseMilliseconds(const std::string& seconds) {
  return static_cast<std::uint32_t>(ParseCount(seconds, 0, UINT32_MAX / 1000) * 1000);
}

/// KEY\NAME=DATA
RegistryWrite ParseWrite(const std::string& value) {
  const std::size_t equals = value.find('=');
  const std::size_t name = value.rfind('\\', equals);
  if (equals == std::string::npos || name == std::string::npos)
    Refuse("'" + value + "': write it as HKLM\\Key\\Name=data");
  return {value.substr(0, name), value.substr(name + 1, equals - name - 1), value.substr(equals + 1)};
}

/// PATH=TEXT
FileWrite ParseFile(const std::string& value, const std::string& declaredIn) {
  const std::size_t equals = value.find('=');
  if (equals == std::string::npos) Refuse("'" + value + "': write it as C:\\Folder\\File=text");
  return {value.substr(0, equals), value.substr(equals + 1) + "\r\n", declaredIn};
}

Product ParseProduct(const std::string& value) {
  const std::vector<std::string> parts = ParseParts(value, '|', 3, "{code}|name|version");
  return {parts[0], parts[1], parts[2]};
}

/// Carries out one file, section by section.
class Loader {
 public:
  Loader(std::string file, Computer& computer) : file_(std::move(file)), computer_(computer) {}

  void load();

 private:
  using Handler = void (Loader::*)(const Section&);

  void machine(const Section& section);
  void environment(const Section& section);
  void drive(const Section& section);
  void registry(const Section& section);
  void file(const Section& section);
  void folder(const Section& section);
  void access(const Section& section);
  void product(const Section& section);
  void package(const Section& section);
  void program(const Section& section);
  void running(const Section& section);
  void answer(const Section& section);
  void choose(const Section& section);
  void person(const Section& section);
  void logon(const Section& section);

  /// A path of the host; a relative one starts where the file is.
  std::string hostPath(const std::string& path) const;
  Drive mappedDrive(const std::string& value) const;
  Keys outcomeKeys(Outcome& outcome) const;

  std::string file_;
  Computer& computer_;
};

std::string Loader::hostPath(const std::string& path) const {
  return (std::filesystem::absolute(file_).parent_path() / path).lexically_normal().string();
}

void Loader::load() {
  static const std::map<std::string, Handler> handlers = {
      {"access", &Loader::access},   {"machine", &Loader::machine},   {"environment", &Loader::environment},
      {"drive", &Loader::drive},     {"registry", &Loader::registry}, {"file", &Loader::file},
      {"folder", &Loader::folder},   {"product", &Loader::product},   {"package", &Loader::package},
      {"program", &Loader::program}, {"running", &Loader::running},   {"answer", &Loader::answer},
      {"choose", &Loader::choose},   {"person", &Loader::person},     {"logon", &Loader::logon}};
  const std::string text = ReadHostFile(file_);
  if (text.empty()) Refuse(file_ + ": is missing or empty; write a machine declaration there, from [machine] on");
  for (const Section& section : ParseSections(file_, text)) {
    const auto found = handlers.find(section.kind);
    if (found == handlers.end()) {
      std::string names;
      for (const auto& [name, handler] : handlers) names += " [" + name + "]";
      RefuseLine(file_, section.line, "[" + section.kind + "] is no section; there are" + names);
    }
    try {
      (this->*found->second)(section);
    } catch (const std::runtime_error& refused) {
      const std::string what = refused.what();
      if (StartsWithText(what, file_)) throw;
      RefuseLine(file_, section.line, what);
    }
  }
}

void Loader::machine(const Section& section) {
  Machine& machine = computer_.machine();
  std::string program = machine.programPath();
  std::string arguments = machine.arguments();
  std::string user = machine.user;
  std::string domain = machine.domain;
  Assign(file_, section,
         {{"system", [&](const std::string& v) { computer_.setSystem(v); }},
          {"computer", [&](const std::string& v) { machine.computer = v; }},
          {"user", [&](const std::string& v) { user = v; }},
          {"domain", [&](const std::string& v) { domain = v; }},
          {"japanese", [&](const std::string& v) { computer_.setJapanese(ParseYes(v)); }},
          {"time", [&](const std::string& v) { computer_.clock().setTime(v); }},
          {"program", [&](const std::string& v) { program = v; }},
          {"arguments", [&](const std::string& v) { arguments = v; }},
          {"startup folder", [&](const std::string& v) { computer_.setStartup(ParseStartup(v)); }},
          {"script host", [&](const std::string& v) { computer_.processes().setScriptHost(ParseYes(v)); }},
          {"installer", [&](const std::string& v) { computer_.installer().setInstalled(ParseYes(v)); }},
          {"management", [&](const std::string& v) { computer_.processes().setManagement(ParseYes(v)); }},
          {"tray", [&](const std::string& v) { computer_.screen().setTray(ParseYes(v)); }},
          {"another copy", [&](const std::string& v) { machine.setAnotherCopyRuns(ParseYes(v)); }}});
  computer_.setUser(user, domain);
  machine.setProgram(program, arguments);
}

void Loader::environment(const Section& section) {
  for (const Entry& entry : section.entries) computer_.machine().variables[entry.key] = entry.value;
}

void Loader::drive(const Section& section) {
  Drive drive;
  drive.letter = ParseLetter(section.argument);
  Assign(file_, section,
         {{"type", [&](const std::string& v) { drive.type = FindDriveType(v); }},
          {"label", [&](const std::string& v) { drive.label = v; }},
          {"folder", [&](const std::string& v) { drive.folder = hostPath(v); }},
          {"free", [&](const std::string& v) { drive.free = static_cast<std::uint64_t>(ParseCount(v, 0, INT64_MAX)); }},
          {"ready", [&](const std::string& v) { drive.ready = ParseYes(v); }},
          {"writable", [&](const std::string& v) { drive.writable = ParseYes(v); }},
          {"access lists", [&](const std::string& v) { drive.accessLists = ParseYes(v); }},
          {"administrator", [&](const std::string& v) { drive.administrator = ParseYes(v); }}});
  computer_.addDrive(drive);
}

void Loader::registry(const Section& section) {
  for (const Entry& entry : section.entries) {
    Outcome outcome;
    outcome.registry.push_back({section.argument, entry.key, entry.value});
    computer_.processes().carryOut(outcome);
  }
}

void Loader::file(const Section& section) {
  std::string text;
  Assign(file_, section,
         {{"line", [&](const std::string& v) { text += v + "\r\n"; }},
          {"from", [&](const std::string& v) { text += ReadHostFile(hostPath(v)); }}});
  computer_.files().put(section.argument, text);
}

void Loader::folder(const Section& section) {
  Assign(file_, section, {});
  computer_.files().makeFolder(section.argument);
}

void Loader::access(const Section& section) {
  AccessList list;
  for (const Entry& entry : section.entries) {
    if (SameText(entry.key, "owner")) {
      list.owner = entry.value;
    } else {
      RequireRight(entry.value);
      list.grants[entry.key] = entry.value;
    }
  }
  computer_.files().setAccessList(section.argument, list);
}

void Loader::product(const Section& section) {
  Product product;
  product.code = section.argument;
  Assign(file_, section,
         {{"name", [&](const std::string& v) { product.name = v; }},
          {"version", [&](const std::string& v) { product.version = v; }}});
  computer_.installer().install(product);
}

Drive Loader::mappedDrive(const std::string& value) const {
  const std::vector<std::string> parts = ParseParts(value, '|', 4, "K|remote|LABEL|host folder");
  Drive drive;
  drive.letter = ParseLetter(parts[0]);
  drive.type = FindDriveType(parts[1]);
  drive.label = parts[2];
  drive.folder = hostPath(parts[3]);
  return drive;
}

Keys Loader::outcomeKeys(Outcome& outcome) const {
  return {
      {"exit", [&](const std::string& v) { outcome.exitCode = ParseExit(v); }},
      {"seconds", [&](const std::string& v) { outcome.milliseconds = ParseMilliseconds(v); }},
      {"cannot start",
       [&](const std::string& v) {
         outcome.cannotStart = static_cast<platform::Status>(ParseCount(v, 0, UINT32_MAX));
       }},
      {"set", [&](const std::string& v) { outcome.registry.push_back(ParseWrite(v)); }},
      {"delete key", [&](const std::string& v) { outcome.deletedKeys.push_back(v); }},
      {"file", [this, &outcome](const std::string& v) { outcome.files.push_back(ParseFile(v, file_)); }},
      {"delete file", [&](const std::string& v) { outcome.deletedFiles.push_back(v); }},
      {"install", [&](const std::string& v) { outcome.installs.push_back(ParseProduct(v)); }},
      {"remove", [&](const std::string& v) { outcome.removes.push_back(v); }},
      {"drive", [this, &outcome](const std::string& v) { outcome.drives.push_back(mappedDrive(v)); }},
      {"remove drive", [&](const std::string& v) { outcome.removedDrives += ParseLetter(v); }},
  };
}

void Loader::package(const Section& section) {
  Package package;
  package.path = section.argument;
  Keys keys = outcomeKeys(package.install);
  keys["name"] = [&](const std::string& v) { package.name = v; };
  keys["version"] = [&](const std::string& v) { package.version = v; };
  keys["code"] = [&](const std::string& v) { package.code = v; };
  keys["removal exit"] = [&](const std::string& v) { package.removal.exitCode = ParseExit(v); };
  keys["repair exit"] = [&](const std::string& v) { package.repair.exitCode = ParseExit(v); };
  keys["property"] = [&](const std::string& v) {
    const std::vector<std::string> parts = ParseParts(v, '=', 2, "Name=value");
    package.properties.emplace_back(parts[0], parts[1]);
  };
  Assign(file_, section, keys);
  if (package.code.empty()) Refuse("[package " + package.path + "]: add its product code, code={...}");
  computer_.installer().declare(package);
}

void Loader::program(const Section& section) {
  Program program;
  program.pattern = section.argument;
  Keys keys = outcomeKeys(program.outcome);
  keys["match"] = [&](const std::string& v) { program.match = FindMatch(v); };
  Assign(file_, section, keys);
  if (program.pattern.empty()) Refuse("[program]: name the program or a part of its command line");
  computer_.processes().declare(program);
}

void Loader::running(const Section& section) {
  RunningProgram program;
  program.name = section.argument;
  Assign(
      file_, section,
      {{"seconds", [&](const std::string& v) { program.milliseconds = ParseMilliseconds(v); }},
       {"queries", [&](const std::string& v) { program.queries = static_cast<int>(ParseCount(v, -1, INT32_MAX)); }}});
  computer_.processes().addRunning(program);
}

void Loader::answer(const Section& section) {
  BoxScript script;
  script.title = section.argument;
  Assign(file_, section,
         {{"text", [&](const std::string& v) { script.textPart = v; }},
          {"answer", [&](const std::string& v) { script.answer = FindAnswer(v); }},
          {"disc", [&](const std::string& v) {
             const std::vector<std::string> disc = ParseParts(v, '|', 3, "D|LABEL|host folder");
             const char letter = ParseLetter(disc[0]);
             script.before = [&machine = computer_, letter, label = disc[1], folder = hostPath(disc[2])] {
               machine.files().insertDisc(letter, folder, label);
             };
           }}});
  computer_.screen().answer(script);
}

void Loader::choose(const Section& section) {
  FileScript script;
  script.title = section.argument;
  Assign(file_, section, {{"file", [&](const std::string& v) { script.path = v; }}});
  computer_.screen().choose(script);
}

void Loader::person(const Section& section) {
  constexpr std::string_view meanwhile = " while ";
  Assign(file_, section, {{"press", [&](const std::string& v) {
                             const std::size_t at = v.find(meanwhile);
                             if (at == std::string::npos) return computer_.screen().press(FindEvent(v));
                             const std::string shown = v.substr(at + meanwhile.size());
                             computer_.screen().pressWhenShown(shown, FindEvent(v.substr(0, at)));
                           }}});
}

void Loader::logon(const Section& section) {
  PasswordScript script;
  Assign(file_, section,
         {{"password", [&](const std::string& v) { script.password = v; }},
          {"again", [&](const std::string& v) { script.confirmation = v; }},
          {"cancel", [&](const std::string& v) { script.cancel = ParseYes(v); }}});
  computer_.screen().type(script);
}

std::string DescribeDrive(const Drive& drive, bool ownFolder) {
  std::string text = "\n[drive " + std::string(1, drive.letter) + "]\n";
  text += std::string("type=") + DriveTypeNames[static_cast<int>(drive.type)] + "\n";
  if (!drive.label.empty()) text += "label=" + drive.label + "\n";
  if (!ownFolder && !drive.folder.empty()) text += "folder=" + std::filesystem::absolute(drive.folder).string() + "\n";
  text += "free=" + std::to_string(drive.free) + "\n";
  if (!drive.ready) text += "ready=no\n";
  if (!drive.writable) text += "writable=no\n";
  if (drive.accessLists) text += std::string("access lists=") + (*drive.accessLists ? "yes" : "no") + "\n";
  if (!drive.administrator) text += "administrator=no\n";
  return text;
}

}  // namespace

void LoadMachine(const std::string& file, Computer& computer) {
  Loader(file, computer).load();
  computer.journal().forgetEffects();
}

bool DeclaresJapanese(const std::string& file) {
  bool japanese = false;
  for (const Section& section : ParseSections(file, ReadHostFile(file)))
    for (const Entry& entry : section.entries)
      if (section.kind == "machine" && SameText(entry.key, "japanese")) japanese = ParseYes(entry.value);
  return japanese;
}

std::string DescribeMachine(Computer& computer) {
  const Machine& machine = computer.machine();
  std::string text = "[machine]\nsystem=" + std::string(machine.system().name) + "\ncomputer=" + machine.computer +
                     "\nuser=" + machine.user + "\ndomain=" + machine.domain + "\ntime=" + computer.clock().timeText() +
                     "\n";
  if (machine.japanese) text += "japanese=yes\n";
  if (!machine.hasStartup) text += "startup folder=none\n";
  if (!machine.variables.empty()) text += "\n[environment]\n";
  for (const auto& [name, value] : machine.variables) text.append(name).append("=").append(value).append("\n");
  for (const auto& [letter, drive] : computer.files().allDrives())
    text += DescribeDrive(drive, drive.folder == computer.ownFolder(letter));
  for (const auto& [lower, item] : computer.files().accessLists().all()) {
    text.append("\n[access ").append(item.path).append("]\nowner=").append(item.list.owner).append("\n");
    for (const auto& [account, right] : item.list.grants) text.append(account).append("=").append(right).append("\n");
  }
  return text;
}

}  // namespace simulated
